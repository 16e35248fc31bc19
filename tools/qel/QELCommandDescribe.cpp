// qel describe SESSION -o DESC: the description the library writes for the
// session of a session file.
#include <memory>

#include <CLI/CLI.hpp>

#include "QELCommandSupport.h"
#include "QELCommands.h"
#include "QELInputFile.h"
#include "QELOutputFile.h"

namespace {

struct DescribeOptions {
    std::string session;
    std::string output;
    QELProcessChoice choice;
};

int describe(const DescribeOptions& options) {
    // The output first: a long build is not spent on a file that cannot be written.
    QELOutputFile output;
    if (!output.open(options.output)) return QELExit_Failed;
    QELInputFile session;
    if (const int status = session.open(options.session)) return status;
    QELModelScope model;
    if (!qelBuildSession(session, options.choice)) return QELExit_Usage;
    const bool written = qelWriteDescription(output.path(), output.name()) && output.commit();
    return written ? QELExit_Success : QELExit_Failed;
}

} // namespace

void qelAddDescribeCommand(CLI::App& app, QELRun& run) {
    auto options = std::make_shared<DescribeOptions>();
    CLI::App* command = app.add_subcommand("describe", "Write the description of a session for the PDM side");
    command->add_option("SESSION", options->session, "the session file (JSON; - for standard input)")
        ->required()
        ->check(qelExistingInput());
    command->add_option("-o,--output", options->output, "the description file to write (- for standard output)")
        ->required();
    qelAddProcessOptions(*command, options->choice);
    command->callback([&run, options] { run.work = [options] { return describe(*options); }; });
}
