#ifndef QELDMToXMLAssemblyAccess_H
#define QELDMToXMLAssemblyAccess_H

// The writer's occurrence, design-table and composites writers for their
// tests, and what those tests share besides the writer's fixture and run:
// expected lines written compactly, and small model builders.

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "CV5CAAQELSession.h"
#include "EMHManager.h"
#include "ENVManager.h"
#include "JNLManager.h"
#include "PROCManager.h"
#include "QELDMToXML.h"
#include "QELElementNames.h"
#include "QELLinkType.h"
#include "QELLookups.h"
#include "QELModelHeap.h"
#include "QELSession.h"
#include "WriterDriverSupport.h"

struct QELDMToXMLAssemblyAccess {
    typedef QELDMToXML W;
    static void relativeMatrix(W& w, QELRelativeOccurrence* r, unsigned char abs) { w.writeRelativeMatrix(r, abs); }
    static void absoluteMatrix(W& w, QELAbsoluteOccurrence* o, unsigned char abs) { w.writeAbsoluteMatrix(o, abs); }
    static void visibility(W& w, QELAbsoluteOccurrence* o) { w.writeVisibility(o); }
    static void scenes(W& w, QELComponent* c, QELDocument* d) { w.writeScenes(c, d); }
    static void scenesOverrides(W& w, QELAbsoluteOccurrence* o) { w.writeScenesOverrides(o); }
    static void shape(W& w, QELDocument* d, QELComponent* c) { w.writeShape(d, c); }
    static void mappingInst(W& w, QELRelativeOccurrence* r) { w.writeMappingInst(r); }
    static void activeShape(W& w, QELComponent* c) { w.writeActiveShape(c); }
    static void defaultShape(W& w, QELComponent* c) { w.writeDefaultShape(c); }
    static void dynamicProperties(W& w, const char* list, unsigned char paired, QELComponent* c) {
        w.writeDescDynamicProperties(list, "Item", paired, c);
    }

    static void designTable(W& w, QELDocument* dt, QELDocument* hostDoc, unsigned char flag) {
        w.writeDescDesignTable(dt, QELSession::getInstance(), hostDoc, flag);
    }
    static void designTableInfo(W& w, QELDocument* dt) { w.writeDesignTableInfo(dt); }
    static void designTableMapping(W& w, const char* property, QELDocument* dt) {
        w.writeDesignTableMappingAttribute(property, QELElement::Attribut, dt);
    }
    // In the order an owner's description writes them.
    static void ownerSummaries(W& w, QELDocument* owner) {
        w.writeDescDesignTableFile(QELElement::DT_Files, owner);
        w.writeDescDesignTableSheets(QELElement::DT_Sheets, owner);
        w.writeDescDesignTableCfgs(QELElement::DT_Cfgs, owner);
        w.writeDescDesignTableMap(QELElement::DT_Map, owner);
    }

    static long composites(W& w, QELDocument* d, QELComponent* c) { return w.writeComposites(d, c); }
    static void analysisFiles(W& w, QELComponent* c) { w.writeAnalysisFiles(c); }
    static void externalFiles(W& w, QELDocument* d) { w.writeExternalFiles(d); }
};

namespace assembly_test {

typedef std::vector<std::string> Lines;

using AssemblyWriterTest = writertest::WriterTest;

// Expected lines written compactly: "|" ends a line, so "<A>||</A>" is three
// lines with an empty one between; "" is no line at all.
inline Lines L(const std::string& text) {
    Lines lines;
    if (text.empty()) return lines;
    std::string::size_type start = 0, bar;
    while ((bar = text.find('|', start)) != std::string::npos) {
        lines.push_back(text.substr(start, bar - start));
        start = bar + 1;
    }
    lines.push_back(text.substr(start));
    return lines;
}

// Runs `call` on a writer over a fresh file and answers the file's lines.
// Fails the test when a line does not end with CR LF.
inline Lines written(const std::function<void(QELDMToXML&)>& call) { return writertest::describe(call); }

inline std::string joined(const Lines& lines) {
    std::string all;
    for (const std::string& line : lines) all += line + "|";
    return all;
}

// Whether `part` (in the "|" form) stands in `lines`.
inline bool has(const Lines& lines, const std::string& part) {
    return joined(lines).find(part + "|") != std::string::npos;
}

// The names of the elements directly inside the first `parent` element.
inline Lines childElements(const Lines& lines, const std::string& parent) {
    Lines names;
    int depth = -1;
    for (const std::string& line : lines) {
        const bool tag = line.size() > 2 && line[0] == '<' && line.back() == '>';
        const bool closing = tag && line[1] == '/';
        if (depth < 0) {
            if (line == "<" + parent + ">") depth = 0;
        } else if (closing) {
            if (depth-- == 0) break;
        } else if (tag && depth++ == 0) {
            names.push_back(line.substr(1, line.size() - 2));
        }
    }
    return names;
}

// An item with a document of `type` and its file, named `fileName` in the
// description: what a view's context resolves to.
inline QELItem* itemWithFile(const char* itemName, const char* fileName,
                             EnumDocumentType type = EnumDocumentType_Product) {
    auto* item = QELModelHeap::adopt(new QELItem(itemName));
    QELDocument* document = item->createDocument(QELLinkType::LINKNAME_CHILD, type, fileName);
    document->createFile(QELUtilities::getDocFilRefNameFromDocumentType(type), fileName)
        ->addStringProperty("File_Name", fileName);
    return item;
}

// Sets a string-vector property to exactly these strings, odd counts included
// (the dynamic merge itself keeps one pair per key).
inline void setStrings(QELComponent* component, const char* property, std::initializer_list<const char*> strings) {
    component->addDynamicProperty(property, "", "", false);
    TYPVectorCATUnicodeString* values = component->getDynamicProperty(property);
    values->clear();
    for (const char* s : strings) values->push_back(s);
}

} // namespace assembly_test

#endif
