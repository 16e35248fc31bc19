#ifndef CATUnicodeString_H
#define CATUnicodeString_H

#include <cstddef>
#include <memory>
#include <string>

#include "CATUnicodeChar.h"

// Unicode text. Positions and lengths count characters. Text given or taken as
// `char*` is ISO-8859-1: one byte per character, and a code point above 0xFF
// converts to '?'. UTF-8 is available through BuildFromUTF8 / ConvertToUTF8.
//
// Storage: the ISO-8859-1 form is always kept (it is what ConvertToChar hands
// out); a second, wide copy exists only while the text holds a code point above
// 0xFF, which keeps the common case at one byte per character.
class CATUnicodeString {
public:
    enum CATSearchMode { CATSearchModeForward = 1, CATSearchModeBackward = 2 };

    CATUnicodeString();
    CATUnicodeString(const char* latin1);
    CATUnicodeString(const char* latin1, size_t byteCount);
    CATUnicodeString(const std::string& latin1);
    CATUnicodeString(std::string&& latin1) noexcept;
    CATUnicodeString(const CATUnicodeChar& c);
    CATUnicodeString(const CATUnicodeString& other);
    CATUnicodeString(CATUnicodeString&& other) noexcept;
    CATUnicodeString& operator=(const CATUnicodeString& other);
    CATUnicodeString& operator=(CATUnicodeString&& other) noexcept;
    CATUnicodeString& operator=(const char* latin1);
    // Keeps the storage already held when it is large enough.
    CATUnicodeString& operator=(const std::string& latin1);
    CATUnicodeString& operator=(std::string&& latin1) noexcept;
    ~CATUnicodeString();

    // Builders
    CATUnicodeString& BuildFromUTF8(const char* utf8, size_t byteCount);
    CATUnicodeString& BuildFromUTF8(const std::string& utf8);
    CATUnicodeString& BuildFromCodePoints(const std::u32string& codePoints);
    CATUnicodeString& BuildFromNum(int value);
    CATUnicodeString& BuildFromNum(long value);
    CATUnicodeString& BuildFromNum(double value);

    // Conversions. The text of ConvertToChar is owned by the string, valid
    // until the string is changed or destroyed.
    const char* ConvertToChar() const { return _latin1.c_str(); }
    const std::string& ToLatin1() const { return _latin1; }
    std::string ConvertToUTF8() const;
    std::u32string ToCodePoints() const;
    // Reads a leading decimal integer as strtol does; answers 0 when the text
    // starts with no digit, and -1 as the status in that case.
    int ConvertToNum(int* value) const;

    // Size and content
    int GetLengthInChar() const;
    int GetLengthInByte() const { return static_cast<int>(_latin1.size()); }
    bool IsNull() const { return _latin1.empty(); }
    bool IsWide() const { return _wide != nullptr; }
    CATUnicodeChar operator[](int index) const;

    // 0: different, 1: equal when letter case is ignored, 2: identical.
    int Compare(const CATUnicodeString& other) const;

    // Position of the first (forward) or last (backward) occurrence of `sub`
    // that starts at `startPos` or later; -1 when absent.
    int SearchSubString(const CATUnicodeString& sub, int startPos = 0,
                        CATSearchMode mode = CATSearchModeForward) const;
    // The `length` characters from `start`, cut at the end of the text.
    CATUnicodeString SubString(int start, int length) const;
    // Replaces every occurrence of `what` by `by`; answers the number replaced.
    int ReplaceAll(const CATUnicodeString& what, const CATUnicodeString& by);
    // Cuts to `length` characters, or pads with `pad` at the end (rightPadding
    // non-zero) or at the start.
    void Resize(int length, CATUnicodeChar pad = CATUnicodeChar(' '), int rightPadding = 1);
    void ToLower();
    void ToUpper();
    CATUnicodeString& Append(const CATUnicodeString& other);
    CATUnicodeString& Append(const char* latin1);
    void Reserve(size_t characters);

    CATUnicodeString& operator+=(const CATUnicodeString& other) { return Append(other); }
    CATUnicodeString& operator+=(const char* latin1) { return Append(latin1); }

    friend bool operator==(const CATUnicodeString& a, const CATUnicodeString& b);
    friend bool operator<(const CATUnicodeString& a, const CATUnicodeString& b);

private:
    void setWide(std::u32string&& codePoints);
    void dropWide() { _wide.reset(); }

    std::string _latin1;
    std::unique_ptr<std::u32string> _wide;
};

bool operator==(const CATUnicodeString& a, const CATUnicodeString& b);
inline bool operator!=(const CATUnicodeString& a, const CATUnicodeString& b) { return !(a == b); }
bool operator<(const CATUnicodeString& a, const CATUnicodeString& b);
CATUnicodeString operator+(const CATUnicodeString& a, const CATUnicodeString& b);
CATUnicodeString operator+(const CATUnicodeString& a, const char* b);
CATUnicodeString operator+(const char* a, const CATUnicodeString& b);

struct CATUnicodeStringHash {
    size_t operator()(const CATUnicodeString& s) const noexcept {
        return std::hash<std::string>()(s.ToLatin1());
    }
};

#endif
