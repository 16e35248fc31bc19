#include "CATUnicodeString.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>

namespace {

char32_t lowerOf(char32_t c) {
    if (c >= 'A' && c <= 'Z') return c + 32;
    // Latin-1 upper-case letters, except the multiplication sign.
    if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return c + 32;
    return c;
}

char32_t upperOf(char32_t c) {
    if (c >= 'a' && c <= 'z') return c - 32;
    if (c >= 0xE0 && c <= 0xFE && c != 0xF7) return c - 32;
    return c;
}

std::u32string widen(const std::string& latin1) {
    std::u32string out(latin1.size(), U'\0');
    for (size_t i = 0; i < latin1.size(); ++i) out[i] = static_cast<unsigned char>(latin1[i]);
    return out;
}

void appendUTF8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

} // namespace

CATUnicodeString::CATUnicodeString() = default;

CATUnicodeString::CATUnicodeString(const char* latin1) : _latin1(latin1 ? latin1 : "") {}

CATUnicodeString::CATUnicodeString(const char* latin1, size_t byteCount)
    : _latin1(latin1 ? std::string(latin1, byteCount) : std::string()) {}

CATUnicodeString::CATUnicodeString(const std::string& latin1) : _latin1(latin1) {}

CATUnicodeString::CATUnicodeString(std::string&& latin1) noexcept : _latin1(std::move(latin1)) {}

CATUnicodeString::CATUnicodeString(const CATUnicodeChar& c) {
    if (c.GetCode() <= 0xFF) {
        _latin1.assign(1, c.ConvertToChar());
    } else {
        setWide(std::u32string(1, c.GetCode()));
    }
}

CATUnicodeString::CATUnicodeString(const CATUnicodeString& other)
    : _latin1(other._latin1),
      _wide(other._wide ? std::make_unique<std::u32string>(*other._wide) : nullptr) {}

CATUnicodeString::CATUnicodeString(CATUnicodeString&& other) noexcept = default;

CATUnicodeString& CATUnicodeString::operator=(const CATUnicodeString& other) {
    if (this != &other) {
        _latin1 = other._latin1;
        _wide = other._wide ? std::make_unique<std::u32string>(*other._wide) : nullptr;
    }
    return *this;
}

CATUnicodeString& CATUnicodeString::operator=(CATUnicodeString&& other) noexcept = default;

CATUnicodeString& CATUnicodeString::operator=(const char* latin1) {
    _latin1 = latin1 ? latin1 : "";
    dropWide();
    return *this;
}

CATUnicodeString& CATUnicodeString::operator=(const std::string& latin1) {
    _latin1.assign(latin1);
    dropWide();
    return *this;
}

CATUnicodeString& CATUnicodeString::operator=(std::string&& latin1) noexcept {
    _latin1 = std::move(latin1);
    dropWide();
    return *this;
}

CATUnicodeString::~CATUnicodeString() = default;

void CATUnicodeString::setWide(std::u32string&& codePoints) {
    bool narrow = true;
    _latin1.resize(codePoints.size());
    for (size_t i = 0; i < codePoints.size(); ++i) {
        char32_t c = codePoints[i];
        if (c > 0xFF) narrow = false;
        _latin1[i] = c <= 0xFF ? static_cast<char>(c) : '?';
    }
    if (narrow) {
        _wide.reset();
    } else {
        _wide = std::make_unique<std::u32string>(std::move(codePoints));
    }
}

CATUnicodeString& CATUnicodeString::BuildFromUTF8(const char* utf8, size_t byteCount) {
    // Plain ASCII, by far the most common text, is its own ISO-8859-1 form:
    // no code points to decode and no wide copy to build.
    const auto* bytes = reinterpret_cast<const unsigned char*>(utf8);
    if (utf8 && std::all_of(bytes, bytes + byteCount, [](unsigned char b) { return b < 0x80; })) {
        _latin1.assign(utf8, byteCount);
        dropWide();
        return *this;
    }
    std::u32string cps;
    cps.reserve(byteCount);
    const auto* p = reinterpret_cast<const unsigned char*>(utf8);
    size_t i = 0;
    while (p && i < byteCount) {
        unsigned char b = p[i];
        char32_t c;
        size_t extra;
        if (b < 0x80) {
            c = b;
            extra = 0;
        } else if ((b & 0xE0) == 0xC0) {
            c = b & 0x1F;
            extra = 1;
        } else if ((b & 0xF0) == 0xE0) {
            c = b & 0x0F;
            extra = 2;
        } else if ((b & 0xF8) == 0xF0) {
            c = b & 0x07;
            extra = 3;
        } else {
            cps.push_back(0xFFFD);
            ++i;
            continue;
        }
        bool ok = true;
        for (size_t k = 1; k <= extra; ++k) {
            if (i + k >= byteCount || (p[i + k] & 0xC0) != 0x80) {
                ok = false;
                break;
            }
            c = (c << 6) | (p[i + k] & 0x3F);
        }
        if (!ok) {
            cps.push_back(0xFFFD);
            ++i;
            continue;
        }
        cps.push_back(c);
        i += extra + 1;
    }
    setWide(std::move(cps));
    return *this;
}

