#ifndef QELPropertyList_H
#define QELPropertyList_H

#include <cstdint>
#include <string_view>
#include <vector>

#include "CATUnicodeString.h"

class QELProperty;

// The properties of one set in insertion order, found by their own names.
// A set holds tens of properties on every component of the model, so the
// list keeps one pointer per property and no copy of the name: the hash
// index is built only past a few entries and points into the order.
//
// Removed properties leave a gap until the next compaction; find, append,
// remove and moveToEnd take constant average time, and so does access by
// index while no gap is pending (the first index access after removals
// compacts once). The list never owns its properties.
class QELPropertyList {
public:
    QELPropertyList() = default;
    QELPropertyList(const QELPropertyList&) = delete;
    QELPropertyList& operator=(const QELPropertyList&) = delete;

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
        for (QELProperty* p : _order)
            if (p) visit(p);
    }
    // Forgets every property (the caller keeps or frees them).
    void clear();

private:
    static constexpr size_t kLinearLimit = 8;
    static constexpr size_t kExactLimit = 8;
    static constexpr uint32_t kEmptySlot = 0xFFFFFFFFu;

    template <class Same> long locate(size_t hash, Same same) const;
    long locate(const CATUnicodeString& name) const;
    void push(QELProperty* property);
    void compact() const;
    void rebuildIndex() const;
    void indexEntry(uint32_t entry) const;

    // Both mutable because a const index access may compact.
    mutable std::vector<QELProperty*> _order; // null where a property was removed
    mutable std::vector<uint32_t> _slots;     // open addressing over _order, empty while small
    size_t _live = 0;
};

#endif
