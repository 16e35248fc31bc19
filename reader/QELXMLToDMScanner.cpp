// Tag scanner of the answer reader: the answer file itself, its opening, and
// the searches that find an element by name and cut its value, all by file
// position.

#include "QELXMLToDM.h"

#include <cstdlib>
#include <string_view>

#include "CV5CAAToolsDesc.h"
#include "JNLManager.h"
#include "QELElementNames.h"
#include "QELHandleTable.h"
#include "QELStatus.h"
#include "QELXMLToDMUpdateTools.h"

using QELXMLToDMUpdateTools::journalEndOfFile;

namespace {

enum class Sibling { Found, Absent, EndOfFile };

// Tag lines compared in place, without building the tag's text.
bool isOpeningLine(std::string_view line, std::string_view name) {
    return line.size() == name.size() + 2 && line.front() == '<' && line.back() == '>' &&
           line.compare(1, name.size(), name) == 0;
}
bool isClosingLine(std::string_view line, std::string_view name) {
    return line.size() == name.size() + 3 && line[0] == '<' && line[1] == '/' && line.back() == '>' &&
           line.compare(2, name.size(), name) == 0;
}

// The name of an opening tag line. A closing line means that the parent has
// ended, and a line that is no tag at all means that the frame is broken:
// either way there are no more siblings to look at.
bool openingName(std::string_view line, std::string& name) {
    if (line.size() < 3 || line[0] != '<' || line[1] == '/' || line.back() != '>') return false;
    name.assign(line.data() + 1, line.size() - 2);
    return true;
}

// The sibling search, from where the file stands. Found: `matchStart` is the
// start of the opening line of `name` and `pos` the position after it.
// Absent: `pos` is the start of the line that ended the search (the parent's
// closing line in a well-formed answer). Each turn consumes at least one line,
// so the search ends at the end of the file whatever the content.
Sibling searchSibling(UTILLineFile& file, std::string_view name, long long& pos, long long& matchStart) {
    std::string_view line;
    std::string sibling;
    for (;;) {
        const long long lineStart = file.tell();
        if (!file.readLine(line)) {
            pos = file.tell();
            return Sibling::EndOfFile;
        }
        if (isOpeningLine(line, name)) {
            matchStart = lineStart;
            pos = file.tell();
            return Sibling::Found;
        }
        if (!openingName(line, sibling)) {
            pos = lineStart;
            return Sibling::Absent;
        }
        // Skipping the whole sibling keeps elements nested inside it from
        // being taken for children of the current parent.
        CV5CAAToolsDesc::searchClosingNode(file, sibling, lineStart, pos);
    }
}

} // namespace

QELXMLToDM::QELXMLToDM(const char* path)
    : _path(path ? path : ""), _occurrences(new TYPVectorPQELAbsoluteOccurrence()) {}

QELXMLToDM::~QELXMLToDM() {
    closeFile();
    delete _occurrences;
}

int QELXMLToDM::openFile() { return _file.open(_path.c_str()); }

int QELXMLToDM::closeFile() {
    _file.close();
    return 0;
}

bool QELXMLToDM::readLine(std::string& line) { return _file.readLine(line); }

bool QELXMLToDM::beginReading(const char* function, QELSession* session, std::string& rootLine) {
    if (!session) {
        JNLManager::writeMsgFormatted("%s: ip_session is NULL", function);
        JNLManager::endFunction(function, -1);
        return false;
    }
    if (openFile() != 0) {
        JNLManager::writeMsgFormatted("Error while opening desc.xml file %s", _path.c_str());
        JNLManager::endFunction(function, -1);
        return false;
    }
    // The answer is read from its first line, whatever an earlier reading left.
    _file.seek(0);
    readLine(rootLine);
    readLine(rootLine);
    return true;
}

void QELXMLToDM::moveTo(long long start) {
    if (start <= 0 || _file.seek(start)) return;
    // A position past the end reads nothing rather than carrying on from
    // wherever the file happened to stand.
    if (_file.size() >= 0) _file.seek(_file.size());
}

bool QELXMLToDM::findSibling(std::string_view name, long long start, long long& pos) {
    moveTo(start);
    long long matchStart = 0;
    const Sibling found = searchSibling(_file, name, pos, matchStart);
    if (found == Sibling::EndOfFile) journalEndOfFile(_path);
    return found == Sibling::Found;
}

bool QELXMLToDM::getNodePosition(const char* name, long long start, long long& pos) {
    if (!name) return false;
    return findSibling(name, start, pos);
}

