#include "TYPMapCATUnicodeStringPVoid.h"

#include <cstdlib>
#include <functional>
#include <new>

static_assert(sizeof(TYPMapCATUnicodeStringPVoid) == TYPMapCATUnicodeStringPVoid::kBytes, "the slot size is the map's");

TYPMapCATUnicodeStringPVoid::TYPMapCATUnicodeStringPVoid(const char* name, int initialSize)
    : _name(TYPTypeTag::intern(name)), _count(0), _onHeap(0), _live(0), _one{nullptr, nullptr, nullptr} {
    if (initialSize > 1) {
        const uint32_t want = static_cast<uint32_t>(initialSize < (1 << 16) ? initialSize : (1 << 16));
        auto* array = static_cast<Slot*>(std::malloc(want * sizeof(Slot)));
        if (!array) throw std::bad_alloc();
        _many = Many{array, nullptr, want};
        _onHeap = 1;
    }
}

TYPMapCATUnicodeStringPVoid::~TYPMapCATUnicodeStringPVoid() {
    clear();
    if (_onHeap) {
        std::free(_many.slots);
        delete[] _many.index;
    }
}

uint32_t TYPMapCATUnicodeStringPVoid::indexSize(uint32_t capacity) {
    uint32_t size = 16;
    while (size < capacity * 2) size <<= 1;
    return size;
}

// A key given by reference may be the very text of an entry's shared node
// (a component's name): the address settles it before any comparison.
long TYPMapCATUnicodeStringPVoid::locate(const CATUnicodeString& key) const {
    const Slot* s = slots();
    auto same = [&key](const Slot& e) { return e.live() && (&e.key->text == &key || e.key->text == key); };
    if (!_onHeap || !_many.index) {
        for (uint32_t i = 0; i < _count; ++i) {
            if (same(s[i])) return static_cast<long>(i);
        }
        return -1;
    }
    const uint32_t mask = indexSize(_many.capacity) - 1;
    for (size_t p = CATUnicodeStringHash()(key) & mask;; p = (p + 1) & mask) {
        const uint32_t e = _many.index[p];
        if (e == kEmptySlot) return -1;
        if (same(s[e])) return static_cast<long>(e);
    }
}

// A text key equals an entry whose key has no code point above 0xFF and the
// same ISO-8859-1 bytes; it hashes as CATUnicodeStringHash hashes that entry.
long TYPMapCATUnicodeStringPVoid::locate(std::string_view key) const {
    const Slot* s = slots();
    auto same = [&key](const Slot& e) { return e.live() && !e.key->text.IsWide() && e.key->text.ToLatin1() == key; };
    if (!_onHeap || !_many.index) {
        for (uint32_t i = 0; i < _count; ++i) {
            if (same(s[i])) return static_cast<long>(i);
        }
        return -1;
    }
    const uint32_t mask = indexSize(_many.capacity) - 1;
    for (size_t p = std::hash<std::string_view>()(key) & mask;; p = (p + 1) & mask) {
        const uint32_t e = _many.index[p];
        if (e == kEmptySlot) return -1;
        if (same(s[e])) return static_cast<long>(e);
    }
}

void TYPMapCATUnicodeStringPVoid::indexEntry(uint32_t entry) const {
    const uint32_t mask = indexSize(_many.capacity) - 1;
    size_t p = _many.slots[entry].key->hash & mask;
    while (_many.index[p] != kEmptySlot) p = (p + 1) & mask;
    _many.index[p] = entry;
}

// The index covers the array's whole capacity, so it is rebuilt only when the
// array grows or compacts; a map of up to kLinearLimit entries has none.
void TYPMapCATUnicodeStringPVoid::rebuildIndex() const {
    if (!_onHeap) return;
    delete[] _many.index;
    _many.index = nullptr;
    if (_many.capacity <= kLinearLimit) return;
    const uint32_t size = indexSize(_many.capacity);
    _many.index = new uint32_t[size];
    for (uint32_t p = 0; p < size; ++p) _many.index[p] = kEmptySlot;
    for (uint32_t i = 0; i < _count; ++i) {
        if (_many.slots[i].live()) indexEntry(i);
    }
}

