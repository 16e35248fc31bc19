// qel: runs the description / answer cycle of the data model on real files,
// without the CAD host.
#include <iostream>
#include <sstream>

#include <CLI/CLI.hpp>

#include "JNLManager.h"
#include "QELCleanup.h"
#include "QELCommandSupport.h"
#include "QELCommands.h"
#include "QELProgress.h"
#include "QELStandardOutput.h"

namespace {

const char* const kFooter = R"(Exit status:
  0  success
  1  the work failed: a file could not be written, or check found problems
  2  bad usage, or an input file that is malformed or cannot be read

A file argument of - reads standard input, -o - writes standard output. Files
are written whole or not at all; temporary files go at exit and on signals.
roundtrip without SESSION runs on the bundled example, examples/session.json.
The library's journal and errors also go to a file, or to standard error,
when QEL_JOURNAL or QEL_ERRORS names one ("-" for standard error).
Session files, subcommands and the simulated PDM side: docs/qel.md.)";

// A usage error as every diagnostic: "qel: " and one line each, then where
// the usage is explained.
int reportUsageError(CLI::App& app, const CLI::ParseError& error) {
    std::istringstream lines(error.what());
    for (std::string line; std::getline(lines, line);)
        if (!line.empty()) qelSay("%s", line.c_str());
    const std::vector<CLI::App*> chosen = app.get_subcommands();
    qelSay("see 'qel%s%s --help'", chosen.empty() ? "" : " ", chosen.empty() ? "" : chosen.back()->get_name().c_str());
    return QELExit_Usage;
}

} // namespace

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    QELStandardOutput output;
    qelInstallCleanup();
    CLI::App app("qel: describe a CAD session for the PDM side, answer it as the PDM side does, and show what "
                 "the answer changes in the model",
                 "qel");
    app.set_version_flag("--version", std::string("qel ") + QEL_VERSION);
    bool quiet = false;
    app.add_flag("-q,--quiet", quiet, "no progress line on standard error");
    app.footer(kFooter);
    app.require_subcommand(1);
    // Options of the program itself may also follow the subcommand.
    app.fallthrough();

    QELRun run;
    qelAddDescribeCommand(app, run);
    qelAddAnswerCommand(app, run);
    qelAddApplyCommands(app, run);
    qelAddCheckCommand(app, run);
    qelAddTreeCommand(app, run);
    qelAddGenerateCommand(app, run);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() != static_cast<int>(CLI::ExitCodes::Success)) return reportUsageError(app, error);
        app.exit(error); // --help, --version
        return qelStandardOutputWritten() ? QELExit_Success : QELExit_Failed;
    }
    QELProgress::enable(quiet);
    // The program never reads the journal back: keep little of it in memory.
    JNLManager::setMaxEntries(4096);
    const int status = run.work ? run.work() : QELExit_Usage;
    // Whatever the subcommand printed must have reached standard output.
    if (!qelStandardOutputWritten() && status == QELExit_Success) return QELExit_Failed;
    return status;
}
