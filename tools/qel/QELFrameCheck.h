#ifndef QELFrameCheck_H
#define QELFrameCheck_H

#include <array>
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
//
// A broken file (random bytes, a binary) can hold a problem on every line:
// the report keeps the first kListedPerKind problems of each kind and counts
// the rest, so that a listing stays short and every kind of fault shows.
enum class QELFrameProblemKind {
    Declaration,     // line 1 is not the declaration
    Root,            // line 2 is not <DESCFILE>
    Count,           // NBElements missing, repeated, misplaced, not a number or wrong
    Options,         // an Options block after the first entry
    EntryStart,      // an entry that does not begin with <Item_Info>
    NeverClosed,     // an element never closed
    InnerOpen,       // an element closed while one inside it is open
    StrayClose,      // a closing tag that closes nothing
    NoValueLine,     // an element without a value line
    ValueUnderRoot,  // a value line directly under <DESCFILE>
    OutsideRoot,     // text before <DESCFILE> or after </DESCFILE>
    IndentedTag,     // an indented tag
    ValueAndTag,     // a value and its closing tag on one line
    Comment,         // a comment
    LateDeclaration, // a declaration after line 1
    UnfinishedTag,   // a '<' without its '>'
    EmptyElement,    // an empty-element tag
    Attributes,      // a tag with attributes
    TagAndText,      // a tag and text on one line
    TagLikeValue,    // a value line that begins with '<'
};
constexpr size_t kQELFrameProblemKinds = static_cast<size_t>(QELFrameProblemKind::TagLikeValue) + 1;

struct QELFrameProblem {
    long line = 0;
    QELFrameProblemKind kind = QELFrameProblemKind::Declaration;
    std::string message;
};

struct QELFrameReport {
    std::vector<QELFrameProblem> problems; // in line order, at most kListedPerKind of each kind
    size_t problemCount = 0;               // all of them, kept or not
    std::array<size_t, kQELFrameProblemKinds> countByKind{};
    long entries = 0;
    long lines = 0;
    long announced = -1; // NBElements' value; -1 when missing or not a number
    long countLine = 0;  // the line of that value
    static constexpr size_t kListedPerKind = 20;
};

// False when the file cannot be read at all (`error` says why); the frame's
// own faults go into the report. `progress` is told the bytes read so far.
bool qelCheckFrame(const std::string& path, QELFrameReport& report, std::string& error,
                   const std::function<void(long long done, long long total)>& progress = {});

#endif
