#ifndef CATRawCollint_H
#define CATRawCollint_H

#include <algorithm>
#include <vector>

// The host's raw collection of integers, counted from 1.
class CATRawCollint {
public:
    int Size() const { return static_cast<int>(_items.size()); }
    void Append(int v) { _items.push_back(v); }
    int Locate(int v) const {
        auto it = std::find(_items.begin(), _items.end(), v);
        return it == _items.end() ? 0 : static_cast<int>(it - _items.begin()) + 1;
    }
    // Entry at `i` (from 1); 0 out of range.
    int operator[](int i) const { return (i < 1 || i > Size()) ? 0 : _items[static_cast<size_t>(i - 1)]; }
    void Set(int i, int v) {
        if (i >= 1 && i <= Size()) _items[static_cast<size_t>(i - 1)] = v;
    }
    void QuickSort() { std::sort(_items.begin(), _items.end()); }
    void RemoveAll() { _items.clear(); }

private:
    std::vector<int> _items;
};

#endif
