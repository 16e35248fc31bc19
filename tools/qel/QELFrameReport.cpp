#include "QELFrameReport.h"

#include "QELEscape.h"

namespace {

using Kind = QELFrameProblemKind;

// 3751 -> "3,751": counts of random input run to millions.
std::string withThousands(size_t count) {
    std::string digits = std::to_string(count);
    for (size_t i = digits.size(); i > 3; i -= 3) digits.insert(i - 3, ",");
    return digits;
}

} // namespace

const char* qelFrameProblemKindText(QELFrameProblemKind kind) {
    switch (kind) {
    case Kind::Declaration: return "line 1 that is not the declaration <?xml ... ?>";
    case Kind::Root: return "line 2 that is not <DESCFILE>";
    case Kind::Count: return "an NBElements missing, repeated, misplaced, not a number or not the count of entries";
    case Kind::Options: return "an Options block after the first entry";
    case Kind::EntryStart: return "an entry that does not begin with <Item_Info>";
    case Kind::NeverClosed: return "an element never closed";
    case Kind::InnerOpen: return "an element closed while one opened inside it is open";
    case Kind::StrayClose: return "a closing tag that closes no open element";
    case Kind::NoValueLine: return "an element without a value line";
    case Kind::ValueUnderRoot: return "a value line directly under <DESCFILE>";
    case Kind::OutsideRoot: return "text outside <DESCFILE>";
    case Kind::IndentedTag: return "an indented tag";
    case Kind::ValueAndTag: return "a value and a tag on one line";
    case Kind::Comment: return "a comment";
    case Kind::LateDeclaration: return "a declaration after line 1";
    case Kind::UnfinishedTag: return "an unfinished tag";
    case Kind::EmptyElement: return "an empty-element tag";
    case Kind::Attributes: return "a tag with attributes";
    case Kind::TagAndText: return "a tag and text on one line";
    case Kind::TagLikeValue: return "a value line that begins with '<'";
    }
    return "a problem";
}

std::vector<std::string> qelFrameReportLines(const std::string& name, const QELFrameReport& report) {
    const std::string shown = qelEscape(name);
    std::vector<std::string> lines;
    for (const QELFrameProblem& problem : report.problems)
        lines.push_back(shown + ":" + std::to_string(problem.line) + ": " + qelEscape(problem.message));
    for (size_t kind = 0; kind < kQELFrameProblemKinds; ++kind) {
        const size_t count = report.countByKind[kind];
        if (count <= QELFrameReport::kListedPerKind) continue;
        const size_t rest = count - QELFrameReport::kListedPerKind;
        lines.push_back(shown + ": " + withThousands(rest) + " further problem" + (rest == 1 ? "" : "s") +
                        " of the kind \"" + qelFrameProblemKindText(static_cast<QELFrameProblemKind>(kind)) +
                        "\" not listed");
    }
    return lines;
}
