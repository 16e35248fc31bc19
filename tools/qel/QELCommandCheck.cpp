// qel check FILE...: is a description or an answer in the line frame the
// reader relies on? Each problem is printed as FILE:LINE: message. With
// --description, each answer is also compared with the description it
// answers; with --session, a description's count is explained by the
// writer's counting rules.
#include <deque>
#include <iostream>
#include <memory>
#include <unordered_map>
#include <vector>

#include <CLI/CLI.hpp>

#include "QELAnswerCrossCheck.h"
#include "QELCommandSupport.h"
#include "QELCommands.h"
#include "QELEntryCount.h"
#include "QELEscape.h"
#include "QELFrameCheck.h"
#include "QELFrameReport.h"
#include "QELInputFile.h"
#include "QELProgress.h"
#include "QELStandardOutput.h"

namespace {

struct CheckOptions {
    std::vector<std::string> files;
    std::string description;
    std::string session;
    QELProcessChoice choice;
};

// A description of the session built here may announce another count than it
// holds by the writer's own counting rules: such a difference is a note, not
// a fault.
void explainCount(const QELInputFile& file, QELFrameReport& report) {
    if (report.announced < 0 || report.announced == report.entries) return;
    std::unordered_map<uint64_t, long> written;
    std::string error;
    if (!qelWrittenTokens(file.path(), written, error)) return;
    const std::string name = qelEscape(file.name());
    const QELCountExplanation explanation = qelExplainEntryCount(written);
    if (!explanation.explains(report.announced)) {
        std::cout << name << ':' << report.countLine << ": the writer's counting rules for this session announce "
                  << explanation.counted << " entries"
                  << (explanation.catalog ? " (a catalog workspace: its traversal counts by rules of its own)" : "")
                  << '\n';
        return;
    }
    auto& problems = report.problems;
    for (auto it = problems.begin(); it != problems.end(); ++it) {
        if (it->kind == QELFrameProblemKind::Count && it->line == report.countLine) {
            problems.erase(it);
            --report.problemCount;
            --report.countByKind[static_cast<size_t>(QELFrameProblemKind::Count)];
            break;
        }
    }
    std::cout << name << ':' << report.countLine
              << ": note: " << qelEscape(qelCountNote(report.announced, report.entries, explanation)) << '\n';
}

// Each answer's entries against the description's entry of the same token;
// false when a file cannot be read, `mismatched` set when one does not match.
bool crossCheck(const std::deque<QELInputFile>& answers, const QELInputFile& descriptionFile, bool& mismatched) {
    QELDescribedEntries description;
    std::string error;
    const std::string& descriptionName = descriptionFile.name();
    {
        QELProgress progress("indexing the description " + descriptionName);
        if (!description.read(descriptionFile.path(), descriptionName, error)) {
            qelSay("%s: %s", descriptionName.c_str(), error.c_str());
            return false;
        }
    }
    const QELExpectation expectation = [&description](const std::string& token, QELExpectedEntry& out,
                                                      std::string& why) { return description.expected(token, out, why); };
    for (const QELInputFile& answer : answers) {
        const std::string& name = answer.name();
        QELCrossCheckReport report;
        bool checked = false;
        {
            QELProgress progress("comparing " + name + " with " + descriptionName);
            checked = qelCrossCheckAnswer(answer.path(), expectation, report, error,
                                          [&progress](long long done, long long total) { progress.update(done, total); });
        }
        if (!checked) {
            qelSay("%s: %s", name.c_str(), error.c_str());
            return false;
        }
        for (size_t i = 0; i < report.mismatches.size() && i < kListedMismatches; ++i)
            std::cout << qelEscape(name) << ':' << report.mismatches[i].line << ": "
                      << qelEscape(report.mismatches[i].message) << '\n';
        if (report.count > kListedMismatches)
            std::cout << qelEscape(name) << ": " << report.count - kListedMismatches << " further mismatches not listed\n";
        if (report.count == 0) {
            std::cout << qelEscape(name) << ": every entry matches " << qelEscape(descriptionName) << '\n';
        } else {
            qelSay("%s: %zu mismatch%s with %s", name.c_str(), report.count, report.count == 1 ? "" : "es",
                   descriptionName.c_str());
            mismatched = true;
        }
    }
    return true;
}

int check(const CheckOptions& options) {
    int status = QELExit_Success;
    QELModelScope model;
    if (!options.session.empty()) {
        QELInputFile session;
        if (const int opened = session.open(options.session)) return opened;
        if (!qelBuildSession(session, options.choice)) return QELExit_Usage;
    }
    // Kept open to the end: the cross-check reads them again.
    std::deque<QELInputFile> files;
    for (const std::string& argument : options.files) {
        QELInputFile& file = files.emplace_back();
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
        if (!options.session.empty()) {
            explainCount(file, report);
        } else if (report.announced >= 0 && report.announced != report.entries) {
            qelSay("%s: a description may announce another count than it holds by the writer's own counting rules; "
                   "--session SESSION tells whether they account for it",
                   name.c_str());
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
    if (!options.description.empty() && status == QELExit_Success) {
        QELInputFile description;
        if (const int opened = description.open(options.description)) return opened;
        bool mismatched = false;
        if (!crossCheck(files, description, mismatched)) return QELExit_Usage;
        if (mismatched) status = QELExit_Failed;
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
    command
        ->add_option("--description", options->description,
                     "compare each answer with this description: every entry with the description's entry of "
                     "its POINTER_ADDRESS (what must match: docs/qel.md)")
        ->check(qelExistingInput());
    command
        ->add_option("--session", options->session,
                     "the session a description was written from: an NBElements that differs from the entries "
                     "by the writer's own counting rules is then a note, with the rule, instead of a problem")
        ->check(qelExistingInput());
    qelAddProcessOptions(*command, options->choice);
    command->callback([&run, options] {
        std::vector<std::string> inputs = options->files;
        inputs.push_back(options->description);
        inputs.push_back(options->session);
        qelRequireOneStandardInput(inputs);
        run.work = [options] { return check(*options); };
    });
}
