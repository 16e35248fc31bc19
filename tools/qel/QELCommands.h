#ifndef QELCommands_H
#define QELCommands_H

#include <functional>

namespace CLI {
class App;
}

// The exit statuses of qel, documented in `qel --help` and docs/qel.md.
enum QELExitStatus {
    QELExit_Success = 0,
    QELExit_Failed = 1, // the work failed: a file could not be written, check found problems
    QELExit_Usage = 2   // bad usage, or an input file that is malformed or cannot be read
};

// What the subcommand given on the command line leaves for main(): its work,
// run once the whole command line is parsed; it answers the exit status.
struct QELRun {
    std::function<int()> work;
};

// Each registers one subcommand (or a pair sharing their work) with its
// options and --help; its callback hands its work to `run`.
void qelAddGenerateCommand(CLI::App& app, QELRun& run);
void qelAddDescribeCommand(CLI::App& app, QELRun& run);
void qelAddAnswerCommand(CLI::App& app, QELRun& run);
void qelAddApplyCommands(CLI::App& app, QELRun& run); // apply, roundtrip
void qelAddCheckCommand(CLI::App& app, QELRun& run);
void qelAddTreeCommand(CLI::App& app, QELRun& run);

#endif
