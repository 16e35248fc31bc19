// qel check FILE...: is a description or an answer in the line frame the
// reader relies on? Each problem is printed as FILE:LINE: message.
#include <cstdio>
#include <memory>
#include <vector>

#include <CLI/CLI.hpp>

#include "QELCommandSupport.h"
#include "QELCommands.h"
#include "QELFrameCheck.h"
#include "QELProgress.h"

namespace {

struct CheckOptions {
    std::vector<std::string> files;
};

int check(const CheckOptions& options) {
    int status = QELExit_Success;
    for (const std::string& path : options.files) {
        QELFrameReport report;
        std::string error;
        bool checked = false;
        {
            QELProgress progress("checking " + path);
            checked = qelCheckFrame(path, report, error,
                                    [&progress](long long done, long long total) { progress.update(done, total); });
        }
        if (!checked) {
            qelSay("%s: %s", path.c_str(), error.c_str());
            return QELExit_Usage;
        }
        for (const QELFrameProblem& problem : report.problems)
            std::printf("%s:%ld: %s\n", path.c_str(), problem.line, problem.message.c_str());
        if (report.problemCount > report.problems.size())
            std::printf("%s: %zu further problems not listed\n", path.c_str(),
                        report.problemCount - report.problems.size());
        if (report.problemCount == 0) {
            std::printf("%s: well framed, %ld entries in %ld lines\n", path.c_str(), report.entries, report.lines);
        } else {
            qelSay("%s: %zu problem%s", path.c_str(), report.problemCount, report.problemCount == 1 ? "" : "s");
            status = QELExit_Failed;
        }
    }
    return status;
}

} // namespace

void qelAddCheckCommand(CLI::App& app, QELRun& run) {
    auto options = std::make_shared<CheckOptions>();
    CLI::App* command = app.add_subcommand(
        "check", "Check that descriptions or answers keep the line frame the reader relies on; list each "
                 "problem with its line number (exit status 1 when there is one)");
    command->add_option("FILE", options->files, "description or answer files")
        ->required()
        ->check(CLI::ExistingFile);
    command->callback([&run, options] { run.work = [options] { return check(*options); }; });
}
