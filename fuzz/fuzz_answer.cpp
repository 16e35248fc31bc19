// qel answer on arbitrary descriptions: the simulated PDM side reads a
// description and writes its answer. It either answers or says why not; an
// answer to a description the frame check passes must pass the check too,
// since the reader takes a broken frame silently.
// Limits: kMaxText bytes, tags kMaxDepth deep.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "QELAnswerSimulator.h"
#include "QELFrameCheck.h"
#include "QELFuzzSupport.h"

namespace {

constexpr size_t kMaxText = 256 * 1024;
constexpr size_t kMaxDepth = 32;

bool wellFramed(const std::string& path) {
    QELFrameReport report;
    std::string error;
    return qelCheckFrame(path, report, error) && report.problemCount == 0;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > kMaxText || qelfuzz::frameDepth(data, size) > kMaxDepth)
        return 0;
    const std::string& description = qelfuzz::writeInput(data, size);
    const std::string& answer = qelfuzz::scratchFile("answer");
    QELAnswerSimulator simulator;
    std::string error;
    if (!simulator.run(description, answer, error)) {
        if (error.empty() || simulator.writeFailed()) {
            std::fprintf(stderr,
                         "qel fuzz: the simulator failed without a reason or could not write: %s\n",
                         error.c_str());
            std::abort();
        }
        return 0;
    }
    if (wellFramed(description) && !wellFramed(answer)) {
        std::fprintf(stderr,
                     "qel fuzz: the answer to a well-framed description is not well framed\n");
        std::abort();
    }
    return 0;
}
