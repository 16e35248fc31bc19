#include "QELFrameLine.h"

bool qelIsElementName(std::string_view name) {
    if (name.empty()) return false;
    const char first = name.front();
    if (!((first >= 'A' && first <= 'Z') || (first >= 'a' && first <= 'z') || first == '_')) return false;
    for (char c : name) {
        const bool letter = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        const bool digit = c >= '0' && c <= '9';
        if (!letter && !digit && c != '_' && c != '-' && c != '.' && c != ':') return false;
    }
    return true;
}

QELFrameLine qelClassifyLine(std::string_view line) {
    QELFrameLine result;
    if (line.size() < 3 || line.front() != '<' || line.back() != '>') return result;
    std::string_view inner = line.substr(1, line.size() - 2);
    QELLineKind kind = QELLineKind::Open;
    if (inner.front() == '/') {
        inner.remove_prefix(1);
        kind = QELLineKind::Close;
    }
    if (!qelIsElementName(inner)) return result;
    result.kind = kind;
    result.name = inner;
    return result;
}
