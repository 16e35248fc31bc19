#ifndef QELAnswerCrossCheck_H
#define QELAnswerCrossCheck_H

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "QELEntryFields.h"

class QELComponent;

// The answer cross-check: every entry of an answer is compared with what its
// POINTER_ADDRESS designates, before anything is applied. A token ties an
// entry to a component by construction order only, so an answer meant for
// another build of the session, or one whose tokens were swapped, would
// otherwise write one component's identifiers onto another.
//
// What must hold, entry by entry:
//   - the token is a handle, designates something, and is answered once;
//   - the entry's element is the document type that was described
//     ("Unknown" for a broken icon);
//   - what the PDM side echoes unchanged matches what was described, where
//     both sides carry a value: InstanceName, Occ_UID (unless the answer
//     marks it created), Old_File_Name against the described File_Name,
//     DST_UID and ItemRev_UID (the PDM keeps the identity of what it knows).
// Broken icons are compared by their element only: the description carries
// placeholders for them.

// One mismatch, at the answer's line.
struct QELMismatch {
    long line = 0;
    std::string message;
};

struct QELCrossCheckReport {
    std::vector<QELMismatch> mismatches; // in answer order, at most kMaxKept
    size_t count = 0;                    // all of them
    long entries = 0;                    // answer entries compared
    static constexpr size_t kMaxKept = 10000;
    void add(long line, std::string message);
};

// What one token designates, as the side it is compared with knows it. The
// texts that name it are made only for a mismatch: most entries match.
struct QELExpectedEntry {
    std::string element; // the element the entry must have; empty: any that names documentType
    int documentType = -1;
    bool broken = false;
    QELEntryFields described; // the described values (File_Name, not Old_File_Name)
    // Who says so: a component of the session, or a description's entry.
    const QELComponent* component = nullptr;
    const char* kind = "";
    const std::string* source = nullptr; // the description's path
    long sourceLine = 0;

    // Names that side in a message ("occurrence "Bolt.1" of the session (...)").
    std::string who(const std::string& token) const;
    // The type the entry must have, in words.
    std::string typeShown() const;
};

// What a token designates on the side the answer is compared with: false
// when it designates nothing (`why` then says so).
using QELExpectation = std::function<bool(const std::string& token, QELExpectedEntry& out, std::string& why)>;

// The entries of a description, by token.
class QELDescribedEntries {
public:
    // False when the file cannot be read (`error` says why); `name` names
    // the description in messages.
    bool read(const std::string& path, const std::string& name, std::string& error);
    bool expected(const std::string& token, QELExpectedEntry& out, std::string& why) const;
    size_t size() const { return _entries.size(); }

private:
    std::string _path;
    std::unordered_map<uint64_t, QELEntryFields> _entries;
};

// What a token designates in the session built in this process.
bool qelExpectedFromModel(const std::string& token, QELExpectedEntry& out, std::string& why);

// Compares every entry of the answer with what `expectation` says. False when the answer
// cannot be read (`error` says why); mismatches go into the report.
bool qelCrossCheckAnswer(const std::string& answerPath, const QELExpectation& expectation, QELCrossCheckReport& report,
                         std::string& error, const std::function<void(long long, long long)>& progress = {});

#endif
