#include "CV5CAAToolsDesc.h"

#include <string_view>

#include "QELElementNames.h"
#include "UTILLineFile.h"

namespace {

// The name of a tag line, or false for a line that is no tag.
bool tagName(const std::string& line, std::string& name, bool& closing) {
    if (line.size() < 3 || line.front() != '<' || line.back() != '>') return false;
    closing = line[1] == '/';
    size_t start = closing ? 2 : 1;
    if (line.size() - 1 <= start) return false;
    name.assign(line, start, line.size() - 1 - start);
    return true;
}

bool moveTo(UTILLineFile& file, long long from) { return from <= 0 || file.seek(from); }

// Tag lines compared in place: the skip of a block reads every line of it.
bool isTag(std::string_view line, std::string_view prefix, std::string_view name) {
    return line.size() == prefix.size() + name.size() + 1 && line.back() == '>' &&
           line.compare(0, prefix.size(), prefix) == 0 && line.compare(prefix.size(), name.size(), name) == 0;
}

} // namespace

bool CV5CAAToolsDesc::searchClosingNode(UTILLineFile& file, const std::string& name, long long from, long long& pos) {
    if (!moveTo(file, from)) {
        pos = file.tell();
        return false;
    }
    // Started on the opening line or anywhere inside the element: either way
    // the element is one level deep once its first line is behind.
    std::string_view line;
    long depth = 1;
    bool first = true;
    while (file.readLine(line)) {
        if (isTag(line, "<", name)) {
            if (!first) ++depth;
        } else if (isTag(line, "</", name) && --depth == 0) {
            pos = file.tell();
            return true;
        }
        first = false;
    }
    pos = file.tell();
    return false;
}

bool CV5CAAToolsDesc::getNodeName(UTILLineFile& file, long long from, long long& pos, std::string& name) {
    if (!moveTo(file, from)) return false;
    std::string line;
    bool closing = false;
    if (!file.readLine(line) || !tagName(line, name, closing)) return false;
    pos = file.tell();
    return true;
}

bool CV5CAAToolsDesc::getNodeValue(UTILLineFile& file, long long from, const std::string& name, long long& pos,
                                   std::string& value) {
    if (!moveTo(file, from)) return false;
    const std::string open = "<" + name + ">";
    const std::string close = "</" + name + ">";
    std::string line;
    while (file.readLine(line)) {
        if (line != open) continue;
        std::string found;
        if (!file.readLine(found)) return false;
        while (file.readLine(line)) {
            if (line == close) {
                value = found;
                pos = file.tell();
                return true;
            }
        }
        return false;
    }
    return false;
}

EnumDocumentType CV5CAAToolsDesc::getDocumentTypeFromBalise(const std::string& name) {
    static const struct {
        const char* element;
        EnumDocumentType type;
    } kTypes[] = {
        {QELElement::CATProduct, EnumDocumentType_Product},   {QELElement::CATPart, EnumDocumentType_Part},
        {QELElement::CATDrawing, EnumDocumentType_Drawing},   {QELElement::CATProcess, EnumDocumentType_Process},
        {QELElement::CATAnalysis, EnumDocumentType_Analysis}, {QELElement::CATModel, EnumDocumentType_Model},
        {QELElement::DesignTable, EnumDocumentType_DesignTable}, {QELElement::catalog, EnumDocumentType_Catalog},
    };
    for (const auto& t : kTypes) {
        if (name == t.element) return t.type;
    }
    return EnumDocumentType_Unset;
}
