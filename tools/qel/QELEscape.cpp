#include "QELEscape.h"

std::string qelEscape(std::string_view text) {
    static const char kDigits[] = "0123456789abcdef";
    std::string out;
    out.reserve(text.size());
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte < 0x7F) {
            out += c;
            continue;
        }
        out += "\\x";
        out += kDigits[byte >> 4];
        out += kDigits[byte & 0xF];
    }
    return out;
}

std::string qelShown(std::string_view text, size_t limit) {
    std::string out = "\"" + qelEscape(text.substr(0, limit));
    if (text.size() > limit) out += "...";
    return out + "\"";
}
