#ifndef ReaderAnswerSupport_H
#define ReaderAnswerSupport_H

// Answer files and a small host model for the tests of the reader's scanner,
// driver and options.

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "QELElementNames.h"
#include "QELLinkType.h"
#include "CleanSessionTest.h"
#include "ScratchDir.h"
#include "CV5CAAQELAbsoluteOccurrence.h"
#include "CV5CAAQELDocument.h"
#include "CV5CAAQELItem.h"
#include "CV5CAAQELSession.h"
#include "CV5CAAQELWorkSpace.h"
#include "CV5CAAToolsCommon.h"
#include "EMHManager.h"
#include "ENVManager.h"
#include "JNLManager.h"
#include "PROCManager.h"
#include "QELHandleTable.h"
#include "QELModelHeap.h"
#include "QELRelativeOccurrence.h"
#include "QELSession.h"
#include "QELUtilities.h"

namespace reader_test {

inline std::string withLineEnds(const std::string& text, bool crlf) {
    if (!crlf) return text;
    std::string out;
    out.reserve(text.size() + text.size() / 8);
    for (char c : text) {
        if (c == '\n') out += '\r';
        out += c;
    }
    return out;
}

// Writes `text` (lines ended by "\n") into the test's temporary directory,
// with CR LF line ends when asked, and answers the path.
inline std::string writeAnswer(const std::string& name, const std::string& text, bool crlf = false) {
    const std::string path = qeltest::scratchDir() + name;
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << withLineEnds(text, crlf);
    return path;
}

inline std::string leaf(const std::string& name, const std::string& value) {
    return "<" + name + ">\n" + value + "\n</" + name + ">\n";
}

inline std::string element(const std::string& name, const std::string& body) {
    return "<" + name + ">\n" + body + "</" + name + ">\n";
}

inline std::string entry(const std::string& type, const std::string& itemInfo) {
    return element(type, element(QELElement::Item_Info, itemInfo));
}

inline std::string count(int n) { return leaf(QELElement::NBElements, std::to_string(n)); }

const char* const kDeclaration = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\" ?>\n";

// The answer frame: declaration, root, count, entries, end of root. The
// options go before the count, or after it when `optionsAfter`.
inline std::string answer(int n, const std::string& entries, const std::string& options = "",
                          bool optionsAfter = false) {
    std::string text = std::string(kDeclaration) + "<DESCFILE>\n";
    if (!optionsAfter) text += options;
    text += count(n);
    if (optionsAfter) text += options;
    return text + entries + "</DESCFILE>\n";
}

inline std::string text(const CATUnicodeString& s) { return s.ToLatin1(); }

// The strings of `v`, none when it is null.
inline std::vector<std::string> strings(const TYPVectorCATUnicodeString* v) {
    std::vector<std::string> out;
    for (int i = 0; v && i < v->size(); ++i) out.push_back(text((*v)[i]));
    return out;
}

inline std::string pointerOf(const QELComponent* component) {
    return QELHandleTable::format(component->get_Handle());
}

// Active workspace Root.CATProduct (item Root, UID-Root) with one occurrence
// Part.1 of Part.CATPart (item Part, UID-Part) and its relative occurrence.
struct SmallModel {
    QELSession* session = nullptr;
    CV5CAAQELWorkSpace* workspace = nullptr;
    CV5CAAQELItem* rootItem = nullptr;
    CV5CAAQELDocument* rootDocument = nullptr;
    CV5CAAQELItem* partItem = nullptr;
    CV5CAAQELDocument* partDocument = nullptr;
    CV5CAAQELAbsoluteOccurrence* occurrence = nullptr;
    QELRelativeOccurrence* relative = nullptr;

    static CV5CAAQELItem* item(QELSession* session, const char* name) {
        auto* it = QELModelHeap::adopt(new CV5CAAQELItem(name));
        it->addStringProperty("ItemRev_UID", CATUnicodeString("UID-") + name);
        session->addItem(it);
        return it;
    }

    static CV5CAAQELDocument* document(QELSession* session, CV5CAAQELItem* owner, const char* name,
                                       EnumDocumentType type) {
        auto* doc = QELModelHeap::adopt(new CV5CAAQELDocument(name, type));
        session->addDocument(doc);
        owner->linkDocument(QELLinkType::LINKNAME_CHILD, doc);
        owner->setItemDefaultDocument(doc);
        doc->setDefaultItem(owner);
        doc->createFile(QELUtilities::getDocFilRefNameFromDocumentType(type), name);
        return doc;
    }

    static SmallModel build() {
        SmallModel m;
        m.session = QELSession::getInstance();
        m.rootItem = item(m.session, "Root");
        m.rootDocument = document(m.session, m.rootItem, "Root.CATProduct", EnumDocumentType_Product);
        m.workspace = QELModelHeap::adopt(new CV5CAAQELWorkSpace());
        m.workspace->set_Name("Root.CATProduct");
        m.workspace->setWorkSpaceType(EnumDocumentType_Product);
        m.workspace->setWorkSpaceDefaultDocument(m.rootDocument);
        m.workspace->linkDocument(m.rootDocument);
        m.workspace->linkItem(m.rootItem);
        m.workspace->setActiveWorkspace(1);
        m.workspace->addIntegerProperty("Modified_Flag", 0);
        m.session->addWorkSpace(m.workspace);

        m.partItem = item(m.session, "Part");
        m.partDocument = document(m.session, m.partItem, "Part.CATPart", EnumDocumentType_Part);
        m.occurrence = QELModelHeap::adopt(new CV5CAAQELAbsoluteOccurrence("OCC-1", "Part.1", m.workspace));
        m.workspace->linkAbsoluteOccurrence(m.occurrence);
        m.occurrence->linkWorkSpace(m.workspace);
        m.occurrence->linkItem(m.partItem);
        m.occurrence->addIntegerProperty("Modified_Flag", 0);
        m.relative = QELModelHeap::adopt(new QELRelativeOccurrence("REL-1", ""));
        m.occurrence->linkRelativeOccurrence(m.relative);
        m.relative->linkItem(m.partItem);
        return m;
    }
};

using ReaderTest = qeltest::CleanSessionTest;

} // namespace reader_test

#endif
