#ifndef TYPMapCATUnicodeStringPVoid_H
#define TYPMapCATUnicodeStringPVoid_H

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "CATUnicodeString.h"
#include "TYPTypeTag.h"

// A named map from text keys to untyped objects, each entry tagged with a type
// text. It iterates in insertion order; find, insert and erase take constant
// average time, and so does access by index while no erasure is pending (the
// first index access after erasures compacts the entries once).
//
// Inserting a key that is already present keeps the existing entry and answers
// 0; a caller that allocated the rejected object frees it. The map never owns
// its objects.
class TYPMapCATUnicodeStringPVoid {
public:
    struct Entry {
        CATUnicodeString key;
        void* object;
        const std::string* tag; // null once the entry is erased
        bool live() const { return tag != nullptr; }
    };

    class const_iterator {
    public:
        const_iterator(const std::vector<Entry>* entries, size_t pos) : _entries(entries), _pos(pos) {
            skip();
        }
        const Entry& operator*() const { return (*_entries)[_pos]; }
        const Entry* operator->() const { return &(*_entries)[_pos]; }
        const_iterator& operator++() {
            ++_pos;
            skip();
            return *this;
        }
        bool operator!=(const const_iterator& o) const { return _pos != o._pos; }
        bool operator==(const const_iterator& o) const { return _pos == o._pos; }

    private:
        void skip() {
            while (_pos < _entries->size() && !(*_entries)[_pos].live()) ++_pos;
        }
        const std::vector<Entry>* _entries;
        size_t _pos;
    };

    explicit TYPMapCATUnicodeStringPVoid(const char* name = "", int initialSize = 0);
    TYPMapCATUnicodeStringPVoid(const TYPMapCATUnicodeStringPVoid&) = delete;
    TYPMapCATUnicodeStringPVoid& operator=(const TYPMapCATUnicodeStringPVoid&) = delete;

    const std::string& name() const { return *_name; }

    // 1 when inserted, 0 when the key was already present (nothing changes).
    int insert(const CATUnicodeString& key, void* object, const char* typeTag = "", int flag = 0);
    int insert(CATUnicodeString&& key, void* object, const char* typeTag = "", int flag = 0);
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
    void clear();
    int size() const { return static_cast<int>(_live); }
    bool empty() const { return _live == 0; }

    // Index access in iteration order, from 0; null / empty key out of range.
    // The object is owned as find's; the key is owned by the map, valid until
    // its next insert or erase; the tag is interned (TYPTypeTag), valid until
    // the process ends.
    void* getObject(int index) const;
    const CATUnicodeString* getKey(int index) const;
    const std::string* getTag(int index) const;
    // The first object in iteration order, or null.
    void* first() const;

    const_iterator begin() const { return const_iterator(&_entries, 0); }
    const_iterator end() const { return const_iterator(&_entries, _entries.size()); }

private:
    static constexpr size_t kLinearLimit = 8;
    static constexpr uint32_t kEmptySlot = 0xFFFFFFFFu;

    bool indexed() const { return _slots && !_slots->empty(); }
    long locate(const CATUnicodeString& key) const;
    long locate(std::string_view key) const;
    // The object of entry `i` (-1: none) when its tag matches; owned as
    // find's.
    void* objectAt(long i, const char* typeTag) const;
    // Appends a key known to be absent.
    void append(CATUnicodeString&& key, void* object, const char* typeTag);
    void compact() const;
    void rebuildIndex() const;
    void indexEntry(uint32_t entry) const;

    const std::string* _name;
    // Erased entries stay as tombstones until the next compaction; both are
    // mutable because a const index access may compact.
    mutable std::vector<Entry> _entries;
    // Open addressing over _entries, absent or empty while the map is small
    // (most relation maps hold one entry: the index would double their size).
    mutable std::unique_ptr<std::vector<uint32_t>> _slots;
    size_t _live = 0;
};

#endif
