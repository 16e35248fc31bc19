#include "QELDescriptionScanner.h"

#include "QELElementNames.h"
#include "QELFrameLine.h"

std::string_view QELDescriptionEntry::name(const QELDescriptionElement& element) const {
    std::string_view tag = lines[element.tag];
    return tag.substr(1, tag.size() - 2);
}

const QELDescriptionElement* QELDescriptionEntry::find(std::string_view wanted) const {
    for (const QELDescriptionElement& element : elements)
        if (name(element) == wanted) return &element;
    return nullptr;
}

std::string_view QELDescriptionEntry::value(std::string_view wanted) const {
    const QELDescriptionElement* element = find(wanted);
    if (!element || element->begin == element->end) return {};
    // A leaf holding an element has no value.
    return qelValueLine(lines[element->begin]);
}

bool QELDescriptionScanner::open(const std::string& path, std::string& error) { return _reader.open(path, error); }

bool QELDescriptionScanner::nextLine(std::string_view& line) {
    if (_hasPending) {
        _hasPending = false;
        line = _pending;
        ++_line;
        return true;
    }
    if (!_reader.readLine(line)) return false;
    _line = _reader.lineNumber();
    return true;
}

void QELDescriptionScanner::pushBack(std::string_view line) {
    _pending.assign(line);
    _hasPending = true;
    --_line;
}

bool QELDescriptionScanner::fail(long line, std::string message, std::string& error) {
    _errorLine = line;
    error = std::move(message);
    return false;
}

bool QELDescriptionScanner::endOfFile(const std::string& inside, long openedOn, std::string& error) {
    return fail(_line + 1, "the file ends inside <" + inside + "> opened on line " + std::to_string(openedOn), error);
}

bool QELDescriptionScanner::readHeader(std::string& error) {
    std::string_view line;
    if (!nextLine(line) || line.substr(0, 5) != "<?xml") {
        return fail(1, "expected the declaration <?xml ... ?>", error);
    }
    if (!nextLine(line) || line != "<DESCFILE>") {
        return fail(2, "expected <DESCFILE>", error);
    }
    while (nextLine(line)) {
        const QELFrameLine frame = qelClassifyLine(line);
        if (frame.kind == QELLineKind::Open && frame.name == QELElement::Options) {
            if (!readOptions(error)) return false;
        } else if (frame.kind == QELLineKind::Open && frame.name == QELElement::NBElements) {
            if (!skipTo(QELElement::NBElements, _line, error)) return false;
        } else if (frame.kind == QELLineKind::Value) {
            return fail(_line, "expected an element under <DESCFILE>, found a value line", error);
        } else {
            pushBack(line);
            return true;
        }
    }
    return endOfFile(QELElement::DESCFILE, 2, error);
}

bool QELDescriptionScanner::readOptions(std::string& error) {
    const long openedOn = _line;
    std::string_view line;
    while (nextLine(line)) {
        const QELFrameLine frame = qelClassifyLine(line);
        if (frame.kind == QELLineKind::Close && frame.name == QELElement::Options) return true;
        if (frame.kind != QELLineKind::Open) {
            return fail(_line, "expected an option's tag inside <Options>", error);
        }
        std::string name(frame.name);
        std::string value;
        const long optionLine = _line;
        bool first = true;
        while (true) {
            if (!nextLine(line)) return endOfFile(name, optionLine, error);
            const QELFrameLine inner = qelClassifyLine(line);
            if (inner.kind == QELLineKind::Close && inner.name == name) break;
            if (inner.kind != QELLineKind::Value) {
                return fail(_line, "expected a value line of <" + name + ">", error);
            }
            if (first) value.assign(line);
            first = false;
        }
        _options.emplace_back(std::move(name), std::move(value));
    }
    return endOfFile(QELElement::Options, openedOn, error);
}

