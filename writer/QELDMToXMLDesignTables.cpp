// Design tables: the description of each design-table document, chosen by the
// running process, and the summaries an owner document carries of its design
// tables.

#include <memory>

#include "ENVManager.h"
#include "JNLManager.h"
#include "PROCManager.h"
#include "QELDMToXML.h"
#include "QELElementNames.h"
#include "QELLink.h"
#include "QELLookups.h"

using namespace QELLookups;

// Which rows of the design-table block a process writes, all off until a
// process turns them on. Part_Number, DST_UID, the version or UID branch,
// File_Name, File_Version and Check_Action are always written.
struct QELDMToXML::DesignTableRows {
    enum ModifiedFlag { NoModifiedFlag, FromProperty, AlreadyWritten };

    bool pointerAddress = false;
    bool parents = false;
    bool type = false;
    bool dateLastModification = false; // with DST_Version, for a never-stored dataset
    bool fixedMAJ = false;             // MAJ 2 instead of the property
    ModifiedFlag modifiedFlag = NoModifiedFlag;
    bool isDocSelected = false;
    const char* mappingProperty = nullptr; // null: no mapping attributes
    bool externalFiles = false;
    bool info = false;
};

namespace {

const char* const kDesignTableLink = "catdesigntable";

QELItem* designTableItem(const QELDocument* designTable) {
    TYPMapCATUnicodeStringPVoid* items = designTable->getLinkedItems("LINKNAME_PARENT");
    return items ? static_cast<QELItem*>(items->first()) : nullptr;
}

QELDocument* linkedDesignTable(const QELLink* link) {
    QELComponent* secondary = link ? link->get_Secondary() : nullptr;
    return secondary && secondary->isAKindOf("QELDOCUMENT_CLASSNAME") ? static_cast<QELDocument*>(secondary)
                                                                       : nullptr;
}

// The attribute names the PDM side takes from a design table's mapping, and
// the name each is written under.
bool keptMappingName(const CATUnicodeString& name, CATUnicodeString& written) {
    const CATUnicodeString prefix = ENVManager::getOemPrefix() + "_";
    if (name == "PartNumber") {
        written = "partNumber";
        return true;
    }
    static const char* const kPlain[] = {"filename", "Name"};
    static const char* const kPrefixed[] = {"filePath", "dlname", "partNumber", "filename", "Name"};
    bool kept = false;
    for (const char* plain : kPlain) kept = kept || name == plain;
    for (const char* prefixed : kPrefixed) kept = kept || name == prefix + prefixed;
    if (kept) written = name;
    return kept;
}

// The pieces of a design-table map: "!" separates them, and a run of "!" is
// one separator, so no piece is ever empty.
TYPVectorCATUnicodeString splitMap(const CATUnicodeString& map) {
    TYPVectorCATUnicodeString pieces;
    const int length = map.GetLengthInChar();
    for (int start = 0; start < length;) {
        int end = map.SearchSubString("!", start);
        if (end < 0) end = length;
        if (end > start) pieces.push_back(map.SubString(start, end - start));
        start = end + 1;
    }
    return pieces;
}

} // namespace