void TYPMapCATUnicodeStringPVoid::compact() const {
    Slot* s = slots();
    uint32_t kept = 0;
    for (uint32_t i = 0; i < _count; ++i) {
        if (s[i].live()) s[kept++] = s[i];
    }
    _count = kept;
    rebuildIndex();
}

// Small arrays grow by one or two entries (most relation maps stop at two or
// three), larger ones by half.
void TYPMapCATUnicodeStringPVoid::grow() {
    const uint32_t old = capacity();
    const uint32_t want = old < 4 ? old + 1 : old + old / 2;
    Slot* array;
    if (_onHeap) {
        array = static_cast<Slot*>(std::realloc(_many.slots, want * sizeof(Slot)));
        if (!array) throw std::bad_alloc();
        _many.slots = array;
        _many.capacity = want;
    } else {
        array = static_cast<Slot*>(std::malloc(want * sizeof(Slot)));
        if (!array) throw std::bad_alloc();
        if (_count) array[0] = _one;
        _many = Many{array, nullptr, want};
        _onHeap = 1;
    }
    rebuildIndex();
}

int TYPMapCATUnicodeStringPVoid::insert(const CATUnicodeString& key, void* object, const char* typeTag, int) {
    if (locate(key) >= 0) return 0;
    append(TYPSharedText::acquire(key), object, typeTag);
    return 1;
}

int TYPMapCATUnicodeStringPVoid::insert(const TYPSharedText::Node* key, void* object, const char* typeTag, int) {
    if (!key) return insert(CATUnicodeString(), object, typeTag, 0);
    if (locate(key->text) >= 0) return 0;
    append(TYPSharedText::retain(key), object, typeTag);
    return 1;
}

void TYPMapCATUnicodeStringPVoid::append(const TYPSharedText::Node* key, void* object, const char* typeTag) {
    const uint32_t dead = _count - _live;
    if (_count == capacity()) {
        // Tombstones make room first when they are as many as the live ones.
        if (dead > 0 && dead >= _live) {
            compact();
        }
        if (_count == capacity()) grow();
    }
    slots()[_count] = Slot{key, object, TYPTypeTag::intern(typeTag)};
    ++_count;
    ++_live;
    if (_onHeap && _many.index) indexEntry(_count - 1);
}

void* TYPMapCATUnicodeStringPVoid::objectAt(long i, const char* typeTag) const {
    if (i < 0) return nullptr;
    const Slot& e = slots()[i];
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
    const long i = locate(key);
    if (i < 0) return 0;
    Slot& e = slots()[i];
    // `key` may be the entry's own text: released last. Probes and walks
    // read a tombstone's tag only, never its key.
    const TYPSharedText::Node* held = e.key;
    e = Slot{nullptr, nullptr, nullptr};
    --_live;
    if (static_cast<uint32_t>(i) + 1 == _count && !(_onHeap && _many.index)) --_count;
    TYPSharedText::release(held);
    return 1;
}

void TYPMapCATUnicodeStringPVoid::clear() {
    Slot* s = slots();
    for (uint32_t i = 0; i < _count; ++i) {
        if (s[i].live()) TYPSharedText::release(s[i].key);
    }
    _count = 0;
    _live = 0;
    if (_onHeap && _many.index) {
        const uint32_t size = indexSize(_many.capacity);
        for (uint32_t p = 0; p < size; ++p) _many.index[p] = kEmptySlot;
    }
}

void* TYPMapCATUnicodeStringPVoid::getObject(int index) const {
    if (index < 0 || static_cast<uint32_t>(index) >= _live) return nullptr;
    if (_count != _live) compact();
    return slots()[index].object;
}

const CATUnicodeString* TYPMapCATUnicodeStringPVoid::getKey(int index) const {
    if (index < 0 || static_cast<uint32_t>(index) >= _live) return nullptr;
    if (_count != _live) compact();
    return &slots()[index].key->text;
}

const std::string* TYPMapCATUnicodeStringPVoid::getTag(int index) const {
    if (index < 0 || static_cast<uint32_t>(index) >= _live) return nullptr;
    if (_count != _live) compact();
    return slots()[index].tag;
}

void* TYPMapCATUnicodeStringPVoid::first() const {
    auto it = begin();
    return it == end() ? nullptr : (*it).object;
}