bool QELXMLToDM::getBaliseValueByName(long long start, const char* name, long long& pos, std::string& value) {
    value.clear();
    if (!name || !findSibling(name, start, pos)) return false;
    std::string_view line;
    if (_file.readLine(line)) {
        value.assign(line);
        while (_file.readLine(line)) {
            if (isClosingLine(line, name)) {
                pos = _file.tell();
                return true;
            }
            // The blank after each continuation line belongs to the value:
            // the PDM side's multi-line attributes have always read this way.
            value += '\n';
            value.append(line);
            value += ' ';
        }
    }
    journalEndOfFile(_path);
    pos = _file.tell();
    return false;
}

TYPVectorCATUnicodeString* QELXMLToDM::getBaliseValueListByName(long long start, const char* name, long long& pos) {
    auto* list = new TYPVectorCATUnicodeString();
    if (!name || !findSibling(name, start, pos)) return list;
    std::string_view line;
    while (_file.readLine(line)) {
        if (isClosingLine(line, name)) {
            pos = _file.tell();
            return list;
        }
        list->push_back(CATUnicodeString(line.data(), line.size()));
    }
    journalEndOfFile(_path);
    pos = _file.tell();
    return list;
}

long QELXMLToDM::getTagValueByName(long long start, const CATUnicodeString& stopLine, const CATUnicodeString& name,
                                   long long& pos, CATUnicodeString& value) {
    static const char* const kFunction = "QELXMLToDM::getTagValueByName";
    const std::string_view tag = name.ToLatin1();
    const std::string_view stop = stopLine.ToLatin1();
    // Assigned rather than replaced, so that a caller's value keeps its storage.
    value = "";
    moveTo(start);

    // No sibling skipping here: the callers only search small blocks whose
    // closing line they give as the stop line.
    std::string_view line;
    bool found = false;
    while (!found && _file.readLine(line)) {
        found = isOpeningLine(line, tag);
        if (!found && line == stop) break;
    }
    if (!found) {
        JNLManager::beginFunction(kFunction);
        JNLManager::writeMsgFormatted("<%s> tag was not found", name.ConvertToChar());
        JNLManager::endFunction(kFunction, -1);
        return QEL_E_FAIL;
    }

    _value.clear();
    while (_file.readLine(line)) {
        if (isClosingLine(line, tag)) {
            pos = _file.tell();
            value = _value;
            return 0;
        }
        // The stop line inside a value ends it as a success, position left
        // as it was: the callers rely on this lenient end.
        if (line == stop) {
            value = _value;
            return 0;
        }
        _value.append(line);
    }
    journalEndOfFile(_path);
    value = _value;
    return QEL_E_FAIL;
}

QELComponent* QELXMLToDM::resolvePointer(const CATUnicodeString* token) {
    if (!token || token->IsNull()) return nullptr;
    QELComponent* component = QELHandleTable::resolve(token->ToLatin1());
    if (!component)
        JNLManager::writeMsgFormatted("POINTER_ADDRESS [%s] designates no component", token->ConvertToChar());
    return component;
}

int QELXMLToDM::readBlockCount(const QELAnswerEntry* map, const char* block, long long& pos) {
    if (!map || !block) return -1;
    const CATUnicodeString* stored = map->find(block);
    if (!stored) return -1;
    const long long start = std::strtoll(stored->ConvertToChar(), nullptr, 10);
    if (start <= 0) return -1;
    return readCount(start, pos);
}

int QELXMLToDM::readCount(long long start, long long& pos) {
    static const std::string kCountEnd = QELElement::closingLine(QELElement::NBElements);
    moveTo(start);
    long long after = 0;
    long long countStart = 0;
    const Sibling found = searchSibling(_file, QELElement::NBElements, after, countStart);
    if (found == Sibling::EndOfFile) journalEndOfFile(_path);
    if (found != Sibling::Found) return -1;
    // The file stands after the opening line: its value line, then the
    // lines up to its closing line, read once.
    std::string_view line;
    if (!_file.readLine(line)) return -1;
    _value.assign(line);
    while (_file.readLine(line)) {
        if (line == kCountEnd) {
            pos = _file.tell();
            int count = 0;
            CATUnicodeString(_value).ConvertToNum(&count);
            return count;
        }
    }
    return -1;
}

bool QELXMLToDM::moreEntriesFollow(long long start) {
    moveTo(start);
    std::string line;
    const bool opens = readLine(line) && line.size() > 2 && line[0] == '<' && line[1] != '/';
    moveTo(start);
    return opens;
}

bool QELXMLToDM::entryBegins(long long start, int index, int count) {
    moveTo(start);
    std::string line;
    const bool begins = readLine(line) && line.compare(0, 2, "</") != 0;
    if (!begins)
        JNLManager::writeMsgFormatted("Error while reading desc.xml file %s. %d entries announced, %d found",
                                      _path.c_str(), count, index);
    moveTo(start);
    return begins;
}
