#ifndef QELCommandSupport_H
#define QELCommandSupport_H

#include <cstdarg>
#include <string>

namespace CLI {
class App;
}
class QELInputFile;

// What the subcommands share: building the session from its file, the
// command-line overrides of the running command, writing and reading with
// the library, and reporting on standard error.

// "qel: " and the message, on standard error, as one line of printable
// ASCII: whatever it quotes from files is escaped (qelEscape).
void qelSay(const char* format, ...) __attribute__((format(printf, 1, 2)));

// --command, --process, --phase: names as in a session file's settings.
struct QELProcessChoice {
    std::string command;
    std::string process;
    std::string phase;
};
void qelAddProcessOptions(CLI::App& command, QELProcessChoice& choice);

// Builds the session of a session file into the model, then applies the
// overrides. On failure the message names the file with its line and column
// and the answer is false: the caller exits with QELExit_Usage.
bool qelBuildSession(const QELInputFile& session, const QELProcessChoice& choice);

// The model lives from qelBuildSession to the end of the subcommand; this
// frees it, with everything the library's factories made, on every path.
class QELModelScope {
public:
    QELModelScope() = default;
    QELModelScope(const QELModelScope&) = delete;
    QELModelScope& operator=(const QELModelScope&) = delete;
    ~QELModelScope();
};

// Writes the session's description to `path`; false (reported as the
// failure to write `name`, with the reason) when it could not be written. A
// count that differs from the entries written is explained by the writer's
// counting rules where they account for it (a note), and warned about
// otherwise; so are values the description cannot carry as they are.
bool qelWriteDescription(const std::string& path, const std::string& name);
// Reads an answer into the session: the full reading, or only the options
// pass (entry flags and item identifiers). False (reported) when the file
// cannot be read.
bool qelReadAnswer(const QELInputFile& answer, bool optionsOnly);
// The errors the library reported since the last call, as warnings with
// what their number means; without the count error when it was explained.
void qelReportLibraryErrors(bool countExplained = false);

// The mismatches of an answer cross-check on standard error, each as
// "qel: <prefix>FILE:LINE: message": the first kListedMismatches, then how
// many more there are.
struct QELCrossCheckReport;
constexpr size_t kListedMismatches = 20;
void qelListMismatches(const std::string& path, const QELCrossCheckReport& report, const char* prefix);

// The session file bundled with qel: the installed copy next to the
// program (../share/qeldm/session.json from bin/qel, wherever it was
// installed), else examples/session.json of the source tree, else the copy
// under the configured install prefix.
std::string qelBundledSession();

#endif
