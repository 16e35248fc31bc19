#include "QELShownText.h"

std::string qelShown(std::string_view text, size_t limit) {
    static const char kHex[] = "0123456789abcdef";
    std::string out = "\"";
    for (size_t i = 0; i < text.size() && i < limit; ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (c == '\\' || c == '"') {
            out += '\\';
            out += static_cast<char>(c);
        } else if (c < 0x20 || c >= 0x7F) {
            out += "\\x";
            out += kHex[c >> 4];
            out += kHex[c & 15];
        } else {
            out += static_cast<char>(c);
        }
    }
    if (text.size() > limit) out += "...";
    return out + "\"";
}
