#ifndef EMHManager_H
#define EMHManager_H

#include <cstddef>
#include <string>
#include <vector>

#include "CATUnicodeString.h"

// Stand-in for the in-house error handler: a process-wide record of the
// errors the data model reports (the reporting function, a numeric code and a
// detail naming what was wrong).
//
// Every error is kept in memory, in order, as ISO-8859-1 text, so that tests
// and tools can check what was reported. When the environment variable
// QEL_ERRORS is set, each error is also appended as the line
// "function: code: detail" to the file it names, or written to standard error
// when its value is "-". The variable is read once, at the first error;
// setOutputPath overrides it.
//
// Memory stays bounded like the journal's: past maxEntries() errors held, the
// oldest half is dropped. Not thread-safe: the library runs on its caller's
// thread.
class EMHManager {
public:
    struct Entry {
        std::string function;
        long code;
        std::string detail;
    };

    static constexpr std::size_t kDefaultMaxEntries = 1000000;

    static void writeMsg(const CATUnicodeString& function, long code,
                         const CATUnicodeString& detail);

    static const std::vector<Entry>& entries();
    // Forgets the errors held in memory; what went to the output stays there.
    static void clear();

    // Sends the following errors to `path` (appended), to standard error
    // ("-"), or nowhere (empty), instead of what QEL_ERRORS says. Answers
    // false when the file cannot be opened; nothing is written out then.
    static bool setOutputPath(const CATUnicodeString& path);
    // Closes the output chosen so far; the next error reads QEL_ERRORS again.
    static void resetOutput();

    // Bound on the errors held in memory; 0 restores the default.
    static void setMaxEntries(std::size_t maxEntries);
    static std::size_t maxEntries();

    EMHManager() = delete;
};

#endif
