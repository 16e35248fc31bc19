#ifndef QELDMToXMLDocumentsAccess_H
#define QELDMToXMLDocumentsAccess_H

// Access to the writer's document-block members for their tests, and what
// those tests share besides the writer's fixture and run: readers of the
// lines written, and a small assembly that makes nearly every element of a
// block appear.

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "QELDocument.h"
#include "QELElementNames.h"
#include "QELLinkType.h"
#include "WriterDriverSupport.h"
#include "CV5CAAQELAbsoluteOccurrence.h"
#include "CV5CAAQELAbsoluteView.h"
#include "CV5CAAQELDocument.h"
#include "CV5CAAQELItem.h"
#include "CV5CAAQELScene.h"
#include "CV5CAAQELSession.h"
#include "CV5CAAQELStacking.h"
#include "CV5CAAQELWorkSpace.h"
#include "EMHManager.h"
#include "ENVManager.h"
#include "JNLManager.h"
#include "PROCManager.h"
#include "QELDMToXML.h"
#include "QELFile.h"
#include "QELLink.h"
#include "QELModelHeap.h"
#include "QELRelativeOccurrence.h"
#include "QELSession.h"
#include "QELUtilities.h"

struct QELDMToXMLDocumentsAccess {
    static void writeDesc(QELDMToXML& w, QELComponent* c, QELDocument* catalog = nullptr,
                          unsigned char flattening = 0) {
        w.writeDesc(c, QELSession::getInstance(), catalog, flattening);
    }
    static long writeDescForUpdateStatus(QELDMToXML& w, TYPVectorPCV5CAAQELDocument* documents) {
        return w.writeDescForUpdateStatus(documents);
    }

    // Leaf writers, each under its own name.
    static void writeItemID(QELDMToXML& w, QELItem* i, QELComponent* c) { w.writeItemID(i, c); }
    static void writeItemRevUID(QELDMToXML& w, QELItem* i, QELComponent* c) { w.writeItemRevUID(i, c); }
    static void writePartNumber(QELDMToXML& w, QELItem* i, QELComponent* c) { w.writePartNumber(i, c); }
    static void writeDatasetUID(QELDMToXML& w, QELDocument* d, QELComponent* c) { w.writeDatasetUID(d, c); }
    static void writeNamedRefUID(QELDMToXML& w, QELDocument* d, QELComponent* c) { w.writeNamedRefUID(d, c); }
    static void writeDocUUID(QELDMToXML& w, QELDocument* d) { w.writeDocUUID(d); }
    static void writeFileName(QELDMToXML& w, QELFile* f, QELComponent* c) { w.writeFileName(f, c); }
    static void writeInstanceName(QELDMToXML& w, QELComponent* c) { w.writeInstanceName(c); }
    static void writeParentInstanceName(QELDMToXML& w, QELComponent* p, unsigned char a) {
        w.writeParentInstanceName(p, a);
    }
    static void writeParentDatasetUID(QELDMToXML& w, QELDocument* d, unsigned char a) {
        w.writeParentDatasetUID(d, a);
    }
    static void writeParentDocName(QELDMToXML& w, QELFile* f, unsigned char a) { w.writeParentDocName(f, a); }
    static void writeParentItemID(QELDMToXML& w, QELItem* i, unsigned char a) { w.writeParentItemID(i, a); }
    static void writeParentItemRevID(QELDMToXML& w, QELItem* i, unsigned char a) { w.writeParentItemRevID(i, a); }
    static void writeParentComp(QELDMToXML& w, QELComponent* c, unsigned char a) { w.writeParentComp(c, a); }
    static void writeType(QELDMToXML& w, QELComponent* c, QELDocument* d) { w.writeType(c, d); }

