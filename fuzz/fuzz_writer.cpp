// The description writer on models made from the input (see
// QELFuzzSessionComposer.h): the model is described under every process,
// with a command and a phase the input picks, and each description must keep
// the line frame; the last one is answered by the simulated PDM side and the
// answer read back into the model, all without a fault or a leak. A model
// whose names or values are arbitrary bytes may break the frame, since the
// frame escapes nothing: a line break or a leading '<' in a value makes lines
// the check refuses. Such a description is not checked, and the simulator
// may refuse it; what it answers is read back all the same. The faults the
// writer allows itself are those of qelfuzz::writerAllows.
// Limits: kMaxInput bytes (the composer's own bounds keep the model small).
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "EMHManager.h"
#include "QELAnswerSimulator.h"
#include "QELFrameCheck.h"
#include "QELFuzzSession.h"
#include "QELFuzzSessionComposer.h"
#include "QELFuzzSupport.h"
#include "QELSession.h"
#include "QELXMLToDM.h"

namespace {

constexpr size_t kMaxInput = 4096;
constexpr int kCommandCount = 9;
constexpr int kProcessCount = 8;

void requireWellFramed(const std::string& path, int choice) {
    QELFrameReport report;
    std::string error;
    const bool checked = qelCheckFrame(path, report, error);
    if (checked && report.problemCount == report.problems.size() &&
        std::all_of(report.problems.begin(), report.problems.end(), qelfuzz::writerAllows))
        return;
    std::string first = error;
    for (const QELFrameProblem& problem : report.problems) {
        if (qelfuzz::writerAllows(problem))
            continue;
        first = std::to_string(problem.line) + ": " + problem.message;
        break;
    }
    std::fprintf(stderr, "qel fuzz: the description for process choice %d breaks the frame: %s\n",
                 choice, first.c_str());
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > kMaxInput)
        return 0;
    qelfuzz::ByteSource bytes(data, size);
    const uint8_t command = bytes.byte();
    const int phase = bytes.bit();
    bool raw = false;
    if (!qelfuzz::loadComposedSession(bytes, true, raw))
        return 0;

    const std::string& description = qelfuzz::scratchFile("description");
    bool written = false;
    int choice = 0;
    for (int process = 0; process < kProcessCount; ++process) {
        choice =
            (command + process) % kCommandCount + kCommandCount * (process + kProcessCount * phase);
        qelfuzz::applyProcessChoice(choice);
        EMHManager::clear();
        written = qelfuzz::describeSession(description);
        if (written && !raw)
            requireWellFramed(description, choice);
    }
    if (written) {
        const std::string& answer = qelfuzz::scratchFile("answer");
        QELAnswerSimulator simulator;
        std::string error;
        if (simulator.run(description, answer, error)) {
            QELXMLToDM reader(answer.c_str());
            reader.execute(QELSession::getInstance());
        } else if (!raw) {
            std::fprintf(stderr, "qel fuzz: the simulator refused a well-framed description: %s\n",
                         error.c_str());
            std::abort();
        }
    }
    qelfuzz::resetSession();
    return 0;
}
