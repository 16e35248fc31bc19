#ifndef QELFrameLine_H
#define QELFrameLine_H

#include <string_view>

// What one line of a description or an answer is, as the reader takes it: a
// tag line is exactly "<Name>" or "</Name>", anything else is a value line.
enum class QELLineKind { Value, Open, Close };

struct QELFrameLine {
    QELLineKind kind = QELLineKind::Value;
    std::string_view name; // the tag's name; empty for a value line
};

QELFrameLine qelClassifyLine(std::string_view line);

// The line where a value belongs: itself, or empty for a tag line, which
// copied as a value would be structure out of place.
inline std::string_view qelValueLine(std::string_view line) {
    return qelClassifyLine(line).kind == QELLineKind::Value ? line : std::string_view();
}

// A letter or '_', then the characters the writer's element names use.
bool qelIsElementName(std::string_view name);

#endif
