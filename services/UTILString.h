#ifndef UTILString_H
#define UTILString_H

#include <cstdint>

#include "CATListValCATUnicodeString.h"
#include "CATUnicodeString.h"

// Stand-in for the in-house text helpers.
class UTILString {
public:
    static constexpr std::uint64_t kDefaultUuidSeed = 0x51E1D0C0FFEE2024ULL;

    // A version-4 UUID text (RFC 4122), lower case, 8-4-4-4-12 digits.
    //
    // The random bits come from one process-wide generator with a fixed
    // seed, not from the system's entropy: a process that builds the same
    // model in the same way gets the same texts, so printed descriptions can
    // be compared byte for byte. Each text carries 122 pseudo-random bits, as
    // many as a random UUID.
    static CATUnicodeString genUuid();
    // Restarts the sequence of genUuid from `seed`; kDefaultUuidSeed gives the
    // sequence a process starts with.
    static void setUuidSeed(std::uint64_t seed);

    // Empties `pieces`, then appends the pieces of `text` between occurrences
    // of `separator`, empty ones included ("a//b" on "/" gives "a", "", "b").
    // An empty text gives no piece; a text without the separator, or an empty
    // separator, gives the whole text as one piece. Answers the number of
    // pieces.
    static int split(const CATUnicodeString& text, const CATUnicodeString& separator,
                     CATListValCATUnicodeString& pieces);

    UTILString() = delete;
};

#endif
