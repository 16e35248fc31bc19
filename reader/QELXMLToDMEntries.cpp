// An answer entry read into its map: the element around the entry, named
// after its document's type, and the values of its Item_Info, key by key, with
// the blocks that the updates read later kept as positions; the shape lists
// of a Components block; and the maps' memory, reused from entry to entry.

#include "QELXMLToDM.h"

#include <algorithm>
#include <memory>
#include <string>
#include <unordered_set>

#include "CV5CAAToolsDesc.h"
#include "QELElementNames.h"
#include "QELXMLToDMUpdateTools.h"

using QELXMLToDMUpdateTools::journalEndOfFile;
using QELXMLToDMUpdateTools::journalMissing;

namespace {

// The elements whose content is read later, from its position, by the update
// that needs it; the entry map keeps the position instead of the text.
bool isBlock(const std::string& name) {
    using namespace QELElement;
    static const std::unordered_set<std::string> kBlocks = {
        Mapping_Attribut, AbsoluteMatrix, DesignTable_Name, DT_Files,     DesignTable_File, Sheets,
        Auxiliaries,      LinkedDocs,     Shapes,           secondaries,  Components,       DefaultShapeForCache,
        ActivateShapes,   AnalysisFiles,  Externals,        Mapping_Inst, PartComposites};
    return kBlocks.count(name) != 0;
}

// An opening tag line gives its element name, every "<" and ">" taken out.
bool elementName(const std::string& line, std::string& name) {
    if (line.size() < 2 || line.front() != '<' || line.back() != '>') return false;
    name.assign(line, 1, line.size() - 2);
    if (name.find('<') != std::string::npos || name.find('>') != std::string::npos)
        name.erase(std::remove_if(name.begin(), name.end(), [](char c) { return c == '<' || c == '>'; }), name.end());
    return true;
}

} // namespace

bool QELXMLToDM::readEntry(long long start, long long& pos, Entry& entry, TYPMapCATUnicodeStringPVoid*& values) {
    static const std::string kItemInfoEnd = QELElement::closingLine(QELElement::Item_Info);
    entry = Entry();
    if (CV5CAAToolsDesc::getNodeName(_file, start, pos, entry.typeName)) {
        start = pos;
        entry.type = CV5CAAToolsDesc::getDocumentTypeFromBalise(entry.typeName);
    }
    // Where the entry's own reading ended: the search for its closing line
    // starts there, so that no line of a damaged entry is read twice.
    entry.valuesStart = start;
    entry.end = start;
    std::string name;
    if (!CV5CAAToolsDesc::getNodeName(_file, start, pos, name) || name != QELElement::Item_Info) return false;
    entry.valuesStart = pos;
    entry.complete = getValuesAndStore(pos, pos, values, kItemInfoEnd.c_str());
    entry.end = pos;
    return true;
}

bool QELXMLToDM::getValuesAndStore(long long start, long long& pos, TYPMapCATUnicodeStringPVoid*& map,
                                   const char* endLine) {
    if (!map) map = new TYPMapCATUnicodeStringPVoid("p_list_balises");
    const std::string end = endLine ? endLine : "";
    moveTo(start);
    std::string line;
    std::string key;
    std::string close;
    std::string value;
    for (;;) {
        const long long lineStart = _file.tell();
        if (!readLine(line)) break;
        if (line == end) {
            pos = _file.tell();
            return true;
        }
        // A closing line other than ours: our block lost its closing line,
        // and what follows belongs to the parent.
        if (line.compare(0, 2, "</") == 0) {
            journalMissing(_path, end);
            pos = lineStart;
            moveTo(pos);
            return false;
        }
        // A stray line between elements carries nothing.
        if (!elementName(line, key)) continue;

        const long long blockStart = _file.tell();
        if (isBlock(key)) {
            storeValue(map, key, std::to_string(blockStart));
            CV5CAAToolsDesc::searchClosingNode(_file, key, blockStart, pos);
            continue;
        }
        // Multi-line values keep their line feeds, without the scanner's
        // trailing blanks.
        close.assign("</").append(key) += '>';
        value.clear();
        bool closed = false;
        if (readLine(value)) {
            while (!closed && readLine(line)) {
                closed = line == close;
                if (!closed) {
                    value += '\n';
                    value += line;
                }
            }
        }
        storeValue(map, key, value);
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

void QELXMLToDM::clearEntryMap(TYPMapCATUnicodeStringPVoid* map) {
    if (!map) return;
    for (const auto& entry : *map) delete static_cast<CATUnicodeString*>(entry.object);
    map->clear();
}

void QELXMLToDM::storeValue(TYPMapCATUnicodeStringPVoid* map, const std::string& key, const std::string& value) {
    std::unique_ptr<CATUnicodeString> text;
    if (_spareValues.empty()) {
        text = std::make_unique<CATUnicodeString>();
    } else {
        text = std::move(_spareValues.back());
        _spareValues.pop_back();
    }
    *text = value;
    // The first value of a key is the one kept.
    if (map->insert(CATUnicodeString(key), text.get()))
        text.release();
    else
        _spareValues.push_back(std::move(text));
}

void QELXMLToDM::recycleEntryValues(TYPMapCATUnicodeStringPVoid* map) {
    if (!map) return;
    _spareValues.reserve(_spareValues.size() + static_cast<size_t>(map->size()));
    for (const auto& entry : *map) _spareValues.emplace_back(static_cast<CATUnicodeString*>(entry.object));
    map->clear();
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
