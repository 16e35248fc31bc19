#include "QELFrameCheck.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "QELElementNames.h"
#include "QELFrameLine.h"
#include "UTILLineFile.h"

namespace {

using Kind = QELFrameProblemKind;

struct OpenElement {
    std::string name;
    long line;
    bool isEntry;
    bool hasChild;
};

std::string quoted(std::string_view text) {
    constexpr size_t kShown = 60;
    std::string out = "\"";
    out.append(text.substr(0, kShown));
    if (text.size() > kShown) out += "...";
    return out + "\"";
}

bool isBlank(std::string_view text) {
    return text.find_first_not_of(" \t") == std::string_view::npos;
}

bool parseCount(std::string_view text, long& value) {
    if (text.empty() || text.size() > 18) return false;
    size_t i = (text[0] == '-' || text[0] == '+') ? 1 : 0;
    if (i == text.size()) return false;
    for (size_t k = i; k < text.size(); ++k)
        if (text[k] < '0' || text[k] > '9') return false;
    value = std::strtol(std::string(text).c_str(), nullptr, 10);
    return true;
}

// One pass over the lines; the structure is followed with a stack of the
// open elements, so a fault is reported once and the check goes on.
class FrameChecker {
public:
    explicit FrameChecker(QELFrameReport& report) : _report(report) {}

    void line(long number, std::string_view text) {
        _number = number;
        if (number == 1) return declaration(text);
        if (number == 2 && text != "<DESCFILE>")
            problem(Kind::Root, number, "expected <DESCFILE> on line 2, found " + quoted(text));
        // The reader stops at the end of the root: what follows is said once.
        if (_rootClosed) {
            if (!_saidAfterRoot && !isBlank(text))
                problem(Kind::OutsideRoot, number, "content after </DESCFILE>: " + quoted(text) + " is never read");
            _saidAfterRoot = _saidAfterRoot || !isBlank(text);
            return;
        }

        const QELFrameLine frame = qelClassifyLine(text);
        switch (frame.kind) {
        case QELLineKind::Open: open(frame.name); break;
        case QELLineKind::Close: close(frame.name); break;
        case QELLineKind::Value: value(text); break;
        }
        _previousOpen = frame.kind == QELLineKind::Open;
    }

    void finish(long lastLine) {
        if (lastLine == 0) problem(Kind::Declaration, 1, "the file is empty: expected the declaration <?xml ... ?>");
        else if (lastLine == 1) problem(Kind::Root, 1, "the file ends before <DESCFILE>");
        for (const OpenElement& element : _stack)
            problem(Kind::NeverClosed, element.line, "<" + element.name + "> is never closed");
        if (lastLine >= 2 && !_sawRoot) return;
        if (_countValid) {
            _report.announced = _announced;
            _report.countLine = _countLine;
        }
        if (_countLine == 0) {
            if (lastLine >= 2)
                problem(Kind::Count, lastLine, "no NBElements under <DESCFILE>: the reader reads no entry");
        } else if (_countValid && _announced != _report.entries) {
            problem(Kind::Count, _countLine,
                    "NBElements announces " + std::to_string(_announced) + " entries, the file holds " +
                        std::to_string(_report.entries));
        }
    }

private:
    void problem(Kind kind, long line, std::string message) {
        ++_report.problemCount;
        if (++_report.countByKind[static_cast<size_t>(kind)] <= QELFrameReport::kListedPerKind)
            _report.problems.push_back({line, kind, std::move(message)});
    }

    void declaration(std::string_view text) {
        if (text.substr(0, 5) != "<?xml" || text.size() < 7 || text.substr(text.size() - 2) != "?>")
            problem(Kind::Declaration, 1, "expected the declaration <?xml ... ?> on line 1, found " + quoted(text));
    }

    size_t depth() const { return _stack.size(); }

    void open(std::string_view name) {
        if (depth() == 0 && name == QELElement::DESCFILE) _sawRoot = true;
        bool isEntry = false;
        if (depth() == 1 && _stack.front().name == QELElement::DESCFILE) {
            if (name == QELElement::NBElements) {
                if (_countLine != 0)
                    problem(Kind::Count, _number, "a second NBElements under <DESCFILE>");
                else if (_report.entries > 0)
                    problem(Kind::Count, _number,
                            "NBElements after the first entry: the reader expects it before them");
                else
                    _countLine = _number + 1;
            } else if (name == QELElement::Options) {
                if (_report.entries > 0)
                    problem(Kind::Options, _number,
                            "Options after the first entry: the reader looks for it around NBElements only");
            } else {
                isEntry = true;
                ++_report.entries;
            }
        }
        if (!_stack.empty()) {
            OpenElement& parent = _stack.back();
            if (parent.isEntry && !parent.hasChild && name != QELElement::Item_Info)
                problem(Kind::EntryStart, _number,
                        "entry <" + parent.name + "> opened on line " + std::to_string(parent.line) +
                            " does not begin with <Item_Info>");
            parent.hasChild = true;
        }
        _stack.push_back({std::string(name), _number, isEntry, false});
    }

    void close(std::string_view name) {
        size_t index = _stack.size();
        while (index > 0 && _stack[index - 1].name != name) --index;
        if (index == 0) {
            problem(Kind::StrayClose, _number, "</" + std::string(name) + "> closes no open element");
            return;
        }
        // Whatever was opened inside the element being closed was left open.
        while (_stack.size() > index) {
            const OpenElement& inner = _stack.back();
            problem(Kind::InnerOpen, _number, "<" + inner.name + "> opened on line " + std::to_string(inner.line) +
                                 " is not closed before </" + std::string(name) + ">");
            _stack.pop_back();
        }
        const OpenElement& closing = _stack.back();
        if (_previousOpen && closing.line == _number - 1)
            problem(Kind::NoValueLine, closing.line,
                    "<" + closing.name + "> has no value line: the reader would take </" + closing.name +
                        "> as its value");
        else if (closing.isEntry && !closing.hasChild)
            problem(Kind::EntryStart, closing.line, "entry <" + closing.name + "> holds no <Item_Info>");
        if (closing.name == QELElement::DESCFILE && _stack.size() == 1) _rootClosed = true;
        _stack.pop_back();
    }

