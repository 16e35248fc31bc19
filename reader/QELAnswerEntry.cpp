#include "QELAnswerEntry.h"

#include <functional>

void QELAnswerEntry::clear() {
    // Only the slots this entry took: a single huge entry must not make every
    // later clear pay for the table it left behind.
    for (size_t i = 0; i < _count; ++i) _slots[_slotOfValue[i]] = kEmpty;
    _count = 0;
}

size_t QELAnswerEntry::slotOf(std::string_view key) const {
    const size_t mask = _slots.size() - 1;
    size_t slot = std::hash<std::string_view>()(key) & mask;
    while (_slots[slot] != kEmpty && std::string_view(_values[_slots[slot]].key.ToLatin1()) != key)
        slot = (slot + 1) & mask;
    return slot;
}

void QELAnswerEntry::grow() {
    std::vector<uint32_t> slots(_slots.empty() ? 64 : 2 * _slots.size(), kEmpty);
    _slots.swap(slots);
    for (size_t i = 0; i < _count; ++i) {
        const size_t slot = slotOf(_values[i].key.ToLatin1());
        _slots[slot] = static_cast<uint32_t>(i);
        _slotOfValue[i] = static_cast<uint32_t>(slot);
    }
}

bool QELAnswerEntry::add(const std::string& key, const std::string& text) {
    if (2 * (_count + 1) > _slots.size()) grow();
    const size_t slot = slotOf(key);
    if (_slots[slot] != kEmpty) return false;
    if (_count == _values.size()) {
        _values.emplace_back();
        _slotOfValue.push_back(0);
    }
    // Assigning keeps the storage the strings already hold.
    Value& value = _values[_count];
    value.key = key;
    value.text = text;
    _slots[slot] = static_cast<uint32_t>(_count);
    _slotOfValue[_count] = static_cast<uint32_t>(slot);
    ++_count;
    return true;
}

const CATUnicodeString* QELAnswerEntry::find(std::string_view key) const {
    if (_count == 0) return nullptr;
    const uint32_t index = _slots[slotOf(key)];
    return index == kEmpty ? nullptr : &_values[index].text;
}
