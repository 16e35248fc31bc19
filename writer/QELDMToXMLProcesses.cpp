// One block of the description per node: the objects a node is described
// from, the writer of the running process, and the element order of each
// process. The orders are what the PDM side's readers expect, element by
// element; each writer below lists them in full so that an order can be read
// (and compared with the reader's) in one place.

#include <memory>

#include "CV5CAAQELDocument.h"
#include "CV5CAAQELItem.h"
#include "EMHManager.h"
#include "JNLManager.h"
#include "PROCManager.h"
#include "QELAbsoluteOccurrence.h"
#include "QELDMToXML.h"
#include "QELDocument.h"
#include "QELElementNames.h"
#include "QELFile.h"
#include "QELItem.h"
#include "QELLink.h"
#include "QELLookups.h"
#include "QELRelativeOccurrence.h"
#include "QELSession.h"
#include "QELStatus.h"
#include "QELUtilities.h"
#include "QELWorkSpace.h"

using QELLookups::firstDocument;
using QELLookups::firstFile;
using QELLookups::hostDocument;
using QELLookups::hostItem;
using QELLookups::isBroken;

namespace {


bool isSaveCommand() {
    return PROCManager::isCommandSave() || PROCManager::isCommandSaveAs() || PROCManager::isCommandSaveSelected();
}

QELAbsoluteOccurrence* asOccurrence(QELComponent* component) {
    return component && component->isAbsolute() ? static_cast<QELAbsoluteOccurrence*>(component) : nullptr;
}

QELWorkSpace* asWorkSpace(QELComponent* component) {
    return component && component->isWorkSpace() ? static_cast<QELWorkSpace*>(component) : nullptr;
}

QELItem* asItem(QELComponent* component) {
    return component && component->isAKindOf("QELITEM_CLASSNAME") ? static_cast<QELItem*>(component) : nullptr;
}

// What one block is written from; none of it is owned here.
struct BlockObjects {
    unsigned char isAbsolute = 0;
    QELItem* item = nullptr;
    QELDocument* document = nullptr;
    QELFile* file = nullptr;
    QELRelativeOccurrence* relative = nullptr;
    QELComponent* parent = nullptr;
    QELItem* parentItem = nullptr;
    QELDocument* parentDocument = nullptr;
    QELFile* parentFile = nullptr;
};

// An occurrence is described only with everything it stands on: the PDM side
// cannot place an instance without its own item, document and file and
// those of its parent.
bool gatherForOccurrence(QELAbsoluteOccurrence* occurrence, BlockObjects& o) {
    o.isAbsolute = 1;
    o.item = occurrence->getLinkedItem();
    o.document = firstDocument(o.item);
    o.file = firstFile(o.document);
    o.relative = occurrence->getLinkedRelativeOccurrence();
    if (QELAbsoluteOccurrence* parent = occurrence->getLinkedParentAbsoluteOccurrence()) {
        o.parent = parent;
        o.parentItem = parent->getLinkedItem();
        o.parentDocument = firstDocument(o.parentItem);
    } else if (QELWorkSpace* workspace = occurrence->getLinkedWorkSpace()) {
        o.parent = workspace;
        o.parentItem = workspace->getItem();
        o.parentDocument = workspace->getLinkedDocument();
    }
    o.parentFile = firstFile(o.parentDocument);
    return o.item && o.document && o.file && o.relative && o.parent && o.parentItem && o.parentDocument &&
           o.parentFile;
}

// A workspace has no parent, except in catalog processes, where the catalog
// document that holds it stands in for one.
bool gatherForWorkSpace(QELWorkSpace* workspace, QELDocument* catalogDocument, BlockObjects& o) {
    o.item = workspace->getItem();
    o.document = workspace->getLinkedDocument();
    o.file = workspace->getFile();
    if (PROCManager::manageCatalog()) {
        if (CV5CAAQELDocument* catalog = hostDocument(catalogDocument)) {
            o.parentItem = catalog->getDefaultItem();
            o.parentFile = catalog->getDefaultFile();
        }
    }
    return o.item && o.document && o.file;
}

// A component is a catalog component when the item behind its document in the
// host says so (or, for a document the host does not hold, the block's item).
bool isCatalogComponent(QELItem* item, QELDocument* document) {
    CV5CAAQELDocument* host = hostDocument(document);
    CV5CAAQELItem* owner = hostItem(host ? host->getDefaultItem() : nullptr);
    if (!owner) owner = hostItem(item);
    return owner && owner->isCatalogComp();
}

} // namespace

