#include "TYPMapCATUnicodeStringPVoid.h"

#include <algorithm>

TYPMapCATUnicodeStringPVoid::TYPMapCATUnicodeStringPVoid(const char* name, int initialSize)
    : _name(TYPTypeTag::intern(name)) {
    if (initialSize > 0) _entries.reserve(static_cast<size_t>(std::min(initialSize, 1 << 16)));
}

long TYPMapCATUnicodeStringPVoid::locate(const CATUnicodeString& key) const {
    if (!indexed()) {
        for (size_t i = 0; i < _entries.size(); ++i) {
            if (_entries[i].live() && _entries[i].key == key) return static_cast<long>(i);
        }
        return -1;
    }
    const std::vector<uint32_t>& slots = *_slots;
    size_t mask = slots.size() - 1;
    for (size_t s = CATUnicodeStringHash()(key) & mask;; s = (s + 1) & mask) {
        uint32_t e = slots[s];
        if (e == kEmptySlot) return -1;
        if (_entries[e].live() && _entries[e].key == key) return static_cast<long>(e);
    }
}

// A text key equals an entry whose key has no code point above 0xFF and the
// same ISO-8859-1 bytes; it hashes as CATUnicodeStringHash hashes that entry.
long TYPMapCATUnicodeStringPVoid::locate(std::string_view key) const {
    auto same = [&key](const Entry& e) { return e.live() && !e.key.IsWide() && e.key.ToLatin1() == key; };
    if (!indexed()) {
        for (size_t i = 0; i < _entries.size(); ++i) {
            if (same(_entries[i])) return static_cast<long>(i);
        }
        return -1;
    }
    const std::vector<uint32_t>& slots = *_slots;
    size_t mask = slots.size() - 1;
    for (size_t s = std::hash<std::string_view>()(key) & mask;; s = (s + 1) & mask) {
        uint32_t e = slots[s];
        if (e == kEmptySlot) return -1;
        if (same(_entries[e])) return static_cast<long>(e);
    }
}

void TYPMapCATUnicodeStringPVoid::indexEntry(uint32_t entry) const {
    std::vector<uint32_t>& slots = *_slots;
    size_t mask = slots.size() - 1;
    size_t s = CATUnicodeStringHash()(_entries[entry].key) & mask;
    while (slots[s] != kEmptySlot) s = (s + 1) & mask;
    slots[s] = entry;
}

void TYPMapCATUnicodeStringPVoid::rebuildIndex() const {
    if (_entries.size() <= kLinearLimit) {
        // Emptied, not freed: a map cleared and refilled (the reader's entry
        // map) keeps its index storage.
        if (_slots) _slots->clear();
        return;
    }
    size_t want = 16;
    while (want < _entries.size() * 2) want <<= 1;
    if (!_slots) _slots = std::make_unique<std::vector<uint32_t>>();
    _slots->assign(want, kEmptySlot);
    for (size_t i = 0; i < _entries.size(); ++i) {
        if (_entries[i].live()) indexEntry(static_cast<uint32_t>(i));
    }
}

void TYPMapCATUnicodeStringPVoid::compact() const {
    _entries.erase(std::remove_if(_entries.begin(), _entries.end(),
                                  [](const Entry& e) { return !e.live(); }),
                   _entries.end());
    rebuildIndex();
}

int TYPMapCATUnicodeStringPVoid::insert(const CATUnicodeString& key, void* object,
                                        const char* typeTag, int /*flag*/) {
    if (locate(key) >= 0) return 0;
    append(CATUnicodeString(key), object, typeTag);
    return 1;
}

int TYPMapCATUnicodeStringPVoid::insert(CATUnicodeString&& key, void* object, const char* typeTag, int /*flag*/) {
    if (locate(key) >= 0) return 0;
    append(std::move(key), object, typeTag);
    return 1;
}

void TYPMapCATUnicodeStringPVoid::append(CATUnicodeString&& key, void* object, const char* typeTag) {
    _entries.push_back(Entry{std::move(key), object, TYPTypeTag::intern(typeTag)});
    ++_live;
    size_t dead = _entries.size() - _live;
    if (dead > kLinearLimit && dead > _live) {
        compact();
    } else if (_entries.size() > kLinearLimit) {
        // Keep the table at most half full, tombstones included.
        if (!indexed() || _slots->size() < _entries.size() * 2) {
            rebuildIndex();
        } else {
            indexEntry(static_cast<uint32_t>(_entries.size() - 1));
        }
    }
}

void* TYPMapCATUnicodeStringPVoid::objectAt(long i, const char* typeTag) const {
    if (i < 0) return nullptr;
    const Entry& e = _entries[static_cast<size_t>(i)];
    if (typeTag && *typeTag && *e.tag != typeTag) return nullptr;
    return e.object;
}

void* TYPMapCATUnicodeStringPVoid::find(const CATUnicodeString& key, const char* typeTag) const {
    return objectAt(locate(key), typeTag);
}

void* TYPMapCATUnicodeStringPVoid::find(const char* key, const char* typeTag) const {
    return objectAt(locate(std::string_view(key ? key : "")), typeTag);
}

int TYPMapCATUnicodeStringPVoid::erase(const CATUnicodeString& key) {
    long i = locate(key);
    if (i < 0) return 0;
    Entry& e = _entries[static_cast<size_t>(i)];
    e.tag = nullptr;
    e.object = nullptr;
    e.key = CATUnicodeString();
    --_live;
    return 1;
}

void TYPMapCATUnicodeStringPVoid::clear() {
    _entries.clear();
    if (_slots) _slots->clear();
    _live = 0;
}

void* TYPMapCATUnicodeStringPVoid::getObject(int index) const {
    if (index < 0 || static_cast<size_t>(index) >= _live) return nullptr;
    if (_entries.size() != _live) compact();
    return _entries[static_cast<size_t>(index)].object;
}

const CATUnicodeString* TYPMapCATUnicodeStringPVoid::getKey(int index) const {
    if (index < 0 || static_cast<size_t>(index) >= _live) return nullptr;
    if (_entries.size() != _live) compact();
    return &_entries[static_cast<size_t>(index)].key;
}

const std::string* TYPMapCATUnicodeStringPVoid::getTag(int index) const {
    if (index < 0 || static_cast<size_t>(index) >= _live) return nullptr;
    if (_entries.size() != _live) compact();
    return _entries[static_cast<size_t>(index)].tag;
}

void* TYPMapCATUnicodeStringPVoid::first() const {
    auto it = begin();
    return it == end() ? nullptr : it->object;
}