bool QELDescriptionScanner::skipTo(std::string_view name, long openedOn, std::string& error) {
    std::string_view line;
    int depth = 0;
    const std::string kept(name);
    while (nextLine(line)) {
        const QELFrameLine frame = qelClassifyLine(line);
        if (frame.kind == QELLineKind::Open) ++depth;
        if (frame.kind != QELLineKind::Close) continue;
        if (depth == 0) {
            if (frame.name == kept) return true;
            return fail(_line, "</" + std::string(frame.name) + "> closes <" + kept + "> opened on line " +
                    std::to_string(openedOn), error);
        }
        --depth;
    }
    return endOfFile(kept, openedOn, error);
}

bool QELDescriptionScanner::readElement(QELDescriptionEntry& entry, std::string_view tag, std::string& error) {
    auto store = [&entry](std::string_view line) {
        if (entry.lineCount < entry.lines.size()) entry.lines[entry.lineCount].assign(line);
        else entry.lines.emplace_back(line);
        return entry.lineCount++;
    };
    QELDescriptionElement element;
    const long openedOn = _line;
    element.tag = store(std::string("<") + std::string(tag) + ">");
    element.begin = entry.lineCount;
    const std::string name(tag);
    std::string_view line;
    int depth = 0;
    while (nextLine(line)) {
        const QELFrameLine frame = qelClassifyLine(line);
        if (frame.kind == QELLineKind::Close && depth == 0) {
            if (frame.name != name) {
                return fail(_line, "</" + std::string(frame.name) + "> closes <" + name + "> opened on line " +
                        std::to_string(openedOn), error);
            }
            element.end = entry.lineCount;
            entry.elements.push_back(element);
            return true;
        }
        if (frame.kind == QELLineKind::Open) ++depth;
        if (frame.kind == QELLineKind::Close) --depth;
        store(line);
    }
    return endOfFile(name, openedOn, error);
}

bool QELDescriptionScanner::nextEntry(QELDescriptionEntry& entry, std::string& error) {
    std::string_view line;
    if (!nextLine(line)) return endOfFile(QELElement::DESCFILE, 2, error);
    QELFrameLine frame = qelClassifyLine(line);
    if (frame.kind == QELLineKind::Close && frame.name == QELElement::DESCFILE) return false;
    if (frame.kind != QELLineKind::Open) {
        return fail(_line, "expected an entry's opening tag under <DESCFILE>", error);
    }
    entry.type.assign(frame.name);
    entry.openedOn = _line;
    entry.lineCount = 0;
    entry.elements.clear();

    if (!nextLine(line) || line != "<Item_Info>") {
        return fail(_line, "entry <" + entry.type + "> does not begin with <Item_Info>", error);
    }
    const long itemInfoLine = _line;
    while (true) {
        if (!nextLine(line)) return endOfFile(QELElement::Item_Info, itemInfoLine, error);
        frame = qelClassifyLine(line);
        if (frame.kind == QELLineKind::Close && frame.name == QELElement::Item_Info) break;
        if (frame.kind != QELLineKind::Open) {
            return fail(_line, "expected an element inside <Item_Info> opened on line " +
                    std::to_string(itemInfoLine), error);
        }
        if (!readElement(entry, frame.name, error)) return false;
    }
    // What follows Item_Info inside the entry (a workspace's Configuration)
    // is not answered.
    return skipTo(entry.type, entry.openedOn, error);
}

bool QELDescriptionScanner::countEntries(long& count, std::string& error) {
    count = 0;
    std::vector<std::pair<std::string, long>> open; // name, line
    std::string_view line;
    while (nextLine(line)) {
        const QELFrameLine frame = qelClassifyLine(line);
        if (frame.kind == QELLineKind::Open) {
            if (open.empty()) ++count;
            open.emplace_back(frame.name, _line);
        } else if (frame.kind == QELLineKind::Close) {
            if (open.empty()) {
                if (frame.name == QELElement::DESCFILE) return true;
                return fail(_line, "</" + std::string(frame.name) + "> closes <DESCFILE>", error);
            }
            if (frame.name != open.back().first) {
                return fail(_line, "</" + std::string(frame.name) + "> closes <" + open.back().first +
                        "> opened on line " + std::to_string(open.back().second), error);
            }
            open.pop_back();
        }
    }
    if (!open.empty()) return endOfFile(open.back().first, open.back().second, error);
    return endOfFile(QELElement::DESCFILE, 2, error);
}