// ---- dispatch ----------------------------------------------------------------

void QELDMToXML::writeDesc(QELComponent* component, QELSession* session, QELDocument* catalogDocument,
                           unsigned char flattening) {
    BlockObjects o;
    if (QELAbsoluteOccurrence* occurrence = asOccurrence(component)) {
        if (!gatherForOccurrence(occurrence, o)) return;
    } else if (QELWorkSpace* workspace = asWorkSpace(component)) {
        if (!gatherForWorkSpace(workspace, catalogDocument, o)) return;
    } else {
        return;
    }

    const bool save = isSaveCommand();
    if (save && PROCManager::isPhasePhase1()) {
        writeDescForSavePhase1(o.isAbsolute, session, component, o.item, o.document, o.file, o.relative, o.parent,
                               o.parentItem, o.parentDocument, o.parentFile, flattening);
    } else if (save && PROCManager::isPhasePhase2()) {
        // Phase 2 only completes the blocks of phase 1, which named the item,
        // the file and the parents already.
        writeDescForSavePhase2(o.isAbsolute, session, component, nullptr, o.document, nullptr, o.relative, nullptr,
                               nullptr, nullptr, nullptr);
    } else if (PROCManager::isCommandCreateSpreadsheet()) {
        writeDescForCreateSpreadSheet(o.isAbsolute, session, component, o.item, o.document, o.file, o.relative,
                                      o.parent, o.parentItem, o.parentDocument, o.parentFile, flattening);
    } else if (PROCManager::isCommandImport()) {
        writeDescForImport(o.isAbsolute, session, component, o.item, o.document, o.file, o.relative, o.parent,
                           o.parentItem, o.parentDocument, o.parentFile, flattening);
    } else if (PROCManager::isProcessStateDetailsFactory()) {
        writeDescForStateDetails(o.isAbsolute, session, component, o.item, o.document, o.file);
    } else if (PROCManager::isProcessLifeCycleFactory()) {
        writeDescForLifeCycle(o.isAbsolute, session, component, o.item, o.document, o.file);
    } else if (PROCManager::isProcessBRRSave()) {
        writeDescForBRR(o.isAbsolute, session, component, o.item, o.document, o.file, o.relative, o.parent,
                        o.parentItem, o.parentDocument, o.parentFile);
    } else if (PROCManager::isCommandSynchronizeActiveShapes()) {
        // Shapes are synchronised document by document: every block is
        // complete, whatever the session flattens.
        writeDescForSavePhase1(o.isAbsolute, session, component, o.item, o.document, o.file, o.relative, o.parent,
                               o.parentItem, o.parentDocument, o.parentFile, 0);
    }
}

// ---- shared pieces -------------------------------------------------------------

