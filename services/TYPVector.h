#ifndef TYPVector_H
#define TYPVector_H

#include <cstddef>
#include <vector>

#include "CATUnicodeString.h"

// Thin typed vectors, counted from 0.
template <typename T>
class TYPVector {
public:
    TYPVector() = default;
    explicit TYPVector(size_t reserve) { _items.reserve(reserve); }

    int size() const { return static_cast<int>(_items.size()); }
    bool empty() const { return _items.empty(); }
    T& operator[](int i) { return _items[static_cast<size_t>(i)]; }
    const T& operator[](int i) const { return _items[static_cast<size_t>(i)]; }
    void push_back(const T& v) { _items.push_back(v); }
    void push_back(T&& v) { _items.push_back(std::move(v)); }
    void push_front(const T& v) { _items.insert(_items.begin(), v); }
    void append(const TYPVector& other) { _items.insert(_items.end(), other._items.begin(), other._items.end()); }
    void clear() { _items.clear(); }
    void reserve(size_t n) { _items.reserve(n); }

    typename std::vector<T>::iterator begin() { return _items.begin(); }
    typename std::vector<T>::iterator end() { return _items.end(); }
    typename std::vector<T>::const_iterator begin() const { return _items.begin(); }
    typename std::vector<T>::const_iterator end() const { return _items.end(); }
    std::vector<T>& items() { return _items; }
    const std::vector<T>& items() const { return _items; }

private:
    std::vector<T> _items;
};

class QELComponent;
class QELProperty;
class QELLink;
class QELDocument;
class QELItem;
class QELFile;
class QELForm;
class QELWorkSpace;
class QELAbsoluteOccurrence;
class QELRelativeOccurrence;
class QELAbsoluteView;
class QELScene;

typedef TYPVector<int> TYPVectorInt;
typedef TYPVector<CATUnicodeString> TYPVectorCATUnicodeString;
typedef TYPVector<QELComponent*> TYPVectorPQELComponent;
typedef TYPVector<QELProperty*> TYPVectorPQELProperty;
typedef TYPVector<QELLink*> TYPVectorPQELLink;
typedef TYPVector<QELDocument*> TYPVectorPQELDocument;
typedef TYPVector<QELItem*> TYPVectorPQELItem;
typedef TYPVector<QELFile*> TYPVectorPQELFile;
typedef TYPVector<QELForm*> TYPVectorPQELForm;
typedef TYPVector<QELWorkSpace*> TYPVectorPQELWorkSpace;
typedef TYPVector<QELAbsoluteOccurrence*> TYPVectorPQELAbsoluteOccurrence;
typedef TYPVector<QELRelativeOccurrence*> TYPVectorPQELRelativeOccurrence;
typedef TYPVector<QELAbsoluteView*> TYPVectorPQELAbsoluteView;
typedef TYPVector<QELScene*> TYPVectorPQELScene;

#endif
