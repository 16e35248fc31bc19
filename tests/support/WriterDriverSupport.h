#ifndef WriterDriverSupport_H
#define WriterDriverSupport_H

// Helpers of the tests of the writer's primitives, driver and catalog
// traversals: settings put back around each test, a writer run into a
// temporary file read back as lines, and a small model builder whose nodes
// carry everything a block needs (item, document, file, relative occurrence).

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "QELLinkType.h"
#include "CleanSessionTest.h"
#include "ScratchDir.h"
#include "CV5CAAQELDocument.h"
#include "CV5CAAQELItem.h"
#include "CV5CAAQELSession.h"
#include "CV5CAAQELWorkSpace.h"
#include "CV5CAAToolsCommon.h"
#include "EMHManager.h"
#include "ENVManager.h"
#include "JNLManager.h"
#include "PROCManager.h"
#include "QELAbsoluteOccurrence.h"
#include "QELDMToXML.h"
#include "QELFile.h"
#include "QELModelHeap.h"
#include "QELRelativeOccurrence.h"
#include "QELSession.h"
#include "QELUtilities.h"

namespace writertest {

inline std::string tempPath(const std::string& name) {
    const ::testing::TestInfo* info = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string unique = info ? std::string(info->test_suite_name()) + "_" + info->name() : std::string("writer");
    for (char& c : unique)
        if (c == '/') c = '_';
    return qeltest::scratchDir() + unique + "_" + name;
}

inline std::string readBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// The lines of a description. Every line must end with CR LF: a bare LF or
// CR, or a last line without its end, fails the test.
inline std::vector<std::string> linesOf(const std::string& bytes) {
    std::vector<std::string> lines;
    size_t start = 0;
    while (start < bytes.size()) {
        size_t end = bytes.find("\r\n", start);
        if (end == std::string::npos) {
            ADD_FAILURE() << "last line without CR LF: " << bytes.substr(start);
            lines.push_back(bytes.substr(start));
            break;
        }
        std::string line = bytes.substr(start, end - start);
        if (line.find_first_of("\r\n") != std::string::npos) ADD_FAILURE() << "bare CR or LF in: " << line;
        lines.push_back(line);
        start = end + 2;
    }
    return lines;
}

// Runs `call` on a writer opened on a fresh file, destroys the writer (which
// closes what is still open) and answers the file's lines.
template <typename Call>
std::vector<std::string> describe(Call call, const std::string& name = "description.xml") {
    const std::string path = tempPath(name);
    {
        QELDMToXML writer(path.c_str());
        call(writer);
    }
    std::vector<std::string> lines = linesOf(readBytes(path));
    std::remove(path.c_str());
    return lines;
}

inline std::vector<std::string> lines(std::initializer_list<const char*> texts) {
    return std::vector<std::string>(texts.begin(), texts.end());
}

// The values of every element `name` (the line after its opening tag).
inline std::vector<std::string> valuesOf(const std::vector<std::string>& lines, const std::string& name) {
    std::vector<std::string> values;
    const std::string open = "<" + name + ">";
    for (size_t i = 0; i + 1 < lines.size(); ++i)
        if (lines[i] == open) values.push_back(lines[i + 1]);
    return values;
}

inline std::vector<long> codesReported() {
    std::vector<long> codes;
    for (const auto& e : EMHManager::entries()) codes.push_back(e.code);
    return codes;
}

// Every process-wide setting back to its default around each test, and the
// model freed. Shared by all the writer's tests.
using WriterTest = qeltest::CleanSessionTest;

// The 16 upper-case hexadecimal digits that identify a component.
inline std::string handleOf(const QELComponent* c) {
    char text[32];
    std::snprintf(text, sizeof text, "%016llX", static_cast<unsigned long long>(c ? c->get_Handle() : 0));
    return text;
}

// Builds describable nodes into the current session; everything goes to the
// model heap.
class ModelBuilder {
public:
    // The current session: a test may free the model and build another.
    QELSession* session() const { return QELSession::getInstance(); }