int QELDMToXML::flatteningModifiedFlag(QELSession* session, QELComponent* component, QELItem* item,
                                       QELDocument* document, unsigned char flattening, bool& writeMapping,
                                       QELComponent*& mappingComponent) {
    const int own = component ? component->getIntegerProperty("Modified_Flag") : -1;
    writeMapping = true;
    mappingComponent = component;
    if (!flattening || !document) return own;

    // A flattened document is shown by many occurrences; the PDM side gets
    // its state and attributes once, from the first block that names it.
    if (document->getBooleanProperty("IsAlreadyWritten")) {
        writeMapping = false;
        return -1;
    }
    if (isBroken(component)) return own;

    int value = own;
    if (own == -1) {
        // This occurrence was not modified, but the document may have been
        // through another view of it: its own workspace, or else the
        // occurrence the host created first for the item.
        mappingComponent = nullptr;
        if (QELWorkSpace* workspace = session ? session->getWorkSpace(document->get_Name()) : nullptr) {
            value = workspace->getIntegerProperty("Modified_Flag");
        } else if (CV5CAAQELItem* host = hostItem(item)) {
            if (QELAbsoluteOccurrence* first = host->getFirstCreatedAbsoluteOccurrence())
                value = first->getIntegerProperty("Modified_Flag");
        }
    }
    document->addBooleanProperty("IsAlreadyWritten", true);
    return value;
}

void QELDMToXML::writeVersionOrNamedRef(QELDocument* document, QELComponent* component, bool dateFirst) {
    // "0": the dataset was never stored, so it has no named reference yet.
    if (document && document->getStringProperty("Dat_File_Version") == "0") {
        if (dateFirst) writeDateLastModification(document);
        writeDatasetVersion(document);
        if (!dateFirst) writeDateLastModification(document);
    } else {
        writeNamedRefUID(document, component);
    }
}

void QELDMToXML::writeDesignTableSummaries(QELComponent* component, QELDocument* document) {
    // A "COMP" is described by its components' documents, not its own.
    if (component && component->getStringProperty("Type") == "COMP") return;
    writeDescDesignTableFile(QELElement::DT_Files, document);
    writeDescDesignTableSheets(QELElement::DT_Sheets, document);
    writeDescDesignTableCfgs(QELElement::DT_Cfgs, document);
    writeDescDesignTableMap(QELElement::DT_Map, document);
}

// ---- save, phase 1 (and synchronise active shapes) -----------------------------

void QELDMToXML::writeDescForSavePhase1(unsigned char isAbsolute, QELSession* session, QELComponent* component,
                                        QELItem* item, QELDocument* document, QELFile* file,
                                        QELRelativeOccurrence* relative, QELComponent* parent, QELItem* parentItem,
                                        QELDocument* parentDocument, QELFile* parentFile,
                                        unsigned char flattening) {
    bool writeMapping = true;
    QELComponent* mappingComponent = component;
    const int modified =
        flatteningModifiedFlag(session, component, item, document, flattening, writeMapping, mappingComponent);

    writeBaliseFileType(document, 1, component);
    writeOpenBalise(QELElement::Item_Info);
    writePointerAddress(component);
    writeInstanceName(component);
    writeOCCUID(component);
    writeInstanceDescription(component);
    writeParentPartNumber(parentItem, isAbsolute);
    writeParentInstanceName(parent, isAbsolute);
    writeParentDocName(parentFile, isAbsolute);
    writeParentDatasetUID(parentDocument, isAbsolute);
    writeParentItemRevUID(parentItem);
    writeParentComp(component, isAbsolute);
    writeRelativeMatrix(relative, isAbsolute);
    writeMatrixAction(component, isAbsolute);
    writePartNumber(item, component);
    writeDatasetUID(document, component);
    writeType(component, document);
    writeItemRevUID(item, component);
    writeVersionOrNamedRef(document, component, false);
    writeOldModelName(item);
    writeBVRDate(document);
    writeNomenclature(item);
    writeFileName(file, component);
    writeOldFileName(file);
    // A broken icon's file was not opened, so its version is not known.
    if (!isBroken(component)) writeFileVersion(file);
    writeCheckAction(component);
    writeMAJ(component);
    writeBalise(QELElement::Modified_Flag, modified);
    writeDocUUID(document);
    writeScenes(component, document);
    if (writeMapping) writeMappingAttributes(mappingComponent, document);
    writeSheetsForDrawing(document);
    writeAnalysisFiles(component);
    writeSkippedOccList(component);
    writeLinkedDocuments(component, document, 1);
    writeDesignTableSummaries(component, document);
    writeSecondariesAttributes(QELElement::secondaries, QELElement::secondary, document);
    writeShape(document, component);
    writeMask(component);
    writeCloseBalise(QELElement::Item_Info);
    // The workspace's configuration belongs to the workspace, not to its
    // root document's block.
    if (QELWorkSpace* workspace = isAbsolute ? nullptr : asWorkSpace(component)) writeConfiguration(workspace);
    writeBaliseFileType(document, 2, component);
}

