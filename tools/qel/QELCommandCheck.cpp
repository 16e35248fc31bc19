// qel check FILE...: is a description or an answer in the line frame the
// reader relies on? Each problem is printed as FILE:LINE: message.
#include <iostream>
#include <memory>
#include <vector>

#include <CLI/CLI.hpp>

#include "QELCommandSupport.h"
#include "QELCommands.h"
#include "QELEscape.h"
#include "QELFrameCheck.h"
#include "QELFrameReport.h"
#include "QELInputFile.h"
#include "QELProgress.h"
#include "QELStandardOutput.h"

namespace {

struct CheckOptions {
    std::vector<std::string> files;
};

int check(const CheckOptions& options) {
    int status = QELExit_Success;
    for (const std::string& argument : options.files) {
        QELInputFile file;
        if (const int opened = file.open(argument)) return opened;
        const std::string& name = file.name();
        QELFrameReport report;
        std::string error;
        bool checked = false;
        {
            QELProgress progress("checking " + name);
            checked = qelCheckFrame(file.path(), report, error,
                                    [&progress](long long done, long long total) { progress.update(done, total); });
        }
        if (!checked) {
            qelSay("%s: %s", name.c_str(), error.c_str());
            return QELExit_Usage;
        }
        for (const std::string& line : qelFrameReportLines(name, report)) std::cout << line << '\n';
        if (report.problemCount == 0) {
            std::cout << qelEscape(name) << ": well framed, " << report.entries << " entries in " << report.lines
                      << " lines\n";
        } else {
            qelSay("%s: %zu problem%s", name.c_str(), report.problemCount, report.problemCount == 1 ? "" : "s");
            status = QELExit_Failed;
        }
    }
    return qelStandardOutputWritten() ? status : QELExit_Failed;
}

} // namespace

void qelAddCheckCommand(CLI::App& app, QELRun& run) {
    auto options = std::make_shared<CheckOptions>();
    CLI::App* command = app.add_subcommand(
        "check", "Check that descriptions or answers keep the line frame the reader relies on; list each "
                 "problem with its line number (exit status 1 when there is one)");
    command->add_option("FILE", options->files, "description or answer files (- for standard input)")
        ->required()
        ->check(qelExistingInput());
    command->callback([&run, options] {
        qelRequireOneStandardInput(options->files);
        run.work = [options] { return check(*options); };
    });
}