void QELDMToXML::writeDescDesignTable(QELDocument* designTable, QELSession* session, QELDocument* hostDoc,
                                      unsigned char flag) {
    if (!designTable) {
        JNLManager::writeMsg("QELDMToXML::writeDescDesignTable: ip_design_table is NULL");
        return;
    }
    QELItem* item = designTableItem(designTable);
    QELFile* file = firstFile(designTable);
    if (!item || !file) return;

    QELItem* parentItem = nullptr;
    QELFile* parentFile = nullptr;
    CV5CAAQELDocument* owner = hostDocument(hostDoc);
    if (owner && (PROCManager::isCommandSaveAs() || PROCManager::isCommandCreateSpreadsheet() ||
                  PROCManager::isCommandImport())) {
        parentItem = owner->getDefaultItem();
        parentFile = owner->getDefaultFile();
    }

    const bool save =
        PROCManager::isCommandSave() || PROCManager::isCommandSaveAs() || PROCManager::isCommandSaveSelected();
    if (save && PROCManager::isPhasePhase1()) {
        writeDescDesignTableForSavePhase1(session, designTable, item, file, parentItem, parentFile, flag);
    } else if (save && PROCManager::isPhasePhase2()) {
        writeDescDesignTableForSavePhase2(session, designTable, item, file);
    } else if (PROCManager::isCommandCreateSpreadsheet()) {
        writeDescDesignTableForCreateSpreadSheet(session, designTable, item, file, parentItem, parentFile);
    } else if (PROCManager::isCommandImport()) {
        writeDescDesignTableForImport(session, designTable, item, file, parentItem, parentFile);
    } else if (PROCManager::isProcessStateDetailsFactory()) {
        writeDescDesignTableForStateDetails(session, designTable, item, file);
    } else if (PROCManager::isProcessLifeCycleFactory()) {
        writeDescDesignTableForLifeCycle(session, designTable, item, file);
    } else if (PROCManager::isProcessBRRSave()) {
        writeDescDesignTableForBRR(session, designTable, item, file);
    }
}

void QELDMToXML::writeDescDesignTableForSavePhase1(QELSession*, QELDocument* designTable, QELItem* item,
                                                   QELFile* file, QELItem* parentItem, QELFile* parentFile,
                                                   unsigned char flag) {
    DesignTableRows rows;
    rows.pointerAddress = rows.parents = rows.type = rows.dateLastModification = rows.info = true;
    rows.modifiedFlag = DesignTableRows::FromProperty;
    rows.mappingProperty = QELDocument::kMappingAttributes;
    if (flag) {
        // A design table shared by several owners is described in full only
        // the first time the export meets it.
        if (designTable->getBooleanProperty("IsAlreadyWritten")) {
            rows.modifiedFlag = DesignTableRows::AlreadyWritten;
            rows.mappingProperty = nullptr;
        } else {
            designTable->addBooleanProperty("IsAlreadyWritten", true);
        }
    }
    writeDesignTableBlock(rows, designTable, item, file, parentItem, parentFile);
}

void QELDMToXML::writeDescDesignTableForSavePhase2(QELSession*, QELDocument* designTable, QELItem*, QELFile*) {
    // Phase 2 only completes what phase 1 described.
    writeBaliseFileType(designTable, 1, designTable);
    writeOpenBalise(QELElement::Item_Info);
    writeExternalFiles(designTable);
    writeCloseBalise(QELElement::Item_Info);
    writeBaliseFileType(designTable, 2, designTable);
}

void QELDMToXML::writeDescDesignTableForCreateSpreadSheet(QELSession*, QELDocument* designTable, QELItem* item,
                                                          QELFile* file, QELItem* parentItem, QELFile* parentFile) {
    DesignTableRows rows;
    rows.parents = rows.type = rows.dateLastModification = rows.info = true;
    rows.modifiedFlag = DesignTableRows::FromProperty;
    rows.mappingProperty = QELDocument::kOEMMappingAttributes;
    writeDesignTableBlock(rows, designTable, item, file, parentItem, parentFile);
}

void QELDMToXML::writeDescDesignTableForImport(QELSession*, QELDocument* designTable, QELItem* item, QELFile* file,
                                               QELItem* parentItem, QELFile* parentFile) {
    DesignTableRows rows;
    rows.pointerAddress = rows.parents = rows.type = rows.dateLastModification = rows.info = true;
    rows.modifiedFlag = DesignTableRows::FromProperty;
    rows.mappingProperty = QELDocument::kOEMMappingAttributes;
    rows.externalFiles = true;
    writeDesignTableBlock(rows, designTable, item, file, parentItem, parentFile);
}

void QELDMToXML::writeDescDesignTableForStateDetails(QELSession*, QELDocument* designTable, QELItem* item,
                                                     QELFile* file) {
    DesignTableRows rows;
    rows.type = rows.dateLastModification = rows.fixedMAJ = true;
    rows.modifiedFlag = DesignTableRows::FromProperty;
    rows.mappingProperty = QELDocument::kMappingAttributes;
    rows.pointerAddress = ENVManager::isManageCatiaStatusInCatiaTree();
    rows.isDocSelected = PROCManager::isProcessStateDetails();
    writeDesignTableBlock(rows, designTable, item, file, nullptr, nullptr);
}