// ---- save, phase 2 ---------------------------------------------------------------

void QELDMToXML::writeDescForSavePhase2(unsigned char isAbsolute, QELSession* /*session*/,
                                        QELComponent* component, QELItem* /*item*/, QELDocument* document,
                                        QELFile* /*file*/, QELRelativeOccurrence* relative,
                                        QELComponent* /*parent*/, QELItem* /*parentItem*/,
                                        QELDocument* /*parentDocument*/, QELFile* /*parentFile*/) {
    QELAbsoluteOccurrence* occurrence = asOccurrence(component);
    writeBaliseFileType(document, 1, component);
    writeOpenBalise(QELElement::Item_Info);
    writePointerAddress(component);
    writeActiveShape(component);
    writeDefaultShape(component);
    writeAbsoluteMatrix(occurrence, isAbsolute);
    writeVisibility(occurrence);
    writeExternalFiles(document);
    writeScenesOverrides(occurrence);
    writeMappingInst(relative);
    writeComposites(document, component);
    writeCloseBalise(QELElement::Item_Info);
    writeBaliseFileType(document, 2, component);
}

// ---- import --------------------------------------------------------------------

void QELDMToXML::writeDescForImport(unsigned char isAbsolute, QELSession* session, QELComponent* component,
                                    QELItem* item, QELDocument* document, QELFile* file,
                                    QELRelativeOccurrence* relative, QELComponent* parent, QELItem* parentItem,
                                    QELDocument* parentDocument, QELFile* parentFile, unsigned char flattening) {
    bool writeMapping = true;
    QELComponent* mappingComponent = component;
    const int modified =
        flatteningModifiedFlag(session, component, item, document, flattening, writeMapping, mappingComponent);
    QELAbsoluteOccurrence* occurrence = asOccurrence(component);

    writeBaliseFileType(document, 1, component);
    writeOpenBalise(QELElement::Item_Info);
    writePointerAddress(component);
    writeInstanceName(component);
    writeOCCUID(component);
    writeInstanceDescription(component);
    writeParentPartNumber(parentItem, isAbsolute);
    writeParentInstanceName(parent, isAbsolute);
    writeParentDocName(parentFile, isAbsolute);
    writeParentDatasetUID(parentDocument, isAbsolute);
    writeParentItemRevUID(parentItem);
    writeParentComp(component, isAbsolute);
    writeRelativeMatrix(relative, isAbsolute);
    writeMatrixAction(component, isAbsolute);
    writePartNumber(item, component);
    writeDatasetUID(document, component);
    writeType(component, document);
    writeVersionOrNamedRef(document, component, true);
    writeItemRevUID(item, component);
    writeOldModelName(item);
    writeBVRDate(document);
    writeNomenclature(item);
    writeFileName(file, component);
    writeOldFileName(file);
    writeFileVersion(file);
    writeCheckAction(component);
    writeMAJ(component);
    writeBalise(QELElement::Modified_Flag, modified);
    writeDocUUID(document);
    if (writeMapping) {
        if (isCatalogComponent(item, document))
            writeDynamicAttributesForImportCompCatalog(QELElement::Mapping_Attribut, mappingComponent, document);
        else if (document && document->getType() == EnumDocumentType_Drawing)
            writeMappingAttributesForDrawingOnImport(mappingComponent, document);
        else
            writeMappingAttributes(mappingComponent, document);
    }
    writeMappingInst(relative);
    writeSheetsForDrawing(document);
    writeAnalysisFiles(component);
    writeSkippedOccList(component);
    writeLinkedDocuments(component, document, 1);
    writeDesignTableSummaries(component, document);
    writeShape(document, component);
    writeActiveShape(component);
    writeDefaultShape(component);
    writeAbsoluteMatrix(occurrence, isAbsolute);
    writeVisibility(occurrence);
    writeScenes(component, document);
    writeScenesOverrides(occurrence);
    writeSecondariesAttributes(QELElement::secondaries, QELElement::secondary, document);
    writeExternalFiles(document);
    writeComposites(document, component);
    writeCloseBalise(QELElement::Item_Info);
    writeBaliseFileType(document, 2, component);
}

