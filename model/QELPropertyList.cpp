#include "QELPropertyList.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>

#include "QELProperty.h"

namespace {

// Both lookups hash the ISO-8859-1 bytes of the name, so that a text name
// finds the property whose name has the same bytes and no wider code point.
size_t hashOf(const CATUnicodeString& name) { return CATUnicodeStringHash()(name); }
size_t hashOf(std::string_view name) { return std::hash<std::string_view>()(name); }
size_t hashOf(const QELProperty* property) { return property->get_NameHash(); }

template <class T> T* allocateArray(size_t count) {
    auto* array = static_cast<T*>(std::malloc(count * sizeof(T)));
    if (!array) throw std::bad_alloc();
    return array;
}

} // namespace

QELPropertyList::~QELPropertyList() { release(); }

// A short list is scanned without hashing the name asked for: comparing a
// handful of texts (lengths first) costs less. In a hashed list each
// property carries the hash of its shared name, so only a match compares
// the text.
template <class Same> long QELPropertyList::locate(size_t hash, Same same) const {
    if (!_slots) {
        for (uint32_t i = 0; i < _size; ++i) {
            if (same(_order[i])) return static_cast<long>(i);
        }
        return -1;
    }
    const size_t mask = _slotCount - 1;
    for (size_t s = hash & mask;; s = (s + 1) & mask) {
        const uint32_t e = _slots[s];
        if (e == kEmptySlot) return -1;
        if (_order[e] && _order[e]->get_NameHash() == hash && same(_order[e])) return static_cast<long>(e);
    }
}

long QELPropertyList::locate(const CATUnicodeString& name) const {
    // A name taken from a property is the shared copy itself.
    return locate(_slots ? hashOf(name) : 0, [&name](const QELProperty* p) {
        const CATUnicodeString& own = p->get_Name();
        return &own == &name || (own.GetLengthInByte() == name.GetLengthInByte() && own == name);
    });
}

QELProperty* QELPropertyList::find(const CATUnicodeString& name) const {
    const long i = locate(name);
    return i < 0 ? nullptr : _order[i];
}

QELProperty* QELPropertyList::find(std::string_view name) const {
    const long i = locate(_slots ? hashOf(name) : 0, [name](const QELProperty* p) {
        return !p->get_Name().IsWide() && p->get_Name().ToLatin1() == name;
    });
    return i < 0 ? nullptr : _order[i];
}

void QELPropertyList::indexEntry(uint32_t entry) const {
    const size_t mask = _slotCount - 1;
    size_t s = hashOf(_order[entry]) & mask;
    while (_slots[s] != kEmptySlot) s = (s + 1) & mask;
    _slots[s] = entry;
}

void QELPropertyList::rebuildIndex() const {
    std::free(_slots);
    _slots = nullptr;
    _slotCount = 0;
    if (_size <= kLinearLimit) return;
    uint32_t want = 16;
    while (want < _size * 2) want <<= 1;
    _slots = allocateArray<uint32_t>(want);
    _slotCount = want;
    std::fill(_slots, _slots + want, kEmptySlot);
    for (uint32_t i = 0; i < _size; ++i) {
        if (_order[i]) indexEntry(i);
    }
}

void QELPropertyList::compact() const {
    _size = static_cast<uint32_t>(std::remove(_order, _order + _size, nullptr) - _order);
    rebuildIndex();
}

void QELPropertyList::push(QELProperty* property) {
    if (_size == _capacity) {
        // Most components hold two to six properties: a short list grows one
        // entry at a time, so that it ends at its exact size.
        if (_capacity >= kMaxCapacity) throw std::bad_alloc();
        const uint32_t want = _capacity < kExactLimit ? _capacity + 1 : _capacity * 2;
        auto* grown = static_cast<QELProperty**>(std::realloc(_order, want * sizeof(QELProperty*)));
        if (!grown) throw std::bad_alloc();
        _order = grown;
        _capacity = want;
    }
    _order[_size++] = property;
    const uint32_t gaps = _size - _live;
    if (gaps > kLinearLimit && gaps > _live) {
        compact();
    } else if (_size > kLinearLimit) {
        // Keep the index at most half full, gaps included.
        if (_slotCount < _size * 2) {
            rebuildIndex();
        } else {
            indexEntry(_size - 1);
        }
    }
}

void QELPropertyList::append(QELProperty* property) {
    ++_live;
    push(property);
}

// A short list (no index) closes the gap at once: shifting at most eight
// pointers costs less than the gap would later, and keeps the list free of
// gaps, which its scan relies on. A hashed list leaves a gap.
QELProperty* QELPropertyList::remove(const CATUnicodeString& name) {
    const long i = locate(name);
    if (i < 0) return nullptr;
    QELProperty* property = _order[i];
    if (!_slots) {
        std::memmove(_order + i, _order + i + 1, (_size - static_cast<uint32_t>(i) - 1) * sizeof(QELProperty*));
        --_size;
    } else {
        _order[i] = nullptr;
    }
    --_live;
    return property;
}

QELProperty* QELPropertyList::moveToEnd(const CATUnicodeString& name) {
    const long i = locate(name);
    if (i < 0) return nullptr;
    QELProperty* moved = _order[i];
    if (static_cast<uint32_t>(i) + 1 == _size) return moved;
    if (!_slots) {
        std::rotate(_order + i, _order + i + 1, _order + _size);
        return moved;
    }
    _order[i] = nullptr;
    push(moved);
    return moved;
}

QELProperty* QELPropertyList::at(int index) const {
    if (index < 0 || static_cast<uint32_t>(index) >= _live) return nullptr;
    if (_size != _live) compact();
    return _order[index];
}

void QELPropertyList::clear() {
    _size = 0;
    _live = 0;
    std::free(_slots);
    _slots = nullptr;
    _slotCount = 0;
}

void QELPropertyList::release() {
    clear();
    std::free(_order);
    _order = nullptr;
    _capacity = 0;
}
