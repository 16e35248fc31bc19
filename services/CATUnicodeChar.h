#ifndef CATUnicodeChar_H
#define CATUnicodeChar_H

// One Unicode character (a code point).
class CATUnicodeChar {
public:
    CATUnicodeChar() : _code(0) {}
    explicit CATUnicodeChar(char latin1) : _code(static_cast<unsigned char>(latin1)) {}
    explicit CATUnicodeChar(char32_t code) : _code(code) {}

    char32_t GetCode() const { return _code; }
    // The ISO-8859-1 byte, '?' for a code point above 0xFF.
    char ConvertToChar() const { return _code <= 0xFF ? static_cast<char>(_code) : '?'; }

    bool operator==(const CATUnicodeChar& o) const { return _code == o._code; }
    bool operator!=(const CATUnicodeChar& o) const { return _code != o._code; }

private:
    char32_t _code;
};

#endif