// ---- spreadsheet ---------------------------------------------------------------

// The spreadsheet is a listing, not a transaction: nothing in it points back
// into the session, so there is no POINTER_ADDRESS.
void QELDMToXML::writeDescForCreateSpreadSheet(unsigned char isAbsolute, QELSession* session,
                                               QELComponent* component, QELItem* item, QELDocument* document,
                                               QELFile* file, QELRelativeOccurrence* relative, QELComponent* parent,
                                               QELItem* parentItem, QELDocument* parentDocument,
                                               QELFile* parentFile, unsigned char flattening) {
    bool writeMapping = true;
    QELComponent* mappingComponent = component;
    const int modified =
        flatteningModifiedFlag(session, component, item, document, flattening, writeMapping, mappingComponent);

    writeBaliseFileType(document, 1, component);
    writeOpenBalise(QELElement::Item_Info);
    writeInstanceName(component);
    writeParentPartNumber(parentItem, isAbsolute);
    writeParentInstanceName(parent, isAbsolute);
    writeParentDocName(parentFile, isAbsolute);
    writeParentDatasetUID(parentDocument, isAbsolute);
    writeParentComp(component, isAbsolute);
    writeParentItemRevUID(parentItem);
    writeVersionOrNamedRef(document, component, false);
    writeRelativeMatrix(relative, isAbsolute);
    writeScenes(component, document);
    writeMatrixAction(component, isAbsolute);
    writePartNumber(item, component);
    writeDatasetUID(document, component);
    writeType(component, document);
    writeItemRevUID(item, component);
    writeOldModelName(item);
    writeFileName(file, component);
    writeFileVersion(file);
    writeMAJ(component);
    writeBalise(QELElement::Modified_Flag, modified);
    writeDocUUID(document);
    if (writeMapping) writeOEMMappingAttributes(mappingComponent, document);
    writeLinkedDocumentsForSpreadSheet(component, document);
    writeCloseBalise(QELElement::Item_Info);
    writeBaliseFileType(document, 2, component);
}

// ---- state details ---------------------------------------------------------------

void QELDMToXML::writeDescForStateDetails(unsigned char isAbsolute, QELSession* /*session*/,
                                          QELComponent* component, QELItem* item, QELDocument* document,
                                          QELFile* file) {
    writeBaliseFileType(document, 1, component);
    writeOpenBalise(QELElement::Item_Info);
    writePointerAddress(component);
    writeInstanceName(component);
    writeMatrixAction(component, isAbsolute);
    writePartNumber(item, component);
    writeDatasetUID(document, component);
    writeVersionOrNamedRef(document, component, false);
    writeItemRevUID(item, component);
    writeFileName(file, component);
    writeType(component, document);
    writeFileVersion(file);
    writeBVRDate(document);
    writeMAJ(component);
    writeModifiedFlag(component);
    if (PROCManager::isProcessStateDetails()) writeIsDocSelected(document);
    writeCATIAMappingAttributes(component, document);
    writeCloseBalise(QELElement::Item_Info);
    writeBaliseFileType(document, 2, component);
    writeAllSecondariesForStateDetail(document, component);
}

