#ifndef CATListValCATUnicodeString_H
#define CATListValCATUnicodeString_H

#include <vector>

#include "CATUnicodeString.h"

// The host's list of strings, counted from 1.
class CATListValCATUnicodeString {
public:
    int Size() const { return static_cast<int>(_items.size()); }
    void Append(const CATUnicodeString& s) { _items.push_back(s); }
    // Position (from 1) of the first entry identical to `s`, 0 when absent.
    int Locate(const CATUnicodeString& s) const;
    // Entry at `i` (from 1). Out of range answers an empty text.
    const CATUnicodeString& operator[](int i) const;
    CATUnicodeString& operator[](int i);
    void RemovePosition(int i);
    void RemoveAll() { _items.clear(); }

private:
    std::vector<CATUnicodeString> _items;
};

#endif
