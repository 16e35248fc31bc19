// qel answer DESC -o ANSWER: the PDM side, simulated.
#include <memory>

#include <CLI/CLI.hpp>

#include "QELAnswerSimulator.h"
#include "QELCommandSupport.h"
#include "QELCommands.h"
#include "QELProgress.h"

namespace {

struct AnswerOptions {
    std::string description;
    std::string output;
};

int answer(const AnswerOptions& options) {
    QELAnswerSimulator simulator;
    std::string error;
    bool answered = false;
    {
        QELProgress progress("answering " + options.description);
        answered = simulator.run(options.description, options.output, error,
                                 [&progress](long long done, long long total) { progress.update(done, total); });
    }
    if (answered) return QELExit_Success;
    if (simulator.writeFailed()) {
        qelSay("%s", error.c_str());
        return QELExit_Failed;
    }
    if (simulator.errorLine() > 0)
        qelSay("%s:%ld: %s (qel check lists every fault of the frame)", options.description.c_str(),
               simulator.errorLine(), error.c_str());
    else
        qelSay("%s: %s", options.description.c_str(), error.c_str());
    return QELExit_Usage;
}

} // namespace

void qelAddAnswerCommand(CLI::App& app, QELRun& run) {
    auto options = std::make_shared<AnswerOptions>();
    CLI::App* command = app.add_subcommand(
        "answer", "Answer a description as the PDM side does: identifiers, UIDs, file names, mapping attributes");
    command->add_option("DESC", options->description, "the description to answer")
        ->required()
        ->check(CLI::ExistingFile);
    command->add_option("-o,--output", options->output, "the answer file to write (- for standard output)")
        ->required();
    command->callback([&run, options] { run.work = [options] { return answer(*options); }; });
}
