#ifndef QELFuzzSupport_H
#define QELFuzzSupport_H

#include <cstddef>
#include <cstdint>
#include <string>

// What the fuzz harnesses share: the input written to a file of this process
// (the reader reads files only) and a session model rebuilt for every input,
// so that one input never sees what an earlier one left behind.
namespace qelfuzz {

// Writes `size` bytes into this process's input file and answers its path.
const std::string& writeInput(const uint8_t* data, size_t size);

// Builds the bundled example session (the same handles every time, so that
// the POINTER_ADDRESS of the seed answers designate its components) with a
// few host states it lacks (shapes to activate, component shape
// representations, a foreign document, the composite part as primary
// document), selects the command and the processes that `selector` picks,
// flips the host switches of the low six bits of `switches` (0 keeps the
// session's own) and makes active the host document its top two bits pick
// (0: none).
void buildSession(uint8_t selector, uint8_t switches);
// Frees the model and puts every process-wide setting back.
void resetSession();

} // namespace qelfuzz

#endif
