#include "QELAnswerNames.h"

#include <cstdint>
#include <cstdio>

namespace {

// FNV-1a: stable across platforms and runs, which std::hash is not.
class Hash {
public:
    void add(std::string_view text) {
        for (unsigned char c : text) {
            _value ^= c;
            _value *= 0x100000001B3ULL;
        }
        // A separator keeps ("ab", "c") apart from ("a", "bc").
        _value ^= 0x1F;
        _value *= 0x100000001B3ULL;
    }
    uint64_t value() const { return _value; }

private:
    uint64_t _value = 0xCBF29CE484222325ULL;
};

} // namespace

std::string qelAnswerItemId(long ordinal) {
    char text[32];
    std::snprintf(text, sizeof text, "ITM-%06ld", ordinal);
    return text;
}

std::string qelAnswerUid(std::string_view kind, long ordinal, std::string_view key) {
    static constexpr char kDigits[] = "0123456789ABCDEFGHJKMNPQRSTVWXYZ";
    Hash hash;
    hash.add(kind);
    hash.add(std::to_string(ordinal));
    hash.add(key);
    uint64_t value = hash.value();
    std::string uid = "UID-";
    for (int i = 0; i < 12; ++i, value >>= 5) uid += kDigits[value & 31];
    return uid;
}

std::string qelFileExtension(std::string_view fileName) {
    const size_t slash = fileName.find_last_of("/\\");
    if (slash != std::string_view::npos) fileName.remove_prefix(slash + 1);
    const size_t dot = fileName.rfind('.');
    if (dot == std::string_view::npos || dot == 0) return {};
    return std::string(fileName.substr(dot));
}

std::string qelNextVersion(std::string_view version) {
    if (version.empty() || version.size() > 9) return "1";
    long value = 0;
    for (char c : version) {
        if (c < '0' || c > '9') return "1";
        value = value * 10 + (c - '0');
    }
    return std::to_string(value + 1);
}
