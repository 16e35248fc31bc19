// An answer entry read into its map: the element around the entry, named
// after its document's type, and the values of its Item_Info, key by key, with
// the blocks that the updates read later kept as positions; the shape lists
// of a Components block.

#include "QELXMLToDM.h"

#include <charconv>
#include <string>
#include <string_view>
#include <unordered_set>

#include "CV5CAAToolsDesc.h"
#include "QELAnswerEntry.h"
#include "QELElementNames.h"
#include "QELXMLToDMUpdateTools.h"

using QELXMLToDMUpdateTools::journalEndOfFile;
using QELXMLToDMUpdateTools::journalMissing;

namespace {

// The elements whose content is read later, from its position, by the update
// that needs it; the entry keeps the position instead of the text.
bool isBlock(std::string_view name) {
    using namespace QELElement;
    static const std::unordered_set<std::string_view> kBlocks = {
        Mapping_Attribut, AbsoluteMatrix, DesignTable_Name, DT_Files,     DesignTable_File, Sheets,
        Auxiliaries,      LinkedDocs,     Shapes,           secondaries,  Components,       DefaultShapeForCache,
        ActivateShapes,   AnalysisFiles,  Externals,        Mapping_Inst, PartComposites};
    return kBlocks.count(name) != 0;
}

// An opening tag line gives its element name, every "<" and ">" taken out.
bool elementName(std::string_view line, std::string& name) {
    if (line.size() < 2 || line.front() != '<' || line.back() != '>') return false;
    const std::string_view inner = line.substr(1, line.size() - 2);
    // A plain loop: the library's find_first_of cost a search per character.
    bool clean = true;
    for (char c : inner) clean = clean && c != '<' && c != '>';
    if (clean) {
        name.assign(inner.data(), inner.size());
        return true;
    }
    name.clear();
    for (char c : inner)
        if (c != '<' && c != '>') name += c;
    return true;
}

bool isClosingLine(std::string_view line, std::string_view name) {
    return line.size() == name.size() + 3 && line[0] == '<' && line[1] == '/' && line.back() == '>' &&
           line.compare(2, name.size(), name) == 0;
}

} // namespace

bool QELXMLToDM::readEntry(long long start, long long& pos, Entry& entry, QELAnswerEntry& values) {
    static const std::string kItemInfoEnd = QELElement::closingLine(QELElement::Item_Info);
    values.clear();
    entry = Entry();
    if (CV5CAAToolsDesc::getNodeName(_file, start, pos, entry.typeName)) {
        start = pos;
        entry.type = CV5CAAToolsDesc::getDocumentTypeFromBalise(entry.typeName);
    }
    // Where the entry's own reading ended: the search for its closing line
    // starts there, so that no line of a damaged entry is read twice.
    entry.valuesStart = start;
    entry.end = start;
    if (!CV5CAAToolsDesc::getNodeName(_file, start, pos, _key) || _key != QELElement::Item_Info) return false;
    entry.valuesStart = pos;
    entry.complete = getValuesAndStore(pos, pos, values, kItemInfoEnd);
    entry.end = pos;
    return true;
}

bool QELXMLToDM::getValuesAndStore(long long start, long long& pos, QELAnswerEntry& values, std::string_view end) {
    moveTo(start);
    // Lines are views into the file's block, valid until the next read: what
    // outlives a read is copied into _key and _value, whose storage stays.
    std::string_view line;
    for (;;) {
        const long long lineStart = _file.tell();
        if (!_file.readLine(line)) break;
        if (line == end) {
            pos = _file.tell();
            return true;
        }
        // A closing line other than ours: our block lost its closing line,
        // and what follows belongs to the parent.
        if (line.compare(0, 2, "</") == 0) {
            journalMissing(_path, std::string(end));
            pos = lineStart;
            moveTo(pos);
            return false;
        }
        // A stray line between elements carries nothing.
        if (!elementName(line, _key)) continue;

        const long long blockStart = _file.tell();
        if (isBlock(_key)) {
            char digits[24];
            _value.assign(digits,
                          static_cast<size_t>(std::to_chars(digits, digits + sizeof digits, blockStart).ptr - digits));
            values.add(_key, _value);
            CV5CAAToolsDesc::searchClosingNode(_file, _key, blockStart, pos);
            continue;
        }
        // Multi-line values keep their line feeds, without the scanner's
        // trailing blanks.
        _value.clear();
        bool closed = false;
        if (_file.readLine(line)) {
            _value.assign(line);
            while (!closed && _file.readLine(line)) {
                closed = isClosingLine(line, _key);
                if (!closed) {
                    _value += '\n';
                    _value.append(line);
                }
            }
        }
        values.add(_key, _value);
        if (!closed) break;
    }
    journalEndOfFile(_path);
    pos = _file.tell();
    return false;
}

bool QELXMLToDM::getValuesAndStoreForComponents(long long start, long long& pos, TYPMapIntPVoid*& map) {
    static const std::string kEnd = QELElement::closingLine(QELElement::Components);
    static const std::string kComponentName = QELElement::openingLine(QELElement::ComponentName);
    static const std::string kShapes = QELElement::openingLine(QELElement::Shapes);
    if (!map) map = new TYPMapIntPVoid("p_list_component");
    moveTo(start);
    // The shape lists are numbered across the whole block, not per component.
    int index = 0;
    CATUnicodeString component;
    std::string line;
    std::string value;
    bool more = readLine(line);
    while (more && line != kEnd) {
        if (line == kComponentName) {
            more = readLine(value) && readLine(line);
            component = CATUnicodeString(value);
        } else if (line == kShapes) {
            long long at = _file.tell();
            const int count = readCount(at, at);
            long long probe = 0;
            for (int i = 0; i < count && findSibling(QELElement::SR, at, probe); ++i) {
                TYPVectorCATUnicodeString* names = getBaliseValueListByName(at, QELElement::SR, at);
                auto* shapes = new TYPMapCATUnicodeStringPVoid("p_sub_map");
                shapes->insert(component, names);
                map->insert(index++, shapes);
            }
            // Stand after </Shapes> whatever the count said.
            more = CV5CAAToolsDesc::searchClosingNode(_file, QELElement::Shapes, at, at);
        } else {
            more = readLine(value) && readLine(line);
        }
        if (more) more = readLine(line);
    }
    if (!more) journalEndOfFile(_path);
    pos = _file.tell();
    return more;
}

void QELXMLToDM::freeComponentsMap(TYPMapIntPVoid* map) {
    if (!map) return;
    for (const auto& entry : *map) {
        auto* shapes = static_cast<TYPMapCATUnicodeStringPVoid*>(entry.object);
        if (!shapes) continue;
        for (const auto& list : *shapes) delete static_cast<TYPVectorCATUnicodeString*>(list.object);
        delete shapes;
    }
    delete map;
}