// Secondaries (documents that exist only beside a primary, such as its
// analysis models) get a row of their own in the state-details window. The
// driver counts one block per document flagged "IsSecondary" in the
// state-details factory, so exactly those get one, once per export.
void QELDMToXML::writeAllSecondariesForStateDetail(QELDocument* document, QELComponent* /*component*/) {
    if (!PROCManager::isProcessStateDetailsFactory() || !document) return;
    std::unique_ptr<TYPVectorPQELLink> links(document->getLinkedSecondaries());
    if (!links) return;
    for (QELLink* link : *links) {
        QELComponent* secondary = link ? link->get_Secondary() : nullptr;
        // The document's link table also holds the links that point to it.
        if (!secondary || secondary == document || !secondary->isAKindOf("QELDOCUMENT_CLASSNAME")) continue;
        if (!secondary->getBooleanProperty("IsSecondary")) continue;
        if (!_secondariesWritten.insert(secondary).second) continue;
        writeSecondaryForStateDetail(static_cast<QELDocument*>(secondary), document);
    }
}

void QELDMToXML::writeSecondaryForStateDetail(QELDocument* secondary, QELDocument* primary) {
    // A secondary is known to the user by the file name the host displays;
    // it usually has no file of its own in the model.
    const CATUnicodeString shown = secondary->getStringProperty("spfilenametodisplay");
    QELFile* file = firstFile(secondary);

    writeBaliseFileType(secondary, 1, secondary);
    writeOpenBalise(QELElement::Item_Info);
    writePointerAddress(secondary);
    writeBalise(QELElement::InstanceName, shown, secondary->get_Name(), 0);
    writeBalise(QELElement::Part_Number, secondary->getStringProperty("Part_Number"), "", 0);
    writeDatasetUID(secondary, secondary);
    writeVersionOrNamedRef(secondary, secondary, false);
    if (file)
        writeFileName(file, secondary);
    else
        writeBalise(QELElement::File_Name, shown, "", 0);
    // A secondary belongs to the catalog its primary comes from.
    if (isCatalogComponent(nullptr, primary)) writeBalise(QELElement::Type, "CatalogComp", "", 0);
    if (file)
        writeFileVersion(file);
    else
        writeBalise(QELElement::File_Version, QELUtilities::getFileExtension(shown), "", 0);
    writeBalise(QELElement::Modified_Flag, secondary->getBooleanProperty("Modified_Flag") ? 1 : 0);
    writeCloseBalise(QELElement::Item_Info);
    writeBaliseFileType(secondary, 2, secondary);
}

// ---- life cycle ------------------------------------------------------------------

void QELDMToXML::writeDescForLifeCycle(unsigned char isAbsolute, QELSession* /*session*/, QELComponent* component,
                                       QELItem* item, QELDocument* document, QELFile* file) {
    // The dataset's version stands before the item revision, its named
    // reference after it.
    const bool neverStored = document && document->getStringProperty("Dat_File_Version") == "0";
    writeBaliseFileType(document, 1, component);
    writeOpenBalise(QELElement::Item_Info);
    writePointerAddress(component);
    writeInstanceName(component);
    writeMatrixAction(component, isAbsolute);
    writePartNumber(item, component);
    writeDatasetUID(document, component);
    if (neverStored) writeDatasetVersion(document);
    writeItemRevUID(item, component);
    if (!neverStored) writeNamedRefUID(document, component);
    writeFileName(file, component);
    writeType(component, document);
    writeFileVersion(file);
    writeCheckAction(component);
    writeMAJ(component);
    writeCATIAMappingAttributes(component, document);
    writeSecondariesAttributes(QELElement::secondaries, QELElement::secondary, document);
    writeCloseBalise(QELElement::Item_Info);
    writeBaliseFileType(document, 2, component);
}

// ---- BRR -------------------------------------------------------------------------