    // An item with its document and the document's file, all named after
    // `name`; the document is a host document of the given type.
    CV5CAAQELItem* item(const std::string& name, EnumDocumentType type = EnumDocumentType_Part) {
        auto* item = QELModelHeap::adopt(new CV5CAAQELItem(name.c_str()));
        item->addStringProperty("Part_Number", ("PN-" + name).c_str());
        session()->addItem(item);
        const std::string docName = name + extensionOf(type);
        auto* document = QELModelHeap::adopt(new CV5CAAQELDocument(docName.c_str(), type));
        session()->addDocument(document);
        item->linkDocument(QELLinkType::LINKNAME_CHILD, document);
        // The item is the document's parent under link 15.
        document->linkItem(QELLinkType::LINKNAME_PARENT, item);
        QELFile* file = document->createFile(QELUtilities::getDocFilRefNameFromDocumentType(type), docName.c_str());
        file->addStringProperty("File_Name", docName.c_str());
        document->setDefaultFile(file);
        document->setDefaultItem(item);
        item->setItemDefaultDocument(document);
        return item;
    }

    CV5CAAQELWorkSpace* workspace(const std::string& name, bool active, int workspaceIndex = 0,
                                  EnumDocumentType type = EnumDocumentType_Product) {
        auto* ws = QELModelHeap::adopt(new CV5CAAQELWorkSpace());
        ws->set_Name(name.c_str());
        QELItem* root = item(name, type);
        ws->linkItem(root);
        ws->linkDocument(documentOf(root));
        ws->setDocFileLinkType(type);
        ws->setItemDocLinkType(QELLinkType::LINKNAME_CHILD);
        ws->addBooleanProperty("IsVisible", true);
        ws->addBooleanProperty("IsAnIgnoreNode", false);
        ws->addIntegerProperty("WorkspaceIndex", workspaceIndex);
        ws->setActiveWorkspace(active ? 1 : 0);
        session()->addWorkSpace(ws);
        return ws;
    }

    // An occurrence of a new item named `name` under `parent` (the workspace
    // or an occurrence of it).
    QELAbsoluteOccurrence* occurrence(QELWorkSpace* ws, QELComponent* parent, const std::string& name, int index) {
        QELItem* shown = item(name);
        auto* occ = QELModelHeap::adopt(new QELAbsoluteOccurrence(("u-" + name).c_str(), name.c_str(), parent));
        ws->linkAbsoluteOccurrence(occ);
        if (parent == ws) occ->linkWorkSpace(ws);
        occ->linkItem(shown);
        shown->linkAbsOcc(occ);
        occ->addIntegerProperty("IndiceOfAbsolute", index);
        auto* relative = QELModelHeap::adopt(new QELRelativeOccurrence(("REL-" + name).c_str(), name.c_str()));
        relative->linkItem(shown);
        shown->linkRelativeOccurrence(relative);
        relative->addAbsoluteOccurrence(occ);
        occ->linkRelativeOccurrence(relative);
        return occ;
    }

    static CV5CAAQELDocument* documentOf(QELItem* item) {
        TYPMapCATUnicodeStringPVoid* documents = item ? item->getChildrenComponents(QELLinkType::ITM_DOC) : nullptr;
        return documents ? static_cast<CV5CAAQELDocument*>(documents->first()) : nullptr;
    }

private:
    static std::string extensionOf(EnumDocumentType type) {
        switch (type) {
        case EnumDocumentType_Product: return ".CATProduct";
        case EnumDocumentType_Part: return ".CATPart";
        case EnumDocumentType_Drawing: return ".CATDrawing";
        case EnumDocumentType_DesignTable: return ".xls";
        case EnumDocumentType_Catalog: return ".catalog";
        default: return ".model";
        }
    }
};

} // namespace writertest

#endif
