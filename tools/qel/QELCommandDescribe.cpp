// qel describe SESSION -o DESC: the description the library writes for the
// session of a session file.
#include <memory>

#include <CLI/CLI.hpp>

#include "QELCommandSupport.h"
#include "QELCommands.h"

namespace {

struct DescribeOptions {
    std::string session;
    std::string output;
    QELProcessChoice choice;
};

int describe(const DescribeOptions& options) {
    QELModelScope model;
    if (!qelBuildSession(options.session, options.choice)) return QELExit_Usage;
    return qelWriteDescription(options.output) ? QELExit_Success : QELExit_Failed;
}

} // namespace

void qelAddDescribeCommand(CLI::App& app, QELRun& run) {
    auto options = std::make_shared<DescribeOptions>();
    CLI::App* command = app.add_subcommand("describe", "Write the description of a session for the PDM side");
    command->add_option("SESSION", options->session, "the session file (JSON)")->required()->check(CLI::ExistingFile);
    command->add_option("-o,--output", options->output, "the description file to write")->required();
    qelAddProcessOptions(*command, options->choice);
    command->callback([&run, options] { run.work = [options] { return describe(*options); }; });
}