void QELDMToXML::writeDescForBRR(unsigned char isAbsolute, QELSession* /*session*/, QELComponent* component,
                                 QELItem* item, QELDocument* document, QELFile* file,
                                 QELRelativeOccurrence* relative, QELComponent* parent, QELItem* parentItem,
                                 QELDocument* parentDocument, QELFile* parentFile) {
    writeBaliseFileType(document, 1, component);
    writeOpenBalise(QELElement::Item_Info);
    writePointerAddress(component);
    writeInstanceName(component);
    writeOCCUID(component);
    writeInstanceDescription(component);
    writeParentPartNumber(parentItem, isAbsolute);
    writeParentInstanceName(parent, isAbsolute);
    writeParentDocName(parentFile, isAbsolute);
    writeParentDatasetUID(parentDocument, isAbsolute);
    writeParentComp(component, isAbsolute);
    writeParentItemRevUID(parentItem);
    writeRelativeMatrix(relative, isAbsolute);
    writeMatrixAction(component, isAbsolute);
    writePartNumber(item, component);
    writeDatasetUID(document, component);
    writeType(component, document);
    writeVersionOrNamedRef(document, component, false);
    writeItemRevUID(item, component);
    writeOldModelName(item);
    writeBVRDate(document);
    writeNomenclature(item);
    writeFileName(file, component);
    writeOldFileName(file);
    writeFileVersion(file);
    writeCheckAction(component);
    writeMAJ(component);
    writeModifiedFlag(component);
    writeDocUUID(document);
    writeMappingAttributes(component, document);
    writeMappingInst(relative);
    writeSheetsForDrawing(document);
    writeAnalysisFiles(component);
    writeSkippedOccList(component);
    writeLinkedDocuments(component, document, 1);
    writeDesignTableSummaries(component, document);
    writeShape(document, component);
    writeActiveShape(component);
    writeDefaultShape(component);
    writeAbsoluteMatrix(asOccurrence(component), isAbsolute);
    writeSecondariesAttributes(QELElement::secondaries, QELElement::secondary, document);
    writeComposites(document, component);
    writeCloseBalise(QELElement::Item_Info);
    writeBaliseFileType(document, 2, component);
}

// ---- update status ---------------------------------------------------------------

long QELDMToXML::writeDescForUpdateStatus(TYPVectorPCV5CAAQELDocument* documents) {
    const char* const function = "QELDMToXML::writeDescForUpdateStatus";
    if (!documents) {
        EMHManager::writeMsg(function, 2103, "ip_liste");
        return QEL_E_FAIL;
    }
    for (CV5CAAQELDocument* document : *documents) {
        if (!document) {
            JNLManager::writeMsg("QELDMToXML::writeDescForUpdateStatus: ip_document is NULL");
            continue;
        }
        // The document stands for its own component: the host names no
        // occurrence here.
        writeBaliseFileType(document, 1, document);
        writeOpenBalise(QELElement::Item_Info);
        TYPMapCATUnicodeStringPVoid* parents = document->getLinkedItems("LINKNAME_PARENT");
        QELItem* item = asItem(parents ? static_cast<QELComponent*>(parents->first()) : nullptr);
        if (!item) {
            // The export stops at a document without an item; the block is
            // closed so that what was written stays well formed.
            writeCloseBalise(QELElement::Item_Info);
            writeBaliseFileType(document, 2, document);
            return QEL_E_FAIL;
        }
        QELFile* file = firstFile(document);
        if (!file) EMHManager::writeMsg(function, 2103, "p_file");
        writePointerAddress(document);
        writeType(document, document);
        if (file) writeFileName(file, document);
        writeDatasetUID(document, document);
        writeItemRevUID(item, document);
        writeSecondariesAttributes(QELElement::secondaries, QELElement::secondary, document);
        writeCloseBalise(QELElement::Item_Info);
        writeBaliseFileType(document, 2, document);
    }
    return 0;
}
