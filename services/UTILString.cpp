#include "UTILString.h"

#include <cstdio>
#include <string>

namespace {

// Plain integer, constant-initialised: usable from any static initialiser.
std::uint64_t g_uuidState = UTILString::kDefaultUuidSeed;

// splitmix64: one 64-bit add and a mix per draw, every seed gives a full-period
// sequence.
std::uint64_t nextRandom() {
    std::uint64_t z = (g_uuidState += 0x9E3779B97F4A7C15ULL);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
}

// Cuts `text` at every `separator` and hands each piece to `add`; both are
// strings of one character type, so that the search runs once over the text.
template <typename String, typename Add>
int splitInto(const String& text, const String& separator, Add add) {
    int count = 0;
    typename String::size_type start = 0;
    for (;;) {
        typename String::size_type hit = text.find(separator, start);
        if (hit == String::npos)
            break;
        add(text.substr(start, hit - start));
        ++count;
        start = hit + separator.size();
    }
    add(text.substr(start));
    return count + 1;
}

} // namespace

CATUnicodeString UTILString::genUuid() {
    std::uint64_t high = nextRandom();
    std::uint64_t low = nextRandom();
    // Version 4 in the high nibble of the third group, variant 10 in the two
    // top bits of the fourth.
    high = (high & ~0xF000ULL) | 0x4000ULL;
    low = (low & 0x3FFFFFFFFFFFFFFFULL) | 0x8000000000000000ULL;
    char text[37];
    std::snprintf(text, sizeof text, "%08x-%04x-%04x-%04x-%012llx",
                  static_cast<unsigned>(high >> 32), static_cast<unsigned>((high >> 16) & 0xFFFF),
                  static_cast<unsigned>(high & 0xFFFF), static_cast<unsigned>(low >> 48),
                  static_cast<unsigned long long>(low & 0xFFFFFFFFFFFFULL));
    return CATUnicodeString(text);
}

void UTILString::setUuidSeed(std::uint64_t seed) { g_uuidState = seed; }

int UTILString::split(const CATUnicodeString& text, const CATUnicodeString& separator,
                      CATListValCATUnicodeString& pieces) {
    pieces.RemoveAll();
    if (text.IsNull())
        return 0;
    if (separator.IsNull()) {
        pieces.Append(text);
        return 1;
    }
    if (!text.IsWide() && !separator.IsWide()) {
        return splitInto(
            text.ToLatin1(), separator.ToLatin1(),
            [&pieces](const std::string& piece) { pieces.Append(CATUnicodeString(piece)); });
    }
    // Characters above 0xFF all read '?' in the one-byte form, so a text that
    // holds one is cut on its code points instead.
    return splitInto(text.ToCodePoints(), separator.ToCodePoints(),
                     [&pieces](const std::u32string& piece) {
                         CATUnicodeString s;
                         s.BuildFromCodePoints(piece);
                         pieces.Append(s);
                     });
}
