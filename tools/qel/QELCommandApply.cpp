// qel apply SESSION ANSWER and qel roundtrip [SESSION]: read an answer into
// the session and print what it changed. roundtrip first writes the
// description and answers it with the simulated PDM side, in one run.
#include <filesystem>
#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "QELAnswerCrossCheck.h"
#include "QELAnswerSimulator.h"
#include "QELChangeTable.h"
#include "QELCommandSupport.h"
#include "QELCommands.h"
#include "QELFrameCheck.h"
#include "QELProgress.h"

namespace {

struct ApplyOptions {
    std::string session;
    std::string answer;
    std::string format = "text";
    std::string keep;
    bool optionsOnly = false;
    bool force = false;
    QELProcessChoice choice;
};

// An answer from elsewhere is checked first: the reader takes a broken frame
// silently, and the table would then show less than the file meant.
bool answerIsWellFramed(const std::string& path) {
    QELFrameReport report;
    std::string error;
    bool checked = false;
    {
        QELProgress progress("checking the answer " + path);
        checked = qelCheckFrame(path, report, error,
                                [&progress](long long done, long long total) { progress.update(done, total); });
    }
    if (!checked) {
        qelSay("%s: %s", path.c_str(), error.c_str());
        return false;
    }
    constexpr size_t kShown = 10;
    for (size_t i = 0; i < report.problems.size() && i < kShown; ++i)
        qelSay("%s:%ld: %s", path.c_str(), report.problems[i].line, report.problems[i].message.c_str());
    if (report.problemCount > kShown)
        qelSay("%s: %zu problems in all (qel check lists them)", path.c_str(), report.problemCount);
    return report.problemCount == 0;
}

// An answer entry that does not match the component its token designates
// would move one component's identifiers onto another: such an answer is
// refused whole, before anything is read into the model, unless forced.
bool answerMatchesSession(const std::string& path, bool force) {
    QELCrossCheckReport report;
    std::string error;
    bool checked = false;
    {
        QELProgress progress("comparing the answer with the session");
        checked = qelCrossCheckAnswer(path, qelExpectedFromModel, report, error,
                                      [&progress](long long done, long long total) { progress.update(done, total); });
    }
    if (!checked) {
        qelSay("%s: %s", path.c_str(), error.c_str());
        return false;
    }
    if (report.count == 0) return true;
    qelListMismatches(path, report, force ? "warning: " : "");
    if (force) {
        qelSay("warning: %s: %zu mismatch%s with the session; applied all the same (--force)", path.c_str(),
               report.count, report.count == 1 ? "" : "es");
        return true;
    }
    qelSay("%s: %zu mismatch%s with the session; nothing applied (--force applies the answer anyway)", path.c_str(),
           report.count, report.count == 1 ? "" : "es");
    return false;
}

// Records the session, reads the answer, prints the difference.
int readAndPrint(const std::string& answer, const ApplyOptions& options) {
    QELChangeTable table;
    {
        QELProgress progress("recording the session");
        table.snapshot([&progress](long long done, long long total) { progress.update(done, total); });
    }
    if (!qelReadAnswer(answer, options.optionsOnly)) return QELExit_Usage;
    QELProgress progress("comparing");
    qelPrintChangeTable(table, std::cout, options.format == "json",
                        [&progress](long long done, long long total) { progress.update(done, total); });
    std::cout.flush();
    return std::cout ? QELExit_Success : QELExit_Failed;
}

int apply(const ApplyOptions& options) {
    QELModelScope model;
    if (!qelBuildSession(options.session, options.choice)) return QELExit_Usage;
    if (!answerIsWellFramed(options.answer)) return QELExit_Usage;
    if (!answerMatchesSession(options.answer, options.force)) return QELExit_Failed;
    return readAndPrint(options.answer, options);
}

int roundtrip(const ApplyOptions& options) {
    const std::string session = options.session.empty() ? qelBundledSession() : options.session;
    QELScratchDirectory scratch;
    std::string directory = options.keep;
    if (directory.empty()) {
        if (!scratch.valid()) {
            qelSay("cannot make a temporary directory");
            return QELExit_Failed;
        }
        directory = scratch.file("");
    } else {
        std::error_code error;
        std::filesystem::create_directories(directory, error);
        if (error) {
            qelSay("%s: %s", directory.c_str(), error.message().c_str());
            return QELExit_Failed;
        }
    }
    const std::string description = (std::filesystem::path(directory) / "description.xml").string();
    const std::string answer = (std::filesystem::path(directory) / "answer.xml").string();

    QELModelScope model;
    if (!qelBuildSession(session, options.choice)) return QELExit_Usage;
    if (!qelWriteDescription(description)) return QELExit_Failed;
    {
        QELAnswerSimulator simulator;
        std::string error;
        QELProgress progress("answering the description");
        if (!simulator.run(description, answer, error,
                           [&progress](long long done, long long total) { progress.update(done, total); })) {
            if (simulator.writeFailed()) qelSay("%s", error.c_str());
            else qelSay("%s:%ld: %s", description.c_str(), simulator.errorLine(), error.c_str());
            return QELExit_Failed;
        }
    }
    // The answer is made here from the session's own description, so a
    // mismatch is a fault of the program itself: never forced.
    if (!answerMatchesSession(answer, false)) return QELExit_Failed;
    return readAndPrint(answer, options);
}

void addTableOptions(CLI::App& command, ApplyOptions& options) {
    command.add_option("--format", options.format, "text (an aligned table) or json")
        ->check(CLI::IsMember({"text", "json"}))
        ->capture_default_str();
    command.add_flag("--options-only", options.optionsOnly,
                     "read only the options, entry flags and item identifiers, as the light pass of the reader does");
    qelAddProcessOptions(command, options.choice);
}

} // namespace

void qelAddApplyCommands(CLI::App& app, QELRun& run) {
    auto applyOptions = std::make_shared<ApplyOptions>();
    CLI::App* apply = app.add_subcommand(
        "apply", "Build a session, read an answer into it and print what the answer changed: one row per "
                 "component and property, old and new value");
    apply->add_option("SESSION", applyOptions->session, "the session file (JSON)")
        ->required()
        ->check(CLI::ExistingFile);
    apply->add_option("ANSWER", applyOptions->answer, "the answer file")->required()->check(CLI::ExistingFile);
    addTableOptions(*apply, *applyOptions);
    apply->add_flag("--force", applyOptions->force,
                    "apply an answer whose entries do not match the components their POINTER_ADDRESS designates "
                    "(listed as warnings)");
    apply->callback([&run, applyOptions] { run.work = [applyOptions] { return ::apply(*applyOptions); }; });

    auto roundtripOptions = std::make_shared<ApplyOptions>();
    CLI::App* roundtrip = app.add_subcommand(
        "roundtrip", "Describe a session, answer the description and apply the answer in one run; print the "
                     "change table. Without SESSION, the bundled example");
    roundtrip->add_option("SESSION", roundtripOptions->session, "the session file (JSON); default: the bundled example")
        ->check(CLI::ExistingFile);
    roundtrip->add_option("--keep", roundtripOptions->keep,
                          "keep the description and the answer (description.xml, answer.xml) in this directory");
    addTableOptions(*roundtrip, *roundtripOptions);
    roundtrip->callback(
        [&run, roundtripOptions] { run.work = [roundtripOptions] { return ::roundtrip(*roundtripOptions); }; });
}