    // Lists.
    static long writeMappingAttributes(QELDMToXML& w, QELComponent* c, QELDocument* d) {
        return w.writeMappingAttributes(c, d);
    }
    static void writeDynamicAttributes(QELDMToXML& w, TYPVectorCATUnicodeString* values, QELComponent* c) {
        w.writeDynamicAttributes(QELElement::Mapping_Attribut, values, QELElement::Attribut, c, nullptr);
    }
    static void writeMappingAttributesForDrawingOnImport(QELDMToXML& w, QELComponent* c, QELDocument* d) {
        w.writeMappingAttributesForDrawingOnImport(c, d);
    }
    static void writeDynamicAttributesForImportCompCatalog(QELDMToXML& w, QELComponent* c, QELDocument* d) {
        w.writeDynamicAttributesForImportCompCatalog(QELElement::Mapping_Attribut, c, d);
    }
    static void writeSecondariesAttributes(QELDMToXML& w, QELDocument* d) {
        w.writeSecondariesAttributes(QELElement::secondaries, QELElement::secondary, d);
    }
    static void writeLinkedDocuments(QELDMToXML& w, QELComponent* c, QELDocument* d, unsigned char withUuid) {
        w.writeLinkedDocuments(c, d, withUuid);
    }
    static void writeLinkedDocumentsForSpreadSheet(QELDMToXML& w, QELComponent* c, QELDocument* d) {
        w.writeLinkedDocumentsForSpreadSheet(c, d);
    }
    static void writeSheetsForDrawing(QELDMToXML& w, QELDocument* d) { w.writeSheetsForDrawing(d); }
};

namespace documents_test {

typedef std::vector<std::string> Lines;

using DocumentsTest = writertest::WriterTest;
using writertest::countOf;

// Runs `call` on a writer over a fresh file and answers the file's lines
// without their line ends. Fails the test if a line does not end with CR LF.
inline Lines written(const std::function<void(QELDMToXML&)>& call) { return writertest::describe(call); }

inline bool isOpening(const std::string& line) {
    return line.size() > 2 && line[0] == '<' && line[1] != '/' && line.back() == '>';
}
inline bool isClosing(const std::string& line) { return line.size() > 3 && line.compare(0, 2, "</") == 0; }
inline std::string nameOf(const std::string& tag) {
    const size_t from = tag[1] == '/' ? 2 : 1;
    return tag.substr(from, tag.size() - 1 - from);
}

// The names of the direct children of every `parent` element, one list per
// element, in file order.
inline std::vector<Lines> childrenOf(const Lines& lines, const std::string& parent) {
    std::vector<Lines> result;
    Lines open;
    for (const std::string& line : lines) {
        if (isOpening(line)) {
            if (!open.empty() && open.back() == parent) result.back().push_back(nameOf(line));
            open.push_back(nameOf(line));
            if (open.back() == parent) result.emplace_back();
        } else if (isClosing(line) && !open.empty()) {
            open.pop_back();
        }
    }
    return result;
}

// The names of the elements at the top of the file.
inline Lines topElements(const Lines& lines) {
    Lines names;
    int depth = 0;
    for (const std::string& line : lines) {
        if (isOpening(line)) {
            if (depth++ == 0) names.push_back(nameOf(line));
        } else if (isClosing(line)) {
            --depth;
        }
    }
    return names;
}

// The value line of the first leaf `name`, or "<absent>".
inline std::string valueOf(const Lines& lines, const std::string& name) {
    for (size_t i = 0; i + 2 < lines.size(); ++i) {
        if (lines[i] == "<" + name + ">" && lines[i + 2] == "</" + name + ">") return lines[i + 1];
    }
    return "<absent>";
}

// The three lines of a leaf element.
inline Lines leafLines(const std::string& name, const std::string& value) {
    return {"<" + name + ">", value, "</" + name + ">"};
}

// The value lines of every leaf `name`, in file order.
inline Lines valuesOf(const Lines& lines, const std::string& name) {
    Lines values;
    for (size_t i = 0; i + 2 < lines.size(); ++i) {
        if (lines[i] == "<" + name + ">" && lines[i + 2] == "</" + name + ">") values.push_back(lines[i + 1]);
    }
    return values;
}

inline void setPairs(QELComponent* c, const char* property, std::initializer_list<const char*> strings) {
    std::vector<const char*> s(strings);
    for (size_t i = 0; i + 1 < s.size(); i += 2) c->addDynamicProperty(property, s[i], s[i + 1], false);
}

inline CV5CAAQELItem* makeItem(const char* name, const char* partNumber) {
    auto* item = QELModelHeap::adopt(new CV5CAAQELItem(name));
    item->addStringProperty("Part_Number", partNumber);
    item->addStringProperty("Item_ID", name);
    item->addStringProperty("ItemRev_UID", std::string("REV-") + partNumber);
    QELSession::getInstance()->addItem(item);
    return item;
}

// A host document of `item` with its file, dataset and mapping.
inline CV5CAAQELDocument* makeDocument(CV5CAAQELItem* item, const char* fileName, EnumDocumentType type) {
    auto* doc = QELModelHeap::adopt(new CV5CAAQELDocument(fileName, type));
    QELSession::getInstance()->addDocument(doc);
    item->linkDocument(QELLinkType::LINKNAME_CHILD, doc);
    doc->linkItem(QELLinkType::LINKNAME_PARENT, item);
    doc->setDefaultItem(item);
    item->setItemDefaultDocument(doc);
    QELFile* file = doc->createFile(QELUtilities::getDocFilRefNameFromDocumentType(type), fileName);
    file->addStringProperty("File_Name", fileName);
    doc->setDefaultFile(file);
    doc->addStringProperty("DST_UID", std::string("DST-") + fileName);
    doc->addStringProperty("NamedRef_UID", std::string("NR-") + fileName);
    doc->addStringProperty("Dat_File_Version", "1");
    doc->addStringProperty("catia_uuid", std::string("uuid-") + fileName);
    setPairs(doc, QELDocument::kMappingAttributes, {"PartNumber", "P", "Colour", "red"});
    return doc;
}

inline QELRelativeOccurrence* makeRelative(QELAbsoluteOccurrence* occ, QELItem* item, const char* uid) {
    auto* relative = QELModelHeap::adopt(new QELRelativeOccurrence(uid, occ->getInstanceName()));
    relative->linkItem(item);
    relative->addAbsoluteOccurrence(occ);
    occ->linkRelativeOccurrence(relative);
    const double placement[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 5, 0, 0, 1};
    relative->addMatrixProperty("RelativeMatrix", placement);
    return relative;
}

inline CV5CAAQELAbsoluteOccurrence* makeOccurrence(CV5CAAQELWorkSpace* ws, QELComponent* parent, QELItem* item,
                                                   const char* uid, const char* instance) {
    auto* occ = QELModelHeap::adopt(new CV5CAAQELAbsoluteOccurrence(uid, instance, parent));
    ws->linkAbsoluteOccurrence(occ);
    if (parent == ws) occ->linkWorkSpace(ws);
    occ->linkItem(item);
    item->linkAbsOcc(occ);
    occ->addIntegerProperty("Modified_Flag", 1);
    occ->addIntegerProperty("MAJ", 0);
    occ->addIntegerProperty("Check_Action", 0);
    occ->addIntegerProperty("Matrix_Action", 1);
    occ->addIntegerProperty("Mask", 3);
    makeRelative(occ, item, (std::string("REL-") + uid).c_str());
    return occ;
}

// Workspace Root.CATProduct, its occurrence Sub.1 (a product) and under it
// Part.1, whose part carries a design table, a secondary, an alternate shape,
// an external file, a stacking, item links, a view and a scene, so that every
// element of Part.1's block can appear.
struct ProcessModel {
    CV5CAAQELWorkSpace* ws = nullptr;
    CV5CAAQELItem *rootItem = nullptr, *subItem = nullptr, *partItem = nullptr;
    CV5CAAQELDocument *rootDoc = nullptr, *subDoc = nullptr, *partDoc = nullptr;
    CV5CAAQELAbsoluteOccurrence *sub = nullptr, *part = nullptr;
    QELDocument* secondary = nullptr;

