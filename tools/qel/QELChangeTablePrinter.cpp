// The two renderings of a change table: aligned text for people, JSON for
// tools. Both stream the rows: a table of millions of rows is never held.
#include <algorithm>
#include <array>
#include <cstdio>

#include "QELChangeTable.h"

namespace {

constexpr std::string_view kNone = "(none)";
// Columns line up to this width; a longer value pushes the rest of its row.
constexpr size_t kWidestColumn = 48;

size_t displayWidth(std::string_view utf8) {
    size_t width = 0;
    for (unsigned char c : utf8)
        if ((c & 0xC0) != 0x80) ++width;
    return width;
}

// One line per row: line ends and tabs inside values are shown escaped.
std::string oneLine(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (char c : text) {
        if (c == '\n') out += "\\n";
        else if (c == '\r') out += "\\r";
        else if (c == '\t') out += "\\t";
        else out += c;
    }
    return out;
}

std::array<std::string, 5> columns(const QELChange& change) {
    return {std::string(change.className), oneLine(change.component), std::string(change.property),
            change.hadValue ? oneLine(change.oldValue) : std::string(kNone),
            change.hasValue ? oneLine(change.newValue) : std::string(kNone)};
}

void appendJsonString(std::string& out, std::string_view text) {
    out += '"';
    for (unsigned char c : text) {
        switch (c) {
        case '"': out += "\\\""; break;
        case '\\': out += "\\\\"; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        case '\t': out += "\\t"; break;
        default:
            if (c < 0x20) {
                char escaped[8];
                std::snprintf(escaped, sizeof escaped, "\\u%04x", c);
                out += escaped;
            } else {
                out += static_cast<char>(c);
            }
        }
    }
    out += '"';
}

long printText(const QELChangeTable& table, std::ostream& out, const QELChangeTable::Progress& progress) {
    static const std::array<std::string, 5> kHeadings = {"CLASS", "COMPONENT", "PROPERTY", "OLD", "NEW"};
    std::array<size_t, 5> widths{};
    for (size_t i = 0; i < widths.size(); ++i) widths[i] = kHeadings[i].size();
    long rows = 0;
    // A first walk measures the columns, a second prints them.
    table.diff([&](const QELChange& change) {
        const auto cells = columns(change);
        for (size_t i = 0; i < cells.size(); ++i)
            widths[i] = std::max(widths[i], std::min(kWidestColumn, displayWidth(cells[i])));
        ++rows;
    });
    if (rows == 0) {
        out << "no property changed\n";
        return 0;
    }
    std::string line;
    auto print = [&](const std::array<std::string, 5>& cells) {
        line.clear();
        for (size_t i = 0; i < cells.size(); ++i) {
            line += cells[i];
            if (i + 1 == cells.size()) break;
            const size_t width = displayWidth(cells[i]);
            line.append(width < widths[i] ? widths[i] - width + 2 : 2, ' ');
        }
        line += '\n';
        out.write(line.data(), static_cast<std::streamsize>(line.size()));
    };
    print(kHeadings);
    table.diff([&](const QELChange& change) { print(columns(change)); }, progress);
    return rows;
}

long printJson(const QELChangeTable& table, std::ostream& out, const QELChangeTable::Progress& progress) {
    long rows = 0;
    std::string line;
    out << "{\"changes\": [";
    table.diff(
        [&](const QELChange& change) {
            char handle[20];
            std::snprintf(handle, sizeof handle, "%016llX", static_cast<unsigned long long>(change.handle));
            line = rows ? ",\n  {" : "\n  {";
            line += "\"handle\": ";
            appendJsonString(line, handle);
            line += ", \"class\": ";
            appendJsonString(line, change.className);
            line += ", \"component\": ";
            appendJsonString(line, change.component);
            line += ", \"property\": ";
            appendJsonString(line, change.property);
            line += ", \"type\": ";
            appendJsonString(line, change.type);
            line += ", \"old\": ";
            if (change.hadValue) appendJsonString(line, change.oldValue);
            else line += "null";
            line += ", \"new\": ";
            if (change.hasValue) appendJsonString(line, change.newValue);
            else line += "null";
            line += "}";
            out.write(line.data(), static_cast<std::streamsize>(line.size()));
            ++rows;
        },
        progress);
    out << (rows ? "\n" : "") << "], \"rows\": " << rows << "}\n";
    return rows;
}

} // namespace

long qelPrintChangeTable(const QELChangeTable& table, std::ostream& out, bool json,
                         const QELChangeTable::Progress& progress) {
    return json ? printJson(table, out, progress) : printText(table, out, progress);
}
