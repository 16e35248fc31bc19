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
#include "QELShownText.h"
#include "QELUnwritableText.h"
#include "QELDMToXML.h"
#include "QELProgress.h"
#include "QELSession.h"
#include "QELSessionFile.h"
#include "QELXMLToDM.h"

namespace {
// The writer's error when the entries written differ from its NBElements.
constexpr long kCountDiffers = 2104;
} // namespace

void qelSay(const char* format, ...) {
    std::fputs("qel: ", stderr);
    va_list arguments;
    va_start(arguments, format);
    std::vfprintf(stderr, format, arguments);
    va_end(arguments);
    std::fputc('\n', stderr);
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

bool qelBuildSession(const std::string& path, const QELProcessChoice& choice) {
    QELSessionFileError error;
    bool built = false;
    {
        QELProgress progress("building the session of " + path);
        built = qelLoadSessionFile(path, error);
    }
    if (!built) {
        if (error.line > 0)
            qelSay("%s:%d:%d: %s", path.c_str(), error.line, error.column, error.message.c_str());
        else
            qelSay("%s: %s", path.c_str(), error.message.c_str());
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
bool explainEntryCount(const std::string& path) {
    QELFrameReport frame;
    std::unordered_map<uint64_t, long> written;
    std::string error;
    if (!qelCheckFrame(path, frame, error) || frame.announced < 0 || !qelWrittenTokens(path, written, error))
        return false;
    const QELCountExplanation explanation = qelExplainEntryCount(written);
    if (explanation.explains(frame.announced)) {
        qelSay("note: %s: %s", path.c_str(), qelCountNote(frame.announced, frame.entries, explanation).c_str());
        return true;
    }
    if (!explanation.catalog)
        qelSay("warning: %s: NBElements announces %ld entries and %ld are written; %ld entries of difference follow "
               "none of the writer's counting rules",
               path.c_str(), frame.announced, frame.entries, explanation.unexplained);
    return false;
}

bool countDiffers() {
    for (const EMHManager::Entry& entry : EMHManager::entries())
        if (entry.code == kCountDiffers) return true;
    return false;
}

} // namespace

bool qelWriteDescription(const std::string& path) {
    bool failed = false;
    QELUnwritableText unwritable;
    unwritable.collect();
    {
        QELProgress progress("writing the description " + path);
        QELDMToXML writer(path.c_str());
        writer.execute(QELSession::getInstance());
        failed = writer.hasFailed();
    }
    qelReportLibraryErrors(!failed && countDiffers() && explainEntryCount(path));
    if (failed) qelSay("%s: the description could not be written", path.c_str());
    else unwritable.report(path);
    return !failed;
}

bool qelReadAnswer(const std::string& path, bool optionsOnly) {
    // The reader only journals a file it cannot open; say it here.
    if (FILE* file = std::fopen(path.c_str(), "rb")) {
        std::fclose(file);
    } else {
        qelSay("%s: %s", path.c_str(), std::strerror(errno));
        return false;
    }
    {
        QELProgress progress("reading the answer " + path);
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
    for (const char* candidate : {QEL_SOURCE_SESSION, QEL_INSTALLED_SESSION}) {
        std::error_code error;
        if (std::filesystem::is_regular_file(candidate, error)) return candidate;
    }
    return QEL_SOURCE_SESSION;
}

QELScratchDirectory::QELScratchDirectory() {
    std::error_code error;
    std::filesystem::path base = std::filesystem::temp_directory_path(error);
    if (error) base = "/tmp";
    std::string pattern = (base / "qel-XXXXXX").string();
    std::vector<char> buffer(pattern.begin(), pattern.end());
    buffer.push_back('\0');
    if (mkdtemp(buffer.data())) _path = buffer.data();
}

QELScratchDirectory::~QELScratchDirectory() {
    if (_path.empty()) return;
    std::error_code error;
    std::filesystem::remove_all(_path, error);
}