CATUnicodeString& CATUnicodeString::BuildFromUTF8(const std::string& utf8) {
    return BuildFromUTF8(utf8.data(), utf8.size());
}

CATUnicodeString& CATUnicodeString::BuildFromCodePoints(const std::u32string& codePoints) {
    setWide(std::u32string(codePoints));
    return *this;
}

CATUnicodeString& CATUnicodeString::BuildFromNum(int value) {
    return BuildFromNum(static_cast<long>(value));
}

CATUnicodeString& CATUnicodeString::BuildFromNum(long value) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%ld", value);
    *this = buf;
    return *this;
}

CATUnicodeString& CATUnicodeString::BuildFromNum(double value) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "%g", value);
    *this = buf;
    return *this;
}

std::string CATUnicodeString::ConvertToUTF8() const {
    std::string out;
    out.reserve(_latin1.size() + 8);
    if (_wide) {
        for (char32_t c : *_wide) appendUTF8(out, c);
    } else {
        for (char b : _latin1) appendUTF8(out, static_cast<unsigned char>(b));
    }
    return out;
}

std::u32string CATUnicodeString::ToCodePoints() const {
    return _wide ? *_wide : widen(_latin1);
}

int CATUnicodeString::ConvertToNum(int* value) const {
    const char* text = _latin1.c_str();
    char* end = nullptr;
    errno = 0;
    long v = std::strtol(text, &end, 10);
    if (end == text) {
        if (value) *value = 0;
        return -1;
    }
    if (v > INT_MAX) v = INT_MAX;
    if (v < INT_MIN) v = INT_MIN;
    if (value) *value = static_cast<int>(v);
    return 0;
}

int CATUnicodeString::GetLengthInChar() const { return static_cast<int>(_latin1.size()); }

CATUnicodeChar CATUnicodeString::operator[](int index) const {
    if (index < 0 || static_cast<size_t>(index) >= _latin1.size()) return CATUnicodeChar();
    if (_wide) return CATUnicodeChar((*_wide)[static_cast<size_t>(index)]);
    return CATUnicodeChar(_latin1[static_cast<size_t>(index)]);
}

int CATUnicodeString::Compare(const CATUnicodeString& other) const {
    if (*this == other) return 2;
    if (_latin1.size() != other._latin1.size()) return 0;
    if (!_wide && !other._wide) {
        for (size_t i = 0; i < _latin1.size(); ++i) {
            if (lowerOf(static_cast<unsigned char>(_latin1[i])) !=
                lowerOf(static_cast<unsigned char>(other._latin1[i])))
                return 0;
        }
        return 1;
    }
    std::u32string a = ToCodePoints(), b = other.ToCodePoints();
    for (size_t i = 0; i < a.size(); ++i) {
        if (lowerOf(a[i]) != lowerOf(b[i])) return 0;
    }
    return 1;
}

int CATUnicodeString::SearchSubString(const CATUnicodeString& sub, int startPos,
                                      CATSearchMode mode) const {
    if (startPos < 0) startPos = 0;
    size_t start = static_cast<size_t>(startPos);
    if (start > _latin1.size()) return -1;
    size_t found;
    if (!_wide && !sub._wide) {
        found = mode == CATSearchModeBackward ? _latin1.rfind(sub._latin1)
                                              : _latin1.find(sub._latin1, start);
    } else {
        std::u32string a = ToCodePoints(), b = sub.ToCodePoints();
        found = mode == CATSearchModeBackward ? a.rfind(b) : a.find(b, start);
    }
    if (found == std::string::npos || found < start) return -1;
    return static_cast<int>(found);
}

CATUnicodeString CATUnicodeString::SubString(int start, int length) const {
    CATUnicodeString out;
    if (start < 0 || length <= 0 || static_cast<size_t>(start) >= _latin1.size()) return out;
    size_t s = static_cast<size_t>(start), n = static_cast<size_t>(length);
    if (_wide) {
        out.setWide(_wide->substr(s, n));
    } else {
        out._latin1 = _latin1.substr(s, n);
    }
    return out;
}

