#ifndef TYPMapCATUnicodeStringPVoid_H
#define TYPMapCATUnicodeStringPVoid_H

#include <cstdint>
#include <string_view>

#include "CATUnicodeString.h"
#include "TYPSharedText.h"
#include "TYPTypeTag.h"
#include "UTILSlotPool.h"

// A named map from text keys to untyped objects, each entry tagged with a type
// text. It iterates in insertion order; find, insert and erase take constant
// average time, and so does access by index while no erasure is pending (the
// first index access after erasures compacts the entries once).
//
// Inserting a key that is already present keeps the existing entry and answers
// 0; a caller that allocated the rejected object frees it. The map never owns
// its objects.
//
// Layout: a model of 100,000 occurrences holds 1.35 million of these, most with
// a single entry, so one entry lives inside the map and more in one array
// (with a hash index past eight); keys are shared counted copies
// (TYPSharedText), never one copy per map.
class TYPMapCATUnicodeStringPVoid final {
public:
    // What iteration answers: a view of one entry, valid until the map changes.
    struct Entry {
        const CATUnicodeString& key;
        void* object;
        const std::string* tag;
    };

private:
    struct Slot {
        const TYPSharedText::Node* key;
        void* object;
        const std::string* tag; // null once the entry is erased
        bool live() const { return tag != nullptr; }
    };

public:
    class const_iterator {
    public:
        const_iterator(const TYPMapCATUnicodeStringPVoid* map, uint32_t pos) : _map(map), _pos(pos) { skip(); }
        Entry operator*() const {
            const Slot& s = _map->slots()[_pos];
            return Entry{s.key->text, s.object, s.tag};
        }
        struct Arrow {
            Entry entry;
            const Entry* operator->() const { return &entry; }
        };
        Arrow operator->() const { return Arrow{**this}; }
        const_iterator& operator++() {
            ++_pos;
            skip();
            return *this;
        }
        bool operator!=(const const_iterator& o) const { return _pos != o._pos; }
        bool operator==(const const_iterator& o) const { return _pos == o._pos; }

    private:
        void skip() {
            while (_pos < _map->_count && !_map->slots()[_pos].live()) ++_pos;
        }
        const TYPMapCATUnicodeStringPVoid* _map;
        uint32_t _pos;
    };

    // Made by the million, one per relation: they live in a slot pool, 40
    // bytes each instead of a 48-byte malloc chunk (the .cpp checks the size).
    static constexpr size_t kBytes = 40;
    static void* operator new(size_t size) { return UTILSlotPool<kBytes>::allocate(size); }
    static void operator delete(void* map) { UTILSlotPool<kBytes>::release(map); }

    explicit TYPMapCATUnicodeStringPVoid(const char* name = "", int initialSize = 0);
    TYPMapCATUnicodeStringPVoid(const TYPMapCATUnicodeStringPVoid&) = delete;
    TYPMapCATUnicodeStringPVoid& operator=(const TYPMapCATUnicodeStringPVoid&) = delete;
    ~TYPMapCATUnicodeStringPVoid();

    const std::string& name() const { return *_name; }

    // 1 when inserted, 0 when the key was already present (nothing changes).
    int insert(const CATUnicodeString& key, void* object, const char* typeTag = "", int flag = 0);
    // The same for a key already shared (a component's name): the map takes
    // one more holder of it.
    int insert(const TYPSharedText::Node* key, void* object, const char* typeTag = "", int flag = 0);
    // The object under `key`, or null. A non-empty tag must match the entry's.
    // Objects are never the map's: an object answered is owned by whoever
    // inserted it, valid until that owner frees it.
    void* find(const CATUnicodeString& key, const char* typeTag = "") const;
    // The same for an ISO-8859-1 key given as text (null reads as empty),
    // without building a CATUnicodeString for it.
    void* find(const char* key, const char* typeTag = "") const;
    bool contains(const CATUnicodeString& key) const { return locate(key) >= 0; }
    // 1 when an entry was erased, 0 when the key was absent.
    int erase(const CATUnicodeString& key);
    // Forgets every entry; the storage stays for the next ones.
    void clear();
    int size() const { return static_cast<int>(_live); }
    bool empty() const { return _live == 0; }

    // Index access in iteration order, from 0; null / empty key out of range.
    // The object is owned as find's; the key is shared (TYPSharedText), valid
    // until its entry is erased or the map cleared or destroyed; the tag is
    // interned (TYPTypeTag), valid until the process ends.
    void* getObject(int index) const;
    const CATUnicodeString* getKey(int index) const;
    const std::string* getTag(int index) const;
    // The first object in iteration order, or null.
    void* first() const;

    const_iterator begin() const { return const_iterator(this, 0); }
    const_iterator end() const { return const_iterator(this, _count); }

    // For the census: entries the array has room for (0 while the one entry
    // lives inside the map), slots of the hash index, and the bytes of one
    // entry.
    uint32_t entryCapacity() const { return _onHeap ? _many.capacity : 0; }
    uint32_t indexSlots() const { return _onHeap && _many.index ? indexSize(_many.capacity) : 0; }
    static constexpr size_t kEntryBytes = sizeof(Slot);

private:
    static constexpr uint32_t kLinearLimit = 8;
    static constexpr uint32_t kEmptySlot = 0xFFFFFFFFu;

    Slot* slots() const { return _onHeap ? _many.slots : &_one; }
    uint32_t capacity() const { return _onHeap ? _many.capacity : 1; }
    static uint32_t indexSize(uint32_t capacity);
    long locate(const CATUnicodeString& key) const;
    long locate(std::string_view key) const;
    void* objectAt(long i, const char* typeTag) const;
    // Appends a key known to be absent; the map takes over the holder.
    void append(const TYPSharedText::Node* key, void* object, const char* typeTag);
    void grow();
    void compact() const;
    void rebuildIndex() const;
    void indexEntry(uint32_t entry) const;

    const std::string* _name;
    // Erased entries stay as tombstones until the next compaction, which a
    // const index access may run: the entries are mutable.
    mutable uint32_t _count : 31; // entries, tombstones included
    uint32_t _onHeap : 1;
    uint32_t _live;
    struct Many {
        Slot* slots;
        uint32_t* index; // null up to kLinearLimit entries
        uint32_t capacity;
    };
    union {
        mutable Slot _one;
        mutable Many _many;
    };
};

#endif