    static ProcessModel build() {
        ProcessModel m;
        m.rootItem = makeItem("Root", "ROOT-1");
        m.subItem = makeItem("Sub", "SUB-1");
        m.partItem = makeItem("Part", "PART-1");
        m.rootDoc = makeDocument(m.rootItem, "Root.CATProduct", EnumDocumentType_Product);
        m.subDoc = makeDocument(m.subItem, "Sub.CATProduct", EnumDocumentType_Product);
        m.partDoc = makeDocument(m.partItem, "Part.CATPart", EnumDocumentType_Part);

        m.ws = QELModelHeap::adopt(new CV5CAAQELWorkSpace());
        m.ws->set_Name("Root.CATProduct");
        m.ws->linkDocument(m.rootDoc);
        m.ws->linkItem(m.rootItem);
        m.ws->addBooleanProperty("IsVisible", true);
        m.ws->addIntegerProperty("FileType", EnumDocumentType_Product);
        m.ws->addIntegerProperty("Modified_Flag", 1);
        m.ws->addIntegerProperty("Mask", 1);
        m.ws->setActiveWorkspace(1);
        CATListValCATUnicodeString configuration;
        configuration.Append("Rule=Latest");
        m.ws->setConfiguration(configuration);
        QELSession::getInstance()->addWorkSpace(m.ws);
        m.rootDoc->addSceneName("Exploded");

        m.sub = makeOccurrence(m.ws, m.ws, m.subItem, "u-sub", "Sub.1");
        m.part = makeOccurrence(m.ws, m.sub, m.partItem, "u-part", "Part.1");
        m.part->addStringProperty("Inst_Description", "the part");
        m.part->addStringArrayProperty("VtSkipped", "Skipped.1");
        setPairs(m.part, "AnalysisResult", {"/res/Part.res", "r"});
        setPairs(m.part, "ActivateShapes", {"Envelope", "1"});
        setPairs(m.part, "DefaultShapeForCache", {"Envelope", "0"});
        setPairs(m.part->getLinkedRelativeOccurrence(), "Mapping_Inst_CATIA", {"Torque", "12"});
        m.part->addSceneContext(QELModelHeap::adopt(new CV5CAAQELScene("Exploded", "FALSE", "1 0 0")));
        addHiddenView(m.part, m.rootItem);

        m.part->addStringProperty("Type", "Cgr");
        m.partItem->addStringProperty("Old_Model_Name", "OLD-PART");
        m.partItem->addStringProperty("Nomenclature", "Bolt");
        QELFile* file = m.partDoc->getDefaultFile();
        file->addStringProperty("Old_File_Name", "Old.CATPart");
        file->addStringProperty("fullPathName", "/work/Part.CATPart");
        m.partDoc->addStringProperty("BVR_Date", "2024-05-01");
        m.partDoc->addStringProperty("DST_Version", "A.1");
        m.partDoc->addStringProperty("Date_Last_Modification", "2024-05-02");
        setPairs(m.partDoc, QELDocument::kOEMMappingAttributes, {"ACME_dlname", "part"});
        setPairs(m.partDoc, QELDocument::kCATIAMappingAttributes, {"Material", "Steel"});
        m.partDoc->addBooleanProperty("LinkedDocsFromDATFile", true);
        m.partDoc->addGRMItemLink("VT_CATIAV5_MML", m.rootItem);
        QELDocument* table = m.partDoc->addDesignTable("Sizes", "Sizes.xls");
        table->setType(EnumDocumentType_DesignTable);
        m.partDoc->addGRMDocumentLink("catdesigntable", table);
        m.partDoc->addAlternateShapeRepresentation("Envelope", "Part_envelope.CATPart");
        m.secondary = QELModelHeap::adopt(new QELDocument("Part.model", EnumDocumentType_Model));
        m.secondary->addStringProperty("spfilenametodisplay", "Part.model");
        m.secondary->addBooleanProperty("IsSecondary", true);
        m.partDoc->addGRMDocumentLink("CATIA_secondary_Link_type", m.secondary);
        auto* external = QELModelHeap::adopt(new QELDocument("Notes.txt", EnumDocumentType_Unset));
        external->addStringProperty("Doc_Old_File_Name", "Notes.txt");
        m.partDoc->addExternalFileDocument(
            QELModelHeap::adopt(new QELLink(19, "CATIA_external_Link_type", m.partDoc, external)));
        m.partDoc->addStacking(QELModelHeap::adopt(new CV5CAAQELStacking("Stacking.1")));
        return m;
    }

    // A view of `occ` from `context` that hides it, with a placement.
    static void addHiddenView(QELAbsoluteOccurrence* occ, QELItem* context) {
        CATUnicodeString signature;
        occ->buildAbsoluteViewSignature(context, signature);
        auto* view = QELModelHeap::adopt(new CV5CAAQELAbsoluteView(signature));
        view->setVisible(0);
        view->linkItem(context);
        context->linkAbsoluteView(view);
        occ->linkAbsoluteView(view);
        const double matrix[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 1, 2, 3, 1};
        view->addMatrixProperty("AbsoluteMatrix", matrix);
    }

    // Turns on every optional part of a block that a setting governs.
    static void manageEverything() {
        PROCManager::setManageScenes(true);
        PROCManager::setManageHideShow(true);
        PROCManager::setManageFlexibility(true);
        ENVManager::setIsSaveScenesManagedOnSave(true);
        ENVManager::setIsSaveHideShowManagedOnImport(true);
        ENVManager::setManageOccmappVtproperties(true);
        CV5CAAQELSession::getCATIASessionInstance()->setAsManageFlexibility(1);
        CV5CAAQELSession::getCATIASessionInstance()->setAsManageHideShow(1);
    }
};

} // namespace documents_test

#endif
