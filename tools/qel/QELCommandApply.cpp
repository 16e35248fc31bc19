// qel apply SESSION ANSWER and qel roundtrip [SESSION]: read an answer into
// the session and print what it changed. roundtrip first writes the
// description and answers it with the simulated PDM side, in one run.
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "QELAnswerCrossCheck.h"
#include "QELAnswerSimulator.h"
#include "QELChangeTable.h"
#include "QELCleanup.h"
#include "QELCommandSupport.h"
#include "QELCommands.h"
#include "QELFrameCheck.h"
#include "QELFrameReport.h"
#include "QELInputFile.h"
#include "QELOutputFile.h"
#include "QELProgress.h"
#include "QELStandardOutput.h"

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
bool answerIsWellFramed(const QELInputFile& answer) {
    QELFrameReport report;
    std::string error;
    bool checked = false;
    {
        QELProgress progress("checking the answer " + answer.name());
        checked = qelCheckFrame(answer.path(), report, error,
                                [&progress](long long done, long long total) { progress.update(done, total); });
    }
    if (!checked) {
        qelSay("%s: %s", answer.name().c_str(), error.c_str());
        return false;
    }
    for (const std::string& line : qelFrameReportLines(answer.name(), report)) qelSay("%s", line.c_str());
    if (report.problemCount > 0)
        qelSay("%s: %zu problem%s: the answer is not read", answer.name().c_str(), report.problemCount,
               report.problemCount == 1 ? "" : "s");
    return report.problemCount == 0;
}

// An answer entry that does not match the component its token designates
// would move one component's identifiers onto another: such an answer is
// refused whole, before anything is read into the model, unless forced.
bool answerMatchesSession(const QELInputFile& answer, bool force) {
    QELCrossCheckReport report;
    std::string error;
    bool checked = false;
    {
        QELProgress progress("comparing the answer with the session");
        checked = qelCrossCheckAnswer(answer.path(), qelExpectedFromModel, report, error,
                                      [&progress](long long done, long long total) { progress.update(done, total); });
    }
    const char* name = answer.name().c_str();
    if (!checked) {
        qelSay("%s: %s", name, error.c_str());
        return false;
    }
    if (report.count == 0) return true;
    qelListMismatches(answer.name(), report, force ? "warning: " : "");
    if (force) {
        qelSay("warning: %s: %zu mismatch%s with the session; applied all the same (--force)", name, report.count,
               report.count == 1 ? "" : "es");
        return true;
    }
    qelSay("%s: %zu mismatch%s with the session; nothing applied (--force applies the answer anyway)", name,
           report.count, report.count == 1 ? "" : "es");
    return false;
}

// Records the session, reads the answer, prints the difference.
int readAndPrint(const QELInputFile& answer, const ApplyOptions& options) {
    QELChangeTable table;
    {
        QELProgress progress("recording the session");
        table.snapshot([&progress](long long done, long long total) { progress.update(done, total); });
    }
    if (!qelReadAnswer(answer, options.optionsOnly)) return QELExit_Usage;
    QELProgress progress("comparing");
    qelPrintChangeTable(table, std::cout, options.format == "json",
                        [&progress](long long done, long long total) { progress.update(done, total); });
    return qelStandardOutputWritten() ? QELExit_Success : QELExit_Failed;
}

int apply(const ApplyOptions& options) {
    QELInputFile session;
    QELInputFile answer;
    if (const int status = session.open(options.session)) return status;
    if (const int status = answer.open(options.answer)) return status;
    QELModelScope model;
    if (!qelBuildSession(session, options.choice)) return QELExit_Usage;
    if (!answerIsWellFramed(answer)) return QELExit_Usage;
    if (!answerMatchesSession(answer, options.force)) return QELExit_Failed;
    return readAndPrint(answer, options);
}