int CATUnicodeString::ReplaceAll(const CATUnicodeString& what, const CATUnicodeString& by) {
    if (what.IsNull()) return 0;
    int count = 0;
    if (!_wide && !what._wide && !by._wide) {
        std::string out;
        size_t pos = 0, hit;
        while ((hit = _latin1.find(what._latin1, pos)) != std::string::npos) {
            out.append(_latin1, pos, hit - pos);
            out += by._latin1;
            pos = hit + what._latin1.size();
            ++count;
        }
        if (count == 0) return 0;
        out.append(_latin1, pos, std::string::npos);
        _latin1.swap(out);
        return count;
    }
    std::u32string a = ToCodePoints(), w = what.ToCodePoints(), b = by.ToCodePoints(), out;
    size_t pos = 0, hit;
    while ((hit = a.find(w, pos)) != std::u32string::npos) {
        out.append(a, pos, hit - pos);
        out += b;
        pos = hit + w.size();
        ++count;
    }
    if (count == 0) return 0;
    out.append(a, pos, std::u32string::npos);
    setWide(std::move(out));
    return count;
}

void CATUnicodeString::Resize(int length, CATUnicodeChar pad, int rightPadding) {
    if (length < 0) length = 0;
    size_t n = static_cast<size_t>(length);
    if (!_wide && pad.GetCode() <= 0xFF) {
        if (n <= _latin1.size()) {
            _latin1.resize(n);
        } else if (rightPadding) {
            _latin1.append(n - _latin1.size(), pad.ConvertToChar());
        } else {
            _latin1.insert(0, n - _latin1.size(), pad.ConvertToChar());
        }
        return;
    }
    std::u32string a = ToCodePoints();
    if (n <= a.size()) {
        a.resize(n);
    } else if (rightPadding) {
        a.append(n - a.size(), pad.GetCode());
    } else {
        a.insert(0, n - a.size(), pad.GetCode());
    }
    setWide(std::move(a));
}

void CATUnicodeString::ToLower() {
    if (_wide) {
        std::u32string a = *_wide;
        for (auto& c : a) c = lowerOf(c);
        setWide(std::move(a));
        return;
    }
    for (auto& b : _latin1) b = static_cast<char>(lowerOf(static_cast<unsigned char>(b)));
}

void CATUnicodeString::ToUpper() {
    if (_wide) {
        std::u32string a = *_wide;
        for (auto& c : a) c = upperOf(c);
        setWide(std::move(a));
        return;
    }
    // The Latin-1 lower-case letters without an upper-case partner in the
    // range (y with diaeresis, sharp s) stay as they are.
    for (auto& b : _latin1) {
        auto c = static_cast<unsigned char>(b);
        if (c == 0xFF || c == 0xDF) continue;
        b = static_cast<char>(upperOf(c));
    }
}

CATUnicodeString& CATUnicodeString::Append(const CATUnicodeString& other) {
    if (!_wide && !other._wide) {
        _latin1 += other._latin1;
        return *this;
    }
    std::u32string a = ToCodePoints();
    a += other.ToCodePoints();
    setWide(std::move(a));
    return *this;
}

CATUnicodeString& CATUnicodeString::Append(const char* latin1) {
    if (!latin1) return *this;
    if (!_wide) {
        _latin1 += latin1;
        return *this;
    }
    return Append(CATUnicodeString(latin1));
}

void CATUnicodeString::Reserve(size_t characters) { _latin1.reserve(characters); }

bool operator==(const CATUnicodeString& a, const CATUnicodeString& b) {
    if (a._latin1 != b._latin1) return false;
    if (!a._wide && !b._wide) return true;
    if (a._wide && b._wide) return *a._wide == *b._wide;
    return false;
}

bool operator<(const CATUnicodeString& a, const CATUnicodeString& b) {
    // char_traits<char> compares as unsigned bytes, that is by code point.
    if (!a._wide && !b._wide) return a._latin1 < b._latin1;
    return a.ToCodePoints() < b.ToCodePoints();
}

CATUnicodeString operator+(const CATUnicodeString& a, const CATUnicodeString& b) {
    CATUnicodeString out(a);
    out.Append(b);
    return out;
}

CATUnicodeString operator+(const CATUnicodeString& a, const char* b) {
    CATUnicodeString out(a);
    out.Append(b);
    return out;
}

CATUnicodeString operator+(const char* a, const CATUnicodeString& b) {
    CATUnicodeString out(a);
    out.Append(b);
    return out;
}
