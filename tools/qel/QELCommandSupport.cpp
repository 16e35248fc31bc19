#include "QELCommandSupport.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <unordered_map>
#include <vector>

#include <CLI/CLI.hpp>

#include "EMHManager.h"
#include "QELAnswerCrossCheck.h"
#include "QELEntryCount.h"
#include "QELErrorCodes.h"
#include "QELFrameCheck.h"
#include "QELUnwritableText.h"
#include "QELDMToXML.h"
#include "QELEscape.h"
#include "QELInputFile.h"
#include "QELProgress.h"
#include "QELSession.h"
#include "QELSessionFile.h"
#include "QELXMLToDM.h"

namespace {
// The writer's error when the entries written differ from its NBElements.
constexpr long kCountDiffers = 2104;
} // namespace

void qelSay(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    va_list measuring;
    va_copy(measuring, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measuring);
    va_end(measuring);
    std::string message(length > 0 ? static_cast<size_t>(length) : 0, '\0');
    if (length > 0) std::vsnprintf(&message[0], message.size() + 1, format, arguments);
    va_end(arguments);
    std::fprintf(stderr, "qel: %s\n", qelEscape(message).c_str());
}

void qelAddProcessOptions(CLI::App& command, QELProcessChoice& choice) {
    command.add_option("--command", choice.command,
                       "the running command, overriding the session file (save, save-as, save-selected, import, "
                       "create-spreadsheet, synchronize-active-shapes, update-status, state-details-update, none)");
    command.add_option("--process", choice.process,
                       "the running process, overriding the session file (state-details, state-details-factory, "
                       "state-details-update, life-cycle-factory, brr-save, checkout, none; several joined by commas)");
    command.add_option("--phase", choice.phase, "the save phase, overriding the session file (1, 2, none)");
}

bool qelBuildSession(const QELInputFile& session, const QELProcessChoice& choice) {
    QELSessionFileError error;
    bool built = false;
    {
        QELProgress progress("building the session of " + session.name());
        built = qelLoadSessionFile(session.path(), error);
    }
    if (!built) {
        const char* name = session.name().c_str();
        if (error.line > 0)
            qelSay("%s:%d:%d: %s", name, error.line, error.column, error.message.c_str());
        else
            qelSay("%s: %s", name, error.message.c_str());
        return false;
    }
    if (choice.command.empty() && choice.process.empty() && choice.phase.empty()) return true;
    std::string message;
    if (qelApplyCommand(choice.command, choice.process, choice.phase, message)) return true;
    qelSay("%s", message.c_str());
    return false;
}

QELModelScope::~QELModelScope() { QELSession::freeModel(); }

void qelReportLibraryErrors(bool countExplained) {
    for (const EMHManager::Entry& entry : EMHManager::entries()) {
        if (countExplained && entry.code == kCountDiffers) continue;
        const char* meaning = qelErrorMeaning(entry.code);
        qelSay("warning: %s: error %ld%s%s%s%s%s", entry.function.c_str(), entry.code, meaning ? " (" : "",
               meaning ? meaning : "", meaning ? ")" : "", entry.detail.empty() ? "" : ": ",
               entry.detail.empty() ? "" : qelShown(entry.detail, 200).c_str());
    }
    EMHManager::clear();
}

namespace {

// The writer reports a count that differs from what it wrote; some of its
// counting rules make that difference on purpose. Says which, from the
// model; true when they account for all of it.
bool explainEntryCount(const std::string& path, const std::string& name) {
    QELFrameReport frame;
    std::unordered_map<uint64_t, long> written;
    std::string error;
    if (!qelCheckFrame(path, frame, error) || frame.announced < 0 || !qelWrittenTokens(path, written, error))
        return false;
    const QELCountExplanation explanation = qelExplainEntryCount(written);
    if (explanation.explains(frame.announced)) {
        qelSay("note: %s: %s", name.c_str(), qelCountNote(frame.announced, frame.entries, explanation).c_str());
        return true;
    }
    if (!explanation.catalog)
        qelSay("warning: %s: NBElements announces %ld entries and %ld are written; %ld entries of difference follow "
               "none of the writer's counting rules",
               name.c_str(), frame.announced, frame.entries, explanation.unexplained);
    return false;
}

bool countDiffers() {
    for (const EMHManager::Entry& entry : EMHManager::entries())
        if (entry.code == kCountDiffers) return true;
    return false;
}

} // namespace

bool qelWriteDescription(const std::string& path, const std::string& name) {
    int failure = 0;
    QELUnwritableText unwritable;
    unwritable.collect();
    {
        QELProgress progress("writing the description " + name);
        QELDMToXML writer(path.c_str());
        writer.execute(QELSession::getInstance());
        if (writer.hasFailed()) failure = writer.failureReason() != 0 ? writer.failureReason() : EIO;
    }
    qelReportLibraryErrors(failure == 0 && countDiffers() && explainEntryCount(path, name));
    if (failure != 0) qelSay("%s: cannot be written: %s", name.c_str(), std::strerror(failure));
    else unwritable.report(path, name);
    return failure == 0;
}

bool qelReadAnswer(const QELInputFile& answer, bool optionsOnly) {
    const std::string& path = answer.path();
    // The reader only journals a file it cannot open; say it here.
    if (FILE* file = std::fopen(path.c_str(), "rb")) {
        std::fclose(file);
    } else {
        qelSay("%s: %s", answer.name().c_str(), std::strerror(errno));
        return false;
    }
    {
        QELProgress progress("reading the answer " + answer.name());
        QELXMLToDM reader(path.c_str());
        if (optionsOnly) reader.readOptions(QELSession::getInstance());
        else reader.execute(QELSession::getInstance());
    }
    qelReportLibraryErrors();
    return true;
}

void qelListMismatches(const std::string& path, const QELCrossCheckReport& report, const char* prefix) {
    for (size_t i = 0; i < report.mismatches.size() && i < kListedMismatches; ++i)
        qelSay("%s%s:%ld: %s", prefix, path.c_str(), report.mismatches[i].line, report.mismatches[i].message.c_str());
    if (report.count > kListedMismatches)
        qelSay("%s%s: %zu further mismatches not listed", prefix, path.c_str(), report.count - kListedMismatches);
}

std::string qelBundledSession() {
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    std::vector<std::filesystem::path> candidates;
    if (!error) candidates.push_back(program.parent_path() / QEL_SESSION_FROM_PROGRAM);
    candidates.emplace_back(QEL_SOURCE_SESSION);
    candidates.emplace_back(QEL_INSTALLED_SESSION);
    for (const std::filesystem::path& candidate : candidates)
        if (std::filesystem::is_regular_file(candidate, error)) return candidate.lexically_normal().string();
    return QEL_SOURCE_SESSION;
}
