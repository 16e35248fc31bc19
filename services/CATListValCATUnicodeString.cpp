#include "CATListValCATUnicodeString.h"

namespace {
CATUnicodeString& outOfRange() {
    // Handed out for a position out of range; reset on every use so that a
    // caller writing through it cannot leak text into the next answer.
    static CATUnicodeString none;
    none = CATUnicodeString();
    return none;
}
} // namespace

int CATListValCATUnicodeString::Locate(const CATUnicodeString& s) const {
    for (size_t i = 0; i < _items.size(); ++i) {
        if (_items[i] == s) return static_cast<int>(i) + 1;
    }
    return 0;
}

const CATUnicodeString& CATListValCATUnicodeString::operator[](int i) const {
    if (i < 1 || i > Size()) return outOfRange();
    return _items[static_cast<size_t>(i - 1)];
}

CATUnicodeString& CATListValCATUnicodeString::operator[](int i) {
    if (i < 1 || i > Size()) return outOfRange();
    return _items[static_cast<size_t>(i - 1)];
}

void CATListValCATUnicodeString::RemovePosition(int i) {
    if (i < 1 || i > Size()) return;
    _items.erase(_items.begin() + (i - 1));
}
