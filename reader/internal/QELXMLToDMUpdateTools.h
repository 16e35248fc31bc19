#ifndef QELXMLToDMUpdateTools_H
#define QELXMLToDMUpdateTools_H

// Helpers shared by the reader's sources: an entry's values read as the
// reader reads them, and the walks over counted blocks.
//
// The answer is untrusted: a count is only an upper bound, so every walk over
// a counted block also stops where the block itself ends, with a journal line
// that says how far the count was off.

#include <climits>
#include <cstdlib>
#include <memory>
#include <string>

#include "CATUnicodeString.h"
#include "JNLManager.h"
#include "QELAnswerEntry.h"
#include "QELLookups.h"
#include "QELStatus.h"
#include "TYPMapCATUnicodeStringPVoid.h"
#include "TYPVector.h"
#include "UTILLineFile.h"

namespace QELXMLToDMUpdateTools {

// The journal lines of an answer that ends early or lacks a closing line.
inline void journalEndOfFile(const std::string& path) {
    JNLManager::writeMsgFormatted("Error while reading desc.xml file %s. Unexpected end of file", path.c_str());
}
inline void journalMissing(const std::string& path, const std::string& line) {
    JNLManager::writeMsgFormatted("Error while reading desc.xml file %s. %s is missing", path.c_str(), line.c_str());
}

// The text an entry holds under `key`, or null.
inline const CATUnicodeString* entryValue(const QELAnswerEntry* entry, const char* key) {
    return entry ? entry->find(key) : nullptr;
}

// atoi's reading (leading blanks, a sign, digits, anything after ignored),
// clamped to the range of an int instead of overflowing.
inline int toInt(const char* text) {
    const long value = std::strtol(text, nullptr, 10);
    if (value > INT_MAX) return INT_MAX;
    if (value < INT_MIN) return INT_MIN;
    return static_cast<int>(value);
}
inline int toInt(const CATUnicodeString& text) { return toInt(text.ConvertToChar()); }

// The content position the driver stored for a block, 0 when the block is
// absent or its text is no position (0 would mean "read on from here", which
// is never where a block starts).
inline long long blockPosition(const QELAnswerEntry* entry, const char* block) {
    const CATUnicodeString* text = entryValue(entry, block);
    if (!text) return 0;
    long long position = std::strtoll(text->ConvertToChar(), nullptr, 10);
    return position > 0 ? position : 0;
}

inline bool startsWith(const CATUnicodeString& text, const char* prefix) {
    return text.ToLatin1().compare(0, std::char_traits<char>::length(prefix), prefix) == 0;
}

// The key under which names that compare equal (Compare not 0) meet.
inline CATUnicodeString lowered(CATUnicodeString text) {
    text.ToLower();
    return text;
}

// True when nothing more of the enclosing block can be read from `pos`: the
// line there closes an element (the block's own closing line, or an outer
// one when the block's is missing) or the file ends. A sibling search from
// such a place finds nothing, so a counted walk stops here instead of asking
// again for every entry the count still promises.
inline bool blockEndsAt(UTILLineFile& file, long long pos) {
    if (pos <= 0 || !file.seek(pos)) return true;
    std::string line;
    if (!file.readLine(line)) return true;
    return line.size() >= 2 && line[0] == '<' && line[1] == '/';
}

inline void reportShortBlock(const char* function, const char* block, int announced, int found) {
    JNLManager::writeMsgFormatted("%s: %s announces %d elements but holds %d", function, block, announced, found);
}

// Reads `count` lists named `element` one after the other from `pos` and hands
// each to `use`. `readList(start, element, pos)` is the reader's list search
// (a new vector, freed here).
template <typename ReadList, typename Use>
void forEachList(UTILLineFile& file, const char* function, const char* block, const char* element, int count,
                 long long pos, ReadList readList, Use use) {
    for (int i = 0; i < count; ++i) {
        if (blockEndsAt(file, pos)) return reportShortBlock(function, block, count, i);
        std::unique_ptr<TYPVectorCATUnicodeString> list(readList(pos, element, pos));
        if (list) use(*list);
    }
}

// Reads `count` values of `element` one after the other from `pos` and hands
// each to `use` with its index. `readValue(start, element, pos, value)` is the
// reader's value search.
template <typename ReadValue, typename Use>
void forEachValue(UTILLineFile& file, const char* function, const char* block, const char* element, int count,
                  long long pos, ReadValue readValue, Use use) {
    for (int i = 0; i < count; ++i) {
        std::string value;
        if (blockEndsAt(file, pos) || !readValue(pos, element, pos, value)) {
            return reportShortBlock(function, block, count, i);
        }
        use(i, CATUnicodeString(value));
    }
}

// Reads `pairs` pairs of `element` values one after the other from `pos` and
// hands each pair to `use`. `readValue(start, element, pos, value)` is the
// reader's value search.
template <typename ReadValue, typename Use>
void forEachValuePair(UTILLineFile& file, const char* function, const char* block, const char* element, int pairs,
                      long long pos, ReadValue readValue, Use use) {
    for (int i = 0; i < pairs; ++i) {
        std::string name, value;
        if (blockEndsAt(file, pos) || !readValue(pos, element, pos, name)) {
            return reportShortBlock(function, block, 2 * pairs, 2 * i);
        }
        if (blockEndsAt(file, pos) || !readValue(pos, element, pos, value)) {
            return reportShortBlock(function, block, 2 * pairs, 2 * i + 1);
        }
        use(CATUnicodeString(name), CATUnicodeString(value));
    }
}

} // namespace QELXMLToDMUpdateTools

#endif
