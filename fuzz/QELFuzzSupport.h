#ifndef QELFuzzSupport_H
#define QELFuzzSupport_H

#include <cstddef>
#include <cstdint>
#include <string>

// What the fuzz harnesses share: files of this process under TMPDIR (the
// reader, the frame check and the answer simulator read files only), the
// reset after every input, so that one input never sees what an earlier one
// left behind, and the measure of nesting the harnesses limit.
namespace qelfuzz {

// Writes `size` bytes into this process's input file and answers its path.
const std::string& writeInput(const uint8_t* data, size_t size);
// A file of this process named after `role` ("description", "answer"),
// removed when the process ends normally.
const std::string& scratchFile(const char* role);

// Frees the model and puts every process-wide setting back; aborts when a
// component outlives the model.
void resetSession();

// The deepest nesting of the line frame's tags ("<X>" opens, "</X>" closes),
// counted line by line; what the harnesses refuse before reading.
size_t frameDepth(const uint8_t* data, size_t size);
// The deepest nesting of JSON arrays and objects: brackets outside strings.
size_t jsonNesting(const uint8_t* data, size_t size);

} // namespace qelfuzz

#endif
