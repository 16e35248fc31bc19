#ifndef JNLManager_H
#define JNLManager_H

#include <cstddef>
#include <string>
#include <string_view>

#include "CATUnicodeString.h"
#include "JNLEntryList.h"

// Stand-in for the in-house journal: a process-wide trace of what the data
// model did (function begin and end lines, one line per anomaly met).
//
// Every entry is kept in memory, in order, as ISO-8859-1 text, so that tests
// and tools can read the trace back (JNLEntryList: one text for all of them). When the environment variable
// QEL_JOURNAL is set, each entry is also appended as one line to the file it
// names, or written to standard error when its value is "-". The variable is
// read once, at the first entry; setOutputPath overrides it.
//
// Memory stays bounded on very long runs: once more than maxEntries() entries
// are held, the oldest half is dropped (the copy on file or standard error is
// complete). Not thread-safe: the library runs on its caller's thread.
class JNLManager {
public:
    static constexpr std::size_t kDefaultMaxEntries = 1000000;

    // One entry, the text as given.
    static void writeMsg(const CATUnicodeString& text);
    static void writeMsg(const char* text);
    // One entry formatted as printf does; the result may have any length.
    static void writeMsgFormatted(const char* format, ...) __attribute__((format(printf, 1, 2)));
    // "BEGIN <function>", followed by " : <detail>" when a detail is given.
    static void beginFunction(const CATUnicodeString& function,
                              const CATUnicodeString& detail = CATUnicodeString());
    static void beginFunction(const char* function, const char* detail = "");
    // "END <function> (<returnCode>)".
    static void endFunction(const CATUnicodeString& function, long returnCode);
    static void endFunction(const char* function, long returnCode);

    // Owned by the journal; its views are valid until the next entry.
    static const JNLEntryList& entries();
    // Forgets the entries held in memory; what went to the output stays there.
    static void clear();
    // True when some entry held in memory contains `text`.
    static bool contains(const std::string& text);

    // Sends the following entries to `path` (appended), to standard error
    // ("-"), or nowhere (empty), instead of what QEL_JOURNAL says. Answers
    // false when the file cannot be opened; nothing is written out then.
    static bool setOutputPath(const CATUnicodeString& path);
    // Closes the output chosen so far; the next entry reads QEL_JOURNAL again.
    static void resetOutput();

    // Bound on the entries held in memory; 0 restores the default.
    static void setMaxEntries(std::size_t maxEntries);
    static std::size_t maxEntries();

    JNLManager() = delete;

private:
    static void record(std::string_view text);
    static void recordBegin(std::string_view function, std::string_view detail);
    static void recordEnd(std::string_view function, long returnCode);
    static void closeEntry();
};

#endif