int roundtrip(const ApplyOptions& options) {
    QELInputFile session;
    if (const int status = session.open(options.session.empty() ? qelBundledSession() : options.session))
        return status;
    // The description and the answer, and where the stages write them: in a
    // private scratch directory, or written whole into --keep's directory.
    std::string description;
    std::string answer;
    QELScratchDirectory scratch;
    QELOutputFile keptDescription;
    QELOutputFile keptAnswer;
    if (options.keep.empty()) {
        if (!scratch.valid()) {
            qelSay("%s: cannot make a temporary directory: %s", qelTemporaryFolder().c_str(), std::strerror(errno));
            return QELExit_Failed;
        }
        description = scratch.file("description.xml");
        answer = scratch.file("answer.xml");
        if (description.empty() || answer.empty()) {
            qelSay("%s: too many temporary files at once", qelTemporaryFolder().c_str());
            return QELExit_Failed;
        }
    } else {
        std::error_code error;
        std::filesystem::create_directories(options.keep, error);
        if (error) {
            qelSay("%s: %s", options.keep.c_str(), error.message().c_str());
            return QELExit_Failed;
        }
        description = (std::filesystem::path(options.keep) / "description.xml").string();
        answer = (std::filesystem::path(options.keep) / "answer.xml").string();
        if (!keptDescription.open(description) || !keptAnswer.open(answer)) return QELExit_Failed;
    }
    const std::string& descriptionWritten = options.keep.empty() ? description : keptDescription.path();
    const std::string& answerWritten = options.keep.empty() ? answer : keptAnswer.path();

    QELModelScope model;
    if (!qelBuildSession(session, options.choice)) return QELExit_Usage;
    if (!qelWriteDescription(descriptionWritten, description) || !keptDescription.commit()) return QELExit_Failed;
    {
        QELAnswerSimulator simulator;
        std::string error;
        QELProgress progress("answering the description");
        if (!simulator.run(description, answerWritten, error,
                           [&progress](long long done, long long total) { progress.update(done, total); })) {
            if (simulator.writeFailed())
                qelSay("%s: cannot be written: %s", answer.c_str(), std::strerror(simulator.writeError()));
            else qelSay("%s:%ld: %s", description.c_str(), simulator.errorLine(), error.c_str());
            return QELExit_Failed;
        }
    }
    if (!keptAnswer.commit()) return QELExit_Failed;
    QELInputFile answerFile;
    if (const int status = answerFile.open(answer)) return status;
    // The answer is made here from the session's own description, so a
    // mismatch is a fault of the program itself: never forced.
    if (!answerMatchesSession(answerFile, false)) return QELExit_Failed;
    return readAndPrint(answerFile, options);
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
    apply->add_option("SESSION", applyOptions->session, "the session file (JSON; - for standard input)")
        ->required()
        ->check(qelExistingInput());
    apply->add_option("ANSWER", applyOptions->answer, "the answer file (- for standard input)")
        ->required()
        ->check(qelExistingInput());
    addTableOptions(*apply, *applyOptions);
    apply->add_flag("--force", applyOptions->force,
                    "apply an answer whose entries do not match the components their POINTER_ADDRESS designates "
                    "(listed as warnings)");
    apply->callback([&run, applyOptions] {
        qelRequireOneStandardInput({applyOptions->session, applyOptions->answer});
        run.work = [applyOptions] { return ::apply(*applyOptions); };
    });

    auto roundtripOptions = std::make_shared<ApplyOptions>();
    CLI::App* roundtrip = app.add_subcommand(
        "roundtrip", "Describe a session, answer the description and apply the answer in one run; print the "
                     "change table. Without SESSION, the bundled example");
    roundtrip
        ->add_option("SESSION", roundtripOptions->session,
                     "the session file (JSON; - for standard input); default: the bundled example")
        ->check(qelExistingInput());
    roundtrip->add_option("--keep", roundtripOptions->keep,
                          "keep the description and the answer (description.xml, answer.xml) in this directory");
    addTableOptions(*roundtrip, *roundtripOptions);
    roundtrip->callback(
        [&run, roundtripOptions] { run.work = [roundtripOptions] { return ::roundtrip(*roundtripOptions); }; });
}
