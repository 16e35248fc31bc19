#include "QELPropertyList.h"

#include <algorithm>
#include <functional>

#include "QELProperty.h"

namespace {

// Both lookups hash the ISO-8859-1 bytes of the name, so that a text name
// finds the property whose name has the same bytes and no wider code point.
size_t hashOf(const CATUnicodeString& name) { return CATUnicodeStringHash()(name); }
size_t hashOf(std::string_view name) { return std::hash<std::string_view>()(name); }
size_t hashOf(const QELProperty* property) { return hashOf(property->get_Name()); }

} // namespace

template <class Same> long QELPropertyList::locate(size_t hash, Same same) const {
    if (_slots.empty()) {
        for (size_t i = 0; i < _order.size(); ++i) {
            if (_order[i] && same(_order[i])) return static_cast<long>(i);
        }
        return -1;
    }
    const size_t mask = _slots.size() - 1;
    for (size_t s = hash & mask;; s = (s + 1) & mask) {
        const uint32_t e = _slots[s];
        if (e == kEmptySlot) return -1;
        if (_order[e] && same(_order[e])) return static_cast<long>(e);
    }
}

long QELPropertyList::locate(const CATUnicodeString& name) const {
    return locate(_slots.empty() ? 0 : hashOf(name), [&name](const QELProperty* p) { return p->get_Name() == name; });
}

QELProperty* QELPropertyList::find(const CATUnicodeString& name) const {
    const long i = locate(name);
    return i < 0 ? nullptr : _order[static_cast<size_t>(i)];
}

QELProperty* QELPropertyList::find(std::string_view name) const {
    const long i = locate(_slots.empty() ? 0 : hashOf(name), [name](const QELProperty* p) {
        return !p->get_Name().IsWide() && p->get_Name().ToLatin1() == name;
    });
    return i < 0 ? nullptr : _order[static_cast<size_t>(i)];
}

void QELPropertyList::indexEntry(uint32_t entry) const {
    const size_t mask = _slots.size() - 1;
    size_t s = hashOf(_order[entry]) & mask;
    while (_slots[s] != kEmptySlot) s = (s + 1) & mask;
    _slots[s] = entry;
}

void QELPropertyList::rebuildIndex() const {
    if (_order.size() <= kLinearLimit) {
        std::vector<uint32_t>().swap(_slots);
        return;
    }
    size_t want = 16;
    while (want < _order.size() * 2) want <<= 1;
    _slots.assign(want, kEmptySlot);
    for (size_t i = 0; i < _order.size(); ++i) {
        if (_order[i]) indexEntry(static_cast<uint32_t>(i));
    }
}

void QELPropertyList::compact() const {
    _order.erase(std::remove(_order.begin(), _order.end(), nullptr), _order.end());
    rebuildIndex();
}

void QELPropertyList::push(QELProperty* property) {
    // Most components hold two to six properties: a short list grows one
    // entry at a time, so that it ends at its exact size.
    if (_order.size() == _order.capacity() && _order.size() < kExactLimit) _order.reserve(_order.size() + 1);
    _order.push_back(property);
    const size_t gaps = _order.size() - _live;
    if (gaps > kLinearLimit && gaps > _live) {
        compact();
    } else if (_order.size() > kLinearLimit) {
        // Keep the index at most half full, gaps included.
        if (_slots.size() < _order.size() * 2) {
            rebuildIndex();
        } else {
            indexEntry(static_cast<uint32_t>(_order.size() - 1));
        }
    }
}

void QELPropertyList::append(QELProperty* property) {
    ++_live;
    push(property);
}

QELProperty* QELPropertyList::remove(const CATUnicodeString& name) {
    const long i = locate(name);
    if (i < 0) return nullptr;
    QELProperty* property = _order[static_cast<size_t>(i)];
    _order[static_cast<size_t>(i)] = nullptr;
    --_live;
    return property;
}

QELProperty* QELPropertyList::moveToEnd(const CATUnicodeString& name) {
    const long i = locate(name);
    if (i < 0) return nullptr;
    QELProperty* moved = _order[static_cast<size_t>(i)];
    if (static_cast<size_t>(i) + 1 == _order.size()) return moved;
    _order[static_cast<size_t>(i)] = nullptr;
    push(moved);
    return moved;
}

QELProperty* QELPropertyList::at(int index) const {
    if (index < 0 || static_cast<size_t>(index) >= _live) return nullptr;
    if (_order.size() != _live) compact();
    return _order[static_cast<size_t>(index)];
}

void QELPropertyList::clear() {
    _order.clear();
    _slots.clear();
    _live = 0;
}
