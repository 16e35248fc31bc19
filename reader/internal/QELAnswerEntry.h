#ifndef QELAnswerEntry_H
#define QELAnswerEntry_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "CATUnicodeString.h"

// The values of one answer entry, key by key, in the answer's order.
//
// An answer holds hundreds of thousands of entries of a few dozen values
// each, read one after the other: the keys and values are kept in strings
// that stay from entry to entry, so that once the first entries have been
// read, collecting one allocates nothing. The first value of a key is the one
// kept. Finding a key takes constant average time, whatever the number of
// keys a (possibly hostile) entry holds.
class QELAnswerEntry {
public:
    struct Value {
        CATUnicodeString key;
        CATUnicodeString text;
    };

    QELAnswerEntry() = default;
    QELAnswerEntry(const QELAnswerEntry&) = delete;
    QELAnswerEntry& operator=(const QELAnswerEntry&) = delete;

    // Forgets the values and keeps their storage for the next entry.
    void clear();
    // Files `text` under `key`; false, nothing kept, when the key is there.
    bool add(const std::string& key, const std::string& text);
    // The text under `key`, or null: owned by this entry, valid until clear.
    const CATUnicodeString* find(std::string_view key) const;
    int size() const { return static_cast<int>(_count); }
    bool empty() const { return _count == 0; }
    const Value* begin() const { return _values.data(); }
    const Value* end() const { return _values.data() + _count; }

private:
    static constexpr uint32_t kEmpty = 0xFFFFFFFFu;

    // The slot of `key`: where it is, or the empty slot where it would go.
    size_t slotOf(std::string_view key) const;
    void grow();

    // The first _count values are this entry's; those after are kept storage.
    std::vector<Value> _values;
    size_t _count = 0;
    // Open addressing over _values, at most half full.
    std::vector<uint32_t> _slots;
    // The slot each value took, so that clear empties only those.
    std::vector<uint32_t> _slotOfValue;
};

#endif