    void value(std::string_view text) {
        const size_t first = text.find_first_not_of(" \t");
        if (first != std::string_view::npos && first > 0 && text[first] == '<') {
            const QELFrameLine inner = qelClassifyLine(text.substr(first));
            if (inner.kind != QELLineKind::Value) {
                problem(Kind::IndentedTag, _number,
                        "indented tag " + quoted(text.substr(first)) + ": the reader compares whole lines");
                if (inner.kind == QELLineKind::Open) open(inner.name);
                else close(inner.name);
                return;
            }
        }
        if (!text.empty() && text.front() == '<') return tagLikeValue(text);

        if (depth() == 0) {
            if (!isBlank(text)) problem(Kind::OutsideRoot, _number, "text outside <DESCFILE>: " + quoted(text));
            return;
        }
        OpenElement& parent = _stack.back();
        if (depth() == 1 && parent.name == QELElement::DESCFILE) {
            problem(Kind::ValueUnderRoot, _number, "a value line directly under <DESCFILE>: " + quoted(text));
        } else if (parent.isEntry && !parent.hasChild) {
            problem(Kind::EntryStart, _number,
                    "entry <" + parent.name + "> opened on line " + std::to_string(parent.line) +
                        " does not begin with <Item_Info>");
            parent.hasChild = true;
        } else if (_countLine == _number && parent.name == QELElement::NBElements) {
            _countValid = parseCount(text, _announced);
            if (!_countValid) problem(Kind::Count, _number, "NBElements value " + quoted(text) + " is not a number");
        }
        // A value with the closing tag of its element on the same line.
        const std::string ending = "</" + parent.name + ">";
        if (text.size() > ending.size() && text.compare(text.size() - ending.size(), ending.size(), ending) == 0) {
            problem(Kind::ValueAndTag, _number,
                    "a value and a tag on one line " + quoted(text) + ": a tag goes on a line of its own");
            close(parent.name);
        }
    }

    // A line that begins with '<' but is not a bare tag: name what the
    // writer never produces, and follow the structure it implies.
    void tagLikeValue(std::string_view text) {
        if (text.substr(0, 4) == "<!--")
            return problem(Kind::Comment, _number, "a comment: the reader takes it as a tag");
        if (text.substr(0, 2) == "<?") return problem(Kind::LateDeclaration, _number, "a declaration outside line 1");
        const bool closing = text.size() > 1 && text[1] == '/';
        const size_t nameStart = closing ? 2 : 1;
        const size_t nameEnd = text.find_first_of(" \t/>", nameStart);
        const std::string_view name =
            text.substr(nameStart, nameEnd == std::string_view::npos ? std::string_view::npos : nameEnd - nameStart);
        const size_t end = text.find('>');
        if (end == std::string_view::npos)
            return problem(Kind::UnfinishedTag, _number, "an unfinished tag " + quoted(text));
        if (text[end - 1] == '/')
            return problem(Kind::EmptyElement, _number,
                           "an empty-element tag " + quoted(text) + ": the writer always writes a value line");
        const bool opensElement = !closing && qelIsElementName(name);
        if (text[nameEnd] == ' ' || text[nameEnd] == '\t') {
            problem(Kind::Attributes, _number,
                    "a tag with attributes " + quoted(text) + ": the reader matches bare tags only");
            if (opensElement && end == text.size() - 1) open(name);
            return;
        }
        if (end + 1 < text.size()) {
            problem(Kind::TagAndText, _number,
                    "a tag and text on one line " + quoted(text) + ": a value goes on a line of its own");
            const std::string ending = "</" + std::string(name) + ">";
            const bool selfContained = text.size() > ending.size() &&
                                       text.compare(text.size() - ending.size(), ending.size(), ending) == 0;
            if (opensElement && !selfContained) open(name);
            return;
        }
        problem(Kind::TagLikeValue, _number,
                "a value line that begins with '<' " + quoted(text) + ": the reader takes it as a tag");
    }

    QELFrameReport& _report;
    std::vector<OpenElement> _stack;
    long _number = 0;
    long _countLine = 0; // the line NBElements' value is expected on
    long _announced = 0;
    bool _countValid = false;
    bool _previousOpen = false;
    bool _sawRoot = false;
    bool _rootClosed = false;
    bool _saidAfterRoot = false;
};

} // namespace

bool qelCheckFrame(const std::string& path, QELFrameReport& report, std::string& error,
                   const std::function<void(long long, long long)>& progress) {
    UTILLineFile reader;
    if (!reader.open(path, error)) return false;
    FrameChecker checker(report);
    std::string_view text;
    while (reader.readLine(text)) {
        checker.line(reader.lineNumber(), text);
        if (progress && (reader.lineNumber() & 0xFFFF) == 0) progress(reader.tell(), reader.size());
    }
    if (reader.failed()) {
        error = std::strerror(reader.error());
        return false;
    }
    report.lines = reader.lineNumber();
    checker.finish(report.lines);
    std::stable_sort(report.problems.begin(), report.problems.end(),
                     [](const QELFrameProblem& a, const QELFrameProblem& b) { return a.line < b.line; });
    return true;
}
