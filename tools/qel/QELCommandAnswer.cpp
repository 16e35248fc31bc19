// qel answer DESC -o ANSWER: the PDM side, simulated.
#include <memory>

#include <CLI/CLI.hpp>

#include "QELAnswerSimulator.h"
#include "QELCommandSupport.h"
#include "QELCommands.h"
#include "QELInputFile.h"
#include "QELOutputFile.h"
#include "QELProgress.h"

namespace {

struct AnswerOptions {
    std::string description;
    std::string output;
};

int answer(const AnswerOptions& options) {
    QELOutputFile output;
    if (!output.open(options.output, true)) return QELExit_Failed;
    QELInputFile description;
    if (const int status = description.open(options.description)) return status;
    QELAnswerSimulator simulator;
    std::string error;
    bool answered = false;
    {
        QELProgress progress("answering " + description.name());
        answered = simulator.run(description.path(), output.path(), error,
                                 [&progress](long long done, long long total) { progress.update(done, total); });
    }
    if (answered) return output.commit() ? QELExit_Success : QELExit_Failed;
    if (simulator.writeFailed()) {
        output.failed(simulator.writeError());
        return QELExit_Failed;
    }
    if (simulator.unanswerable())
        qelSay("%s:%ld: %s", description.name().c_str(), simulator.errorLine(), error.c_str());
    else if (simulator.errorLine() > 0)
        qelSay("%s:%ld: %s (qel check lists every fault of the frame)", description.name().c_str(),
               simulator.errorLine(), error.c_str());
    else
        qelSay("%s: %s", description.name().c_str(), error.c_str());
    return QELExit_Usage;
}

} // namespace

void qelAddAnswerCommand(CLI::App& app, QELRun& run) {
    auto options = std::make_shared<AnswerOptions>();
    CLI::App* command = app.add_subcommand(
        "answer", "Answer a description as the PDM side does: identifiers, UIDs, file names, mapping attributes");
    command->add_option("DESC", options->description, "the description to answer (- for standard input)")
        ->required()
        ->check(qelExistingInput());
    command->add_option("-o,--output", options->output, "the answer file to write (- for standard output)")
        ->required();
    command->callback([&run, options] { run.work = [options] { return answer(*options); }; });
}
