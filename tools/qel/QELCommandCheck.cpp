// qel check FILE...: is a description or an answer in the line frame the
// reader relies on? Each problem is printed as FILE:LINE: message.
#include <cstdio>
#include <memory>
#include <unordered_map>
#include <vector>

#include <CLI/CLI.hpp>

#include "QELAnswerCrossCheck.h"
#include "QELEntryCount.h"
#include "QELCommandSupport.h"
#include "QELCommands.h"
#include "QELFrameCheck.h"
#include "QELProgress.h"

namespace {

struct CheckOptions {
    std::vector<std::string> files;
    std::string description;
    std::string session;
    QELProcessChoice choice;
};

// A description of `--session` may announce another count than it holds by
// the writer's own counting rules: such a difference is a note, not a fault.
void explainCount(const std::string& path, QELFrameReport& report) {
    if (report.announced < 0 || report.announced == report.entries) return;
    std::unordered_map<uint64_t, long> written;
    std::string error;
    if (!qelWrittenTokens(path, written, error)) return;
    const QELCountExplanation explanation = qelExplainEntryCount(written);
    if (!explanation.explains(report.announced)) {
        std::printf("%s:%ld: the writer's counting rules for this session announce %ld entries%s\n", path.c_str(),
                    report.countLine, explanation.counted,
                    explanation.catalog ? " (a catalog workspace: its traversal counts by rules of its own)" : "");
        return;
    }
    const std::string counted = "NBElements announces " + std::to_string(report.announced);
    auto& problems = report.problems;
    for (auto it = problems.begin(); it != problems.end(); ++it) {
        if (it->line == report.countLine && it->message.compare(0, counted.size(), counted) == 0) {
            problems.erase(it);
            --report.problemCount;
            break;
        }
    }
    std::printf("%s:%ld: note: %s\n", path.c_str(), report.countLine,
                qelCountNote(report.announced, report.entries, explanation).c_str());
}

// Each answer's entries against the description's entry of the same token;
// false when a file cannot be read, `mismatched` set when one does not match.
bool crossCheck(const std::vector<std::string>& answers, const std::string& descriptionPath, bool& mismatched) {
    QELDescribedEntries description;
    std::string error;
    {
        QELProgress progress("indexing the description " + descriptionPath);
        if (!description.read(descriptionPath, error)) {
            qelSay("%s: %s", descriptionPath.c_str(), error.c_str());
            return false;
        }
    }
    const QELExpectation expectation = [&description](const std::string& token, QELExpectedEntry& out,
                                                      std::string& why) { return description.expected(token, out, why); };
    for (const std::string& path : answers) {
        QELCrossCheckReport report;
        bool checked = false;
        {
            QELProgress progress("comparing " + path + " with " + descriptionPath);
            checked = qelCrossCheckAnswer(path, expectation, report, error,
                                          [&progress](long long done, long long total) { progress.update(done, total); });
        }
        if (!checked) {
            qelSay("%s: %s", path.c_str(), error.c_str());
            return false;
        }
        for (size_t i = 0; i < report.mismatches.size() && i < kListedMismatches; ++i)
            std::printf("%s:%ld: %s\n", path.c_str(), report.mismatches[i].line, report.mismatches[i].message.c_str());
        if (report.count > kListedMismatches)
            std::printf("%s: %zu further mismatches not listed\n", path.c_str(), report.count - kListedMismatches);
        if (report.count == 0) {
            std::printf("%s: every entry matches %s\n", path.c_str(), descriptionPath.c_str());
        } else {
            qelSay("%s: %zu mismatch%s with %s", path.c_str(), report.count, report.count == 1 ? "" : "es",
                   descriptionPath.c_str());
            mismatched = true;
        }
    }
    return true;
}

int check(const CheckOptions& options) {
    int status = QELExit_Success;
    QELModelScope model;
    if (!options.session.empty() && !qelBuildSession(options.session, options.choice)) return QELExit_Usage;
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
        if (!options.session.empty()) explainCount(path, report);
        else if (report.announced >= 0 && report.announced != report.entries)
            qelSay("%s: a description may announce another count than it holds by the writer's own counting rules; "
                   "--session SESSION tells whether they account for it",
                   path.c_str());
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
    if (!options.description.empty() && status == QELExit_Success) {
        bool mismatched = false;
        if (!crossCheck(options.files, options.description, mismatched)) return QELExit_Usage;
        if (mismatched) status = QELExit_Failed;
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
    command->add_option("--description", options->description,
                        "compare each answer with this description: every entry with the description's entry of "
                        "its POINTER_ADDRESS (what must match: docs/qel.md)")
        ->check(CLI::ExistingFile);
    command->add_option("--session", options->session,
                        "the session a description was written from: an NBElements that differs from the entries "
                        "by the writer's own counting rules is then a note, with the rule, instead of a problem")
        ->check(CLI::ExistingFile);
    qelAddProcessOptions(*command, options->choice);
    command->callback([&run, options] { run.work = [options] { return check(*options); }; });
}