void QELDMToXML::writeDescDesignTableForLifeCycle(QELSession*, QELDocument* designTable, QELItem* item,
                                                  QELFile* file) {
    // Only what identifies the table: no type, no date, no modified state.
    writeDesignTableBlock(DesignTableRows(), designTable, item, file, nullptr, nullptr);
}

void QELDMToXML::writeDescDesignTableForBRR(QELSession*, QELDocument* designTable, QELItem* item, QELFile* file) {
    DesignTableRows rows;
    rows.pointerAddress = rows.dateLastModification = rows.info = true;
    rows.modifiedFlag = DesignTableRows::FromProperty;
    rows.mappingProperty = QELDocument::kOEMMappingAttributes;
    writeDesignTableBlock(rows, designTable, item, file, nullptr, nullptr);
}

void QELDMToXML::writeDesignTableBlock(const DesignTableRows& rows, QELDocument* designTable, QELItem* item,
                                       QELFile* file, QELItem* parentItem, QELFile* parentFile) {
    writeBaliseFileType(designTable, 1, designTable);
    writeOpenBalise(QELElement::Item_Info);
    if (rows.pointerAddress) writePointerAddress(designTable);
    if (rows.parents) {
        writeParentPartNumber(parentItem, 1);
        writeParentDocName(parentFile, 1);
    }
    writePartNumber(item, designTable);
    writeDatasetUID(designTable, designTable);
    if (rows.type) writeType(designTable, designTable);
    // "0" marks a dataset that was never stored: it has a version and a date
    // but no UIDs yet.
    if (designTable->getStringProperty("Dat_File_Version") == "0") {
        writeDatasetVersion(designTable);
        if (rows.dateLastModification) writeDateLastModification(designTable);
    } else {
        writeNamedRefUID(designTable, designTable);
        writeItemRevUID(item, designTable);
    }
    writeFileName(file, designTable);
    writeBalise(QELElement::File_Version, "DesignTable", "", 0);
    writeCheckAction(designTable);
    if (rows.fixedMAJ) {
        writeBalise(QELElement::MAJ, 2);
    } else {
        writeMAJ(designTable);
    }
    if (rows.modifiedFlag == DesignTableRows::FromProperty) writeModifiedFlag(designTable);
    if (rows.modifiedFlag == DesignTableRows::AlreadyWritten) writeBalise(QELElement::Modified_Flag, -1);
    if (rows.isDocSelected) writeIsDocSelected(designTable);
    if (rows.mappingProperty) writeDesignTableMappingAttribute(rows.mappingProperty, QELElement::Attribut, designTable);
    if (rows.externalFiles) writeExternalFiles(designTable);
    if (rows.info) writeDesignTableInfo(designTable);
    writeCloseBalise(QELElement::Item_Info);
    writeBaliseFileType(designTable, 2, designTable);
}

void QELDMToXML::writeDesignTableInfo(QELDocument* designTable) {
    if (!designTable) return;
    // Each array property and the element that lists it.
    static const char* const kArrays[][2] = {
        {"Sheet", QELElement::DT_Sheets}, {"Cfg", QELElement::DT_Cfgs}, {"CheckSum", QELElement::DT_CfgCksums}};
    for (const auto& array : kArrays) {
        if (const TYPVectorCATUnicodeString* values = designTable->getStringArrayProperty(array[0])) {
            writeAttributList(array[1], *values);
        }
    }
}

