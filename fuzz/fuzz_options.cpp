// The light pass over an answer (options, entry flags, item identifiers) on a
// small session made from the input's header (see QELFuzzSession.h: the
// command, processes and phase, the host switches and active document, the
// session itself); the rest is the answer file.
// Limits: kMaxAnswer bytes of answer, tags kMaxAnswerDepth deep.
#include <cstddef>
#include <cstdint>

#include "QELFuzzSession.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    qelfuzz::readAnswerInput(data, size, qelfuzz::Reading::OptionsOnly);
    return 0;
}
