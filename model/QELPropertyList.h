#ifndef QELPropertyList_H
#define QELPropertyList_H

#include <cstdint>
#include <string_view>

#include "CATUnicodeString.h"

class QELProperty;

// The properties of one set in insertion order, found by their own names.
// A set holds tens of properties on every component of the model, so the
// list keeps one pointer per property and no copy of the name: the hash
// index is built only past a few entries and points into the order.
//
// A short list has no index and no gaps: a removed or moved property shifts
// the few behind it. In a hashed list removed properties leave a gap until
// the next compaction; find, append, remove and moveToEnd take constant
// average time, and so does access by index while no gap is pending (the
// first index access after removals compacts once). The list never owns its
// properties.
class QELPropertyList {
public:
    QELPropertyList() = default;
    QELPropertyList(const QELPropertyList&) = delete;
    QELPropertyList& operator=(const QELPropertyList&) = delete;
    ~QELPropertyList();

    // The property of that name, or null; owned by the set the list serves,
    // valid until it is removed.
    QELProperty* find(const CATUnicodeString& name) const;
    // The same for an ISO-8859-1 name given as text.
    QELProperty* find(std::string_view name) const;
    // Appends a property whose name is not in the list yet.
    void append(QELProperty* property);
    // Takes the property of that name out and answers it; null when absent.
    // The caller now decides its fate (deletes it or hands it on).
    QELProperty* remove(const CATUnicodeString& name);
    // Moves the property of that name behind every other one and answers
    // it, still in the list; null when absent.
    QELProperty* moveToEnd(const CATUnicodeString& name);

    int size() const { return static_cast<int>(_live); }
    // In insertion order, from 0; null out of range. Owned as find's.
    QELProperty* at(int index) const;

    // Every property in insertion order.
    template <class Visit> void forEach(Visit visit) const {
        for (uint32_t i = 0; i < _size; ++i)
            if (_order[i]) visit(_order[i]);
    }
    // Forgets every property (the caller keeps or frees them).
    void clear();
    // Forgets every property and gives the storage back.
    void release();

    // For the census: the entries the order has room for, and the slots of
    // the hash index (0 while the list is short).
    uint32_t capacity() const { return _capacity; }
    uint32_t indexSlots() const { return _slotCount; }

private:
    static constexpr uint32_t kLinearLimit = 8;
    static constexpr uint32_t kExactLimit = 8;
    static constexpr uint32_t kEmptySlot = 0xFFFFFFFFu;
    // Past this the counts and the index size would not fit 32 bits.
    static constexpr uint32_t kMaxCapacity = 1u << 29;

    template <class Same> long locate(size_t hash, Same same) const;
    long locate(const CATUnicodeString& name) const;
    void push(QELProperty* property);
    void compact() const;
    void rebuildIndex() const;
    void indexEntry(uint32_t entry) const;

    // Raw arrays and 32-bit counts: every component holding properties has a
    // list, so it takes 32 bytes instead of two vectors' 56. The order and
    // the index may change under a const index access (compaction).
    QELProperty** _order = nullptr;     // null where a property was removed (hashed lists only)
    mutable uint32_t* _slots = nullptr; // open addressing over _order, null while short
    mutable uint32_t _size = 0;         // entries of _order in use, gaps included
    uint32_t _capacity = 0;
    uint32_t _live = 0;
    mutable uint32_t _slotCount = 0;
};

#endif