void QELDMToXML::writeDesignTableMappingAttribute(const CATUnicodeString& propertyName,
                                                  const CATUnicodeString& elementName, QELDocument* designTable) {
    const TYPVectorCATUnicodeString* pairs = designTable ? designTable->getDynamicProperty(propertyName) : nullptr;
    if (!pairs) return;
    TYPVectorCATUnicodeString kept;
    CATUnicodeString written;
    // A trailing name without its value is no pair and is left out.
    for (int i = 0; i + 1 < pairs->size(); i += 2) {
        if (!keptMappingName((*pairs)[i], written)) continue;
        kept.push_back(written);
        kept.push_back((*pairs)[i + 1]);
    }
    if (kept.empty()) return;
    writeOpenBalise(QELElement::Mapping_Attribut);
    // Counts strings, two per attribute, as the PDM side expects.
    writeBalise(QELElement::NBElements, kept.size());
    for (int i = 0; i < kept.size(); i += 2) {
        writeBalise(elementName, kept[i], "", 0);
        writeBalise(elementName, kept[i + 1], "", 1);
    }
    writeCloseBalise(QELElement::Mapping_Attribut);
}

void QELDMToXML::writeDescDesignTableFile(const char* elementName, QELDocument* owner) {
    std::unique_ptr<TYPVectorPQELLink> links(owner ? owner->getGRMDocumentLinksWhereUsedAsPrimary(kDesignTableLink)
                                                   : nullptr);
    if (!links || links->empty()) return;
    TYPVectorCATUnicodeString names;
    names.reserve(static_cast<size_t>(links->size()));
    for (const QELLink* link : *links) {
        const QELFile* file = firstFile(linkedDesignTable(link));
        names.push_back(file ? file->getStringProperty("File_Name") : CATUnicodeString());
    }
    writeAttributList(elementName, names);
}

void QELDMToXML::writeDescDesignTableSheets(const char* elementName, QELDocument* owner) {
    std::unique_ptr<TYPVectorPQELLink> links(owner ? owner->getGRMDocumentLinksWhereUsedAsPrimary(kDesignTableLink)
                                                   : nullptr);
    if (!links || links->empty()) return;
    writeOpenBalise(elementName);
    writeBalise(QELElement::NBElements, links->size());
    for (const QELLink* link : *links) writeBalise(QELElement::Attribut, link ? link->getIntegerProperty("Sheet") : -1);
    writeCloseBalise(elementName);
}

void QELDMToXML::writeDescDesignTableCfgs(const char* elementName, QELDocument* owner) {
    std::unique_ptr<TYPVectorPQELLink> links(owner ? owner->getGRMDocumentLinksWhereUsedAsPrimary(kDesignTableLink)
                                                   : nullptr);
    if (!links || links->empty()) return;
    writeOpenBalise(elementName);
    writeBalise(QELElement::NBElements, links->size());
    for (const QELLink* link : *links) writeBalise(QELElement::Attribut, link ? link->getIntegerProperty("Cfg") : -1);
    writeCloseBalise(elementName);
}

void QELDMToXML::writeDescDesignTableMap(const char* elementName, QELDocument* owner) {
    // Only a product maps its parameters onto its design tables.
    if (!owner || owner->getType() != EnumDocumentType_Product) return;
    std::unique_ptr<TYPVectorPQELLink> links(owner->getGRMDocumentLinksWhereUsedAsPrimary(kDesignTableLink));
    if (!links || links->empty()) return;
    writeOpenBalise(QELElement::DT_Maps);
    writeBalise(QELElement::NBElements, links->size());
    for (const QELLink* link : *links) {
        const TYPVectorCATUnicodeString pieces = splitMap(link ? link->getStringProperty("DTMap") : CATUnicodeString());
        writeOpenBalise(elementName);
        writeBalise(QELElement::NBElements, pieces.size());
        for (const CATUnicodeString& piece : pieces) {
            writeOpenBalise(QELElement::Attribut);
            writeValue(piece);
            writeCloseBalise(QELElement::Attribut);
        }
        writeCloseBalise(elementName);
    }
    writeCloseBalise(QELElement::DT_Maps);
}

void QELDMToXML::writeDescDesignTableName(const char* elementName, QELDocument* owner) {
    std::unique_ptr<TYPVectorPQELDocument> tables(owner ? owner->getLinkedDesignTables() : nullptr);
    if (!tables || tables->empty()) return;
    TYPVectorCATUnicodeString names;
    names.reserve(static_cast<size_t>(tables->size()));
    for (const QELDocument* table : *tables) {
        names.push_back(table ? table->getStringProperty("DesignTableName") : CATUnicodeString());
    }
    writeAttributList(elementName, names);
}
