#include "UTILFormat.h"

#include <clocale>
#include <cstdio>
#include <cstring>

std::string UTILFormat::formatDouble(const char* format, double value) {
    char buf[64];
    int n = std::snprintf(buf, sizeof buf, format, value);
    std::string out;
    if (n < 0)
        return out;
    if (static_cast<size_t>(n) < sizeof buf) {
        out.assign(buf, static_cast<size_t>(n));
    } else {
        out.resize(static_cast<size_t>(n) + 1);
        std::snprintf(&out[0], out.size(), format, value);
        out.resize(static_cast<size_t>(n));
    }
    const char* point = std::localeconv()->decimal_point;
    if (point && std::strcmp(point, ".") != 0 && *point) {
        size_t at = out.find(point);
        if (at != std::string::npos)
            out.replace(at, std::strlen(point), ".");
    }
    return out;
}

std::string UTILFormat::formatInt(long value) {
    char buf[32];
    int n = std::snprintf(buf, sizeof buf, "%ld", value);
    return std::string(buf, n > 0 ? static_cast<size_t>(n) : 0);
}
