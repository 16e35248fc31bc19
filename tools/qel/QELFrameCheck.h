#ifndef QELFrameCheck_H
#define QELFrameCheck_H

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

// Checks that a description or an answer keeps the line frame the reader
// relies on: the declaration on line 1, <DESCFILE> on line 2, an NBElements
// that matches the entries, balanced tags, every entry opening with
// <Item_Info>, and no line the reader cannot take (an indented tag, a tag
// with attributes, a tag and text on one line, an element without a value
// line, comments, empty-element tags, text outside the elements).
struct QELFrameProblem {
    long line = 0;
    std::string message;
};

struct QELFrameReport {
    std::vector<QELFrameProblem> problems; // in line order, at most kMaxKept
    size_t problemCount = 0;               // all of them, kept or not
    long entries = 0;
    long lines = 0;
    long announced = -1; // NBElements' value; -1 when missing or not a number
    long countLine = 0;  // the line of that value
    static constexpr size_t kMaxKept = 10000;
};

// False when the file cannot be read at all (`error` says why); the frame's
// own faults go into the report. `progress` is told the bytes read so far.
bool qelCheckFrame(const std::string& path, QELFrameReport& report, std::string& error,
                   const std::function<void(long long done, long long total)>& progress = {});

#endif
