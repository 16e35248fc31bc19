#ifndef QELEntryCount_H
#define QELEntryCount_H

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

// Why a description of the session built in this process holds another number
// of entries than its NBElements announces. The writer counts components one
// by one but describes them by walking the tree, and the two differ on
// purpose in a few cases; the description is kept as the writer makes it, so
// the difference is explained here instead, rule by rule, from the model.

struct QELCountReason {
    std::string rule;    // the writer's rule, as a user reads it
    long entries = 0;    // how many entries of difference it accounts for
    std::string example; // one component it applies to
};

struct QELCountExplanation {
    long counted = 0; // what the writer's count comes to for this session
    std::vector<QELCountReason> reasons;
    bool catalog = false; // the catalog traversal counts by its own rules
    // Every entry of difference has a rule, and the count is this session's.
    bool explains(long announced) const { return !catalog && counted == announced && unexplained == 0; }
    long unexplained = 0;
};

// `written`: how many entries of the description carry each token.
QELCountExplanation qelExplainEntryCount(const std::unordered_map<uint64_t, long>& written);

// The tokens of a description's entries, as qelExplainEntryCount takes them;
// false when the file cannot be read (`error` says why).
bool qelWrittenTokens(const std::string& descriptionPath, std::unordered_map<uint64_t, long>& written,
                      std::string& error);

// "18 entries announced and 17 written: 1 by the rule ..., e.g. ...", in one line.
std::string qelCountNote(long announced, long written, const QELCountExplanation& explanation);

#endif
