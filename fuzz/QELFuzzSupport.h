#ifndef QELFuzzSupport_H
#define QELFuzzSupport_H

#include <cstddef>
#include <cstdint>
#include <string>

// What the fuzz harnesses share: files of this process under TMPDIR (the
// reader, the frame check and the answer simulator read files only), the
// reset after every input, so that one input never sees what an earlier one
// left behind, work kept out of the coverage, and the measure of nesting
// the harnesses limit.
namespace qelfuzz {

// Writes `size` bytes into this process's input file and answers its path.
const std::string& writeInput(const uint8_t* data, size_t size);
// A file of this process named after `role` ("description", "answer"),
// removed when the process ends normally.
const std::string& scratchFile(const char* role);

// Frees the model and puts every process-wide setting back, out of the
// coverage (HiddenCoverage); aborts when a component outlives the model.
void resetSession();

// Runs `work` out of the fuzzer's sight: the coverage counters of the
// current input are saved before and put back after, so that what `work`
// covers is neither a feature of the input nor paid for by the fuzzer on
// every input. For the making and putting back of a model, which follow
// from the input's header alone (as the loader, built without coverage
// hooks). Without coverage counters (other builds) it only runs `work`.
class HiddenCoverage {
public:
    HiddenCoverage();
    ~HiddenCoverage();
    HiddenCoverage(const HiddenCoverage&) = delete;
    HiddenCoverage& operator=(const HiddenCoverage&) = delete;
};

// The deepest nesting of the line frame's tags ("<X>" opens, "</X>" closes),
// counted line by line; what the harnesses refuse before reading.
size_t frameDepth(const uint8_t* data, size_t size);
// The deepest nesting of JSON arrays and objects: brackets outside strings.
size_t jsonNesting(const uint8_t* data, size_t size);

} // namespace qelfuzz

#endif
