// Leaf and list writers of a document block: one element each, from one
// property of the item, document, file or component that the block describes,
// and the element named after the document's type that frames the block.

#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "CV5CAAQELDocument.h"
#include "CV5CAAQELItem.h"
#include "ENVManager.h"
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
#include "QELStatus.h"
#include "QELUtilities.h"
#include "QELWorkSpace.h"

using QELLookups::hostDocument;
using QELLookups::hostItem;
using QELLookups::isBroken;

namespace {

const char* const kError = "ERROR";

// The PDM side stores the OEM description in a field of this many characters.
const int kDescriptionLimit = 255;

// Every writer reports a null argument the same way, so that the journal
// names the writer and the argument it missed.
void journalNull(const char* writer, const char* argument) {
    JNLManager::writeMsgFormatted("QELDMToXML::%s: %s is NULL", writer, argument);
}

CATUnicodeString brokenOr(const QELComponent* component, const CATUnicodeString& value) {
    return isBroken(component) ? CATUnicodeString(kError) : value;
}

// The PDM side spells these attribute names its own way.
CATUnicodeString pdmAttributeName(const CATUnicodeString& name) {
    static const char* const renames[][2] = {{"PartNumber", "partNumber"},
                                             {"Revision", "revision"},
                                             {"Definition", "definition"},
                                             {"Nomenclature", "nomenclature"},
                                             {"DescriptionRef", "description"}};
    for (const auto& rename : renames) {
        if (name == rename[0]) return rename[1];
    }
    return name;
}

// A description longer than the PDM field is cut before a separator that
// straddles the limit rather than through it, so that the PDM side never gets
// half of one. The search goes forward from two characters before the limit.
CATUnicodeString cutDescription(const CATUnicodeString& value) {
    const int from = kDescriptionLimit - 2;
    int at = value.SearchSubString("@=@", from, CATUnicodeString::CATSearchModeForward);
    if (at < 0 || at >= kDescriptionLimit) {
        at = value.SearchSubString("#=#", from, CATUnicodeString::CATSearchModeForward);
        if (at < 0 || at > kDescriptionLimit) at = kDescriptionLimit;
    }
    return value.SubString(0, at);
}

// The PDM side accepts only an empty component type, "COMP" and "Cgr"; a dummy
// part (a document without geometry of its own) says so in the type.
CATUnicodeString checkedComponentType(const CATUnicodeString& type, bool dummyPart) {
    if (dummyPart) {
        if (type.IsNull()) return "DummyPart";
        if (type == "COMP") return "COMPDummyPart";
        JNLManager::writeMsg("value from CteQELABS_PROPERTY_COMP_TYPE propertie is inconsistent with dummy part document");
        return CATUnicodeString();
    }
    if (type.IsNull() || type == "COMP" || type == "Cgr") return type;
    JNLManager::writeMsg("value from CteQELABS_PROPERTY_COMP_TYPE propertie is invalid");
    return CATUnicodeString();
}

// The document's list of mapping pairs named `property`, or null.
TYPVectorCATUnicodeString* mappingList(QELDocument* document, const char* property, const char* writer) {
    if (!document) {
        journalNull(writer, "ip_document");
        return nullptr;
    }
    return document->getDynamicProperty(property);
}

// The key under which two names are the same for merge: equal when letter
// case is ignored, exactly as CATUnicodeString::Compare decides.
std::string caseFolded(const CATUnicodeString& name) {
    CATUnicodeString lowered(name);
    lowered.ToLower();
    return lowered.ConvertToUTF8();
}

const char* fileTypeElement(EnumDocumentType type) {
    switch (type) {
    case EnumDocumentType_Product: return QELElement::CATProduct;
    case EnumDocumentType_Part: return QELElement::CATPart;
    case EnumDocumentType_Drawing: return QELElement::CATDrawing;
    case EnumDocumentType_Process: return QELElement::CATProcess;
    case EnumDocumentType_Analysis: return QELElement::CATAnalysis;
    case EnumDocumentType_Model: return QELElement::CATModel;
    case EnumDocumentType_DesignTable: return QELElement::DesignTable;
    case EnumDocumentType_Catalog: return QELElement::catalog;
    default: return QELElement::Unknown;
    }
}

} // namespace

// ---- the element around a block --------------------------------------------

void QELDMToXML::writeBaliseFileType(QELDocument* document, int flag, QELComponent* component) {
    // A broken icon's document cannot be read, so its type is not known.
    const EnumDocumentType type = document ? document->getType() : EnumDocumentType_Unset;
    const CATUnicodeString name = isBroken(component) ? QELElement::Unknown : fileTypeElement(type);
    if (flag == 1)
        writeOpenBalise(name);
    else
        writeCloseBalise(name);
}

// ---- item ------------------------------------------------------------------

void QELDMToXML::writeItemID(QELItem* item, QELComponent* component) {
    if (!item) return journalNull("writeItemID", "ip_item");
    writeBalise(QELElement::Item_ID, brokenOr(component, item->getStringProperty("Item_ID")), "", 0);
}

void QELDMToXML::writeItemRevID(QELItem* item) {
    if (!item) return journalNull("writeItemRevID", "ip_item");
    writeBalise(QELElement::ItemRev_ID, item->getStringProperty("ItemRev_ID"), "", 0);
}

void QELDMToXML::writeItemRevUID(QELItem* item, QELComponent* component) {
    if (!item) return journalNull("writeItemRevUID", "ip_item");
    writeBalise(QELElement::ItemRev_UID, brokenOr(component, item->getStringProperty("ItemRev_UID")), "", 0);
}

void QELDMToXML::writeItemRevName(QELItem* item) {
    if (!item) return journalNull("writeItemRevName", "ip_item");
    writeBalise(QELElement::ItemRev_Name, item->getStringProperty("ItemRev_Name"), "", 0);
}

void QELDMToXML::writePartNumber(QELItem* item, QELComponent* component) {
    if (!item) return journalNull("writePartNumber", "ip_item");
    writeBalise(QELElement::Part_Number, brokenOr(component, item->getStringProperty("Part_Number")), "", 0);
}

void QELDMToXML::writeNomenclature(QELItem* item) {
    if (!item) return journalNull("writeNomenclature", "ip_item");
    writeBalise(QELElement::Nomenclature, item->getStringProperty("Nomenclature"), "", 0);
}

void QELDMToXML::writeOldModelName(QELItem* item) {
    if (!item) return journalNull("writeOldModelName", "ip_item");
    writeBalise(QELElement::Old_Model_Name, item->getStringProperty("Old_Model_Name"), "", 0);
}

// ---- document --------------------------------------------------------------

void QELDMToXML::writeDatasetUID(QELDocument* document, QELComponent* component) {
    if (!document) return journalNull("writeDatasetUID", "ip_document");
    // A broken icon keeps the dataset it is known under; "ERROR" only stands
    // in for a dataset the model does not know.
    writeBalise(QELElement::DST_UID, document->getStringProperty("DST_UID"), isBroken(component) ? kError : "", 0);
}

void QELDMToXML::writeDatasetVersion(QELDocument* document) {
    if (!document) return journalNull("writeDatasetVersion", "ip_document");
    writeBalise(QELElement::DST_Version, document->getStringProperty("DST_Version"), "", 0);
}

void QELDMToXML::writeDateLastModification(QELDocument* document) {
    if (!document) return journalNull("writeDateLastModification", "ip_document");
    writeBalise(QELElement::Date_Last_Modification, document->getStringProperty("Date_Last_Modification"), "", 0);
}

void QELDMToXML::writeNamedRefUID(QELDocument* document, QELComponent* component) {
    if (!document) return journalNull("writeNamedRefUID", "ip_document");
    if (isBroken(component)) {
        JNLManager::writeMsg("QELDMToXML::writeNamedRefUID : ip_component is a broken icon");
        return;
    }
    writeBalise(QELElement::NamedRef_UID, document->getStringProperty("NamedRef_UID"), "", 0);
}

void QELDMToXML::writeBVRDate(QELDocument* document) {
    if (!document) return journalNull("writeBVRDate", "ip_document");
    writeBalise(QELElement::BVR_Date, document->getStringProperty("BVR_Date"), "", 0);
}

void QELDMToXML::writeDocUUID(QELDocument* document) {
    // The writer's name is doubled in its journal line; tools that scan the
    // journal look for that text.
    if (!document) return journalNull("writewriteDocUUID", "ip_document");
    writeBalise(QELElement::Doc_UUID, document->getStringProperty("catia_uuid"), "", 0);
}

void QELDMToXML::writeIsDocSelected(QELDocument* document) {
    if (!document) return journalNull("writeIsDocSelected", "ip_document");
    writeBalise(QELElement::IsDocSelected, document->getBooleanProperty("IsDocSelected") ? 1 : 0);
}

// ---- file ------------------------------------------------------------------

void QELDMToXML::writeFileName(QELFile* file, QELComponent* component) {
    if (!file) return journalNull("writeFileName", "ip_file");
    // The state-details factory works on files outside any workspace, which
    // the PDM side can only find by their full path.
    const char* property = PROCManager::isProcessStateDetailsFactory() ? "fullPathName" : "File_Name";
    writeBalise(QELElement::File_Name, brokenOr(component, file->getStringProperty(property)), "", 0);
}

void QELDMToXML::writeFileVersion(QELFile* file) {
    if (!file) return journalNull("writeFileVersion", "ip_file");
    writeBalise(QELElement::File_Version, file->getStringProperty("File_Version"), "", 0);
}

void QELDMToXML::writeOldFileName(QELFile* file) {
    if (!file) return journalNull("writeOldFileName", "ip_file");
    writeBalise(QELElement::Old_File_Name, file->getStringProperty("Old_File_Name"), "", 0);
}

// ---- component -------------------------------------------------------------

void QELDMToXML::writeInstanceName(QELComponent* component) {
    if (!component) return journalNull("writeInstanceName", "ip_component");
    // A catalog's workspace is no instance of anything.
    if (component->isWorkSpace() &&
        (component->getIntegerProperty("FileType") == EnumDocumentType_Catalog ||
         component->getBooleanProperty("IsCompCatalog")))
        return;
    writeBalise(QELElement::InstanceName, component->getStringProperty("InstanceName"), "", 0);
}

void QELDMToXML::writeInstanceDescription(QELComponent* component) {
    if (!component) return journalNull("writeInstanceDescription", "ip_component");
    writeBalise(QELElement::Inst_Description, component->getStringProperty("Inst_Description"), "", 0);
}

void QELDMToXML::writeOCCUID(QELComponent* component) {
    if (!component) return journalNull("writeOCCUID", "ip_component");
    writeBalise(QELElement::Occ_UID, component->getStringProperty("Occ_UID"), "", 0);
}

void QELDMToXML::writeMask(QELComponent* component) {
    if (!component) return journalNull("writeMask", "ip_component");
    const int mask = component->getIntegerProperty("Mask");
    if (mask == -1) {
        JNLManager::writeMsg("mask property not set");
        return;
    }
    writeBalise(QELElement::Mask, mask);
}

// ---- workspace -------------------------------------------------------------

long QELDMToXML::writeConfiguration(QELWorkSpace* workspace) {
    if (!workspace) return QEL_E_FAIL;
    TYPVectorCATUnicodeString* configuration = nullptr;
    workspace->getConfiguration(configuration);
    if (!configuration || configuration->empty()) return 0;
    writeOpenBalise(QELElement::Configuration);
    for (const CATUnicodeString& line : *configuration) writeValue(line);
    writeCloseBalise(QELElement::Configuration);
    return 0;
}

// ---- parent ----------------------------------------------------------------

// Written for workspaces too: in catalog processes a workspace's parent item
// is the catalog's.
void QELDMToXML::writeParentPartNumber(QELItem* parentItem, unsigned char /*isAbsolute*/) {
    if (!parentItem) return journalNull("writeParentPartNumber", "ip_parent_item");
    writeBalise(QELElement::Parent_Part_Number, parentItem->getStringProperty("Part_Number"), "", 0);
}

void QELDMToXML::writeParentInstanceName(QELComponent* parent, unsigned char isAbsolute) {
    if (!isAbsolute) return;
    if (!parent) return journalNull("writeParentInstanceName", "ip_parent");
    writeBalise(QELElement::Parent_Instance_Name, parent->getStringProperty("InstanceName"), "", 0);
}

// Written for workspaces too: a catalog workspace names the catalog's file.
void QELDMToXML::writeParentDocName(QELFile* parentFile, unsigned char /*isAbsolute*/) {
    if (!parentFile) return journalNull("writeParentDocName", "ip_parent_file");
    writeBalise(QELElement::Parent_Doc_Name, parentFile->getStringProperty("File_Name"), "", 0);
}

void QELDMToXML::writeParentDatasetUID(QELDocument* parentDocument, unsigned char isAbsolute) {
    if (!isAbsolute) return;
    if (!parentDocument) return journalNull("writeParentDatasetUID", "ip_parent_document");
    writeBalise(QELElement::Parent_DST_UID, parentDocument->getStringProperty("DST_UID"), "", 0);
}

void QELDMToXML::writeParentItemRevUID(QELItem* parentItem) {
    if (!parentItem) return journalNull("writeParentItemRevUID", "ip_parent_item");
    writeBalise(QELElement::Parent_ItemRev_UID, parentItem->getStringProperty("ItemRev_UID"), "", 0);
}

// A workspace has no parent item; the PDM side expects "ERROR" there.
void QELDMToXML::writeParentItemID(QELItem* parentItem, unsigned char isAbsolute) {
    if (!isAbsolute) return writeBalise(QELElement::Parent_Item_ID, kError, "", 0);
    if (!parentItem) return journalNull("writeParentItemID", "ip_parent_item");
    writeBalise(QELElement::Parent_Item_ID, parentItem->getStringProperty("Item_ID"), "", 0);
}

void QELDMToXML::writeParentItemRevID(QELItem* parentItem, unsigned char isAbsolute) {
    if (!isAbsolute) return writeBalise(QELElement::Parent_ItemRev_ID, kError, "", 0);
    if (!parentItem) return journalNull("writeParentItemRevID", "ip_parent_item");
    writeBalise(QELElement::Parent_ItemRev_ID, parentItem->getStringProperty("ItemRev_ID"), "", 0);
}

void QELDMToXML::writeParentComp(QELComponent* component, unsigned char isAbsolute) {
    if (!component) return journalNull("writeParentComp", "ip_component");
    if (isAbsolute) return writeBalise(QELElement::Parent_Comp, component->getStringProperty("Parent_Comp"), "NO", 0);
    if (component->getIntegerProperty("FileType") == EnumDocumentType_Catalog) return;
    writeBalise(QELElement::Parent_Comp, "NO", "", 0);
}

// ---- type ------------------------------------------------------------------

void QELDMToXML::writeType(QELComponent* component, QELDocument* document) {
    if (!document) return journalNull("writeType", "ip_document");
    CV5CAAQELDocument* host = hostDocument(document);
    CV5CAAQELItem* defaultItem = hostItem(host ? host->getDefaultItem() : nullptr);

    CATUnicodeString kind = defaultItem && defaultItem->isCatalogComp() ? "CatalogComp" : "";
    CATUnicodeString type;
    if (component) {
        type = component->getStringProperty("Type");
    } else if (QELAbsoluteOccurrence* any = defaultItem ? defaultItem->getOneAbsoluteOccurrence() : nullptr) {
        type = any->getStringProperty("Type");
    }
    type = checkedComponentType(type, document->getBooleanProperty("IsDummyPart"));

    CATUnicodeString value = kind;
    if (!kind.IsNull() && !type.IsNull()) value += " ";
    value += type;
    writeBalise(QELElement::Type, value, "", 0);
}

// ---- mapping attributes ----------------------------------------------------

long QELDMToXML::writeMappingAttributes(QELComponent* component, QELDocument* document) {
    if (TYPVectorCATUnicodeString* pairs =
            mappingList(document, QELDocument::kMappingAttributes, "writeMappingAttributes"))
        writeDynamicAttributes(QELElement::Mapping_Attribut, pairs, QELElement::Attribut, component, document);
    return 0;
}

long QELDMToXML::writeOEMMappingAttributes(QELComponent* component, QELDocument* document) {
    if (TYPVectorCATUnicodeString* pairs =
            mappingList(document, QELDocument::kOEMMappingAttributes, "writeOEMMappingAttributes"))
        writeDynamicAttributes(QELElement::Mapping_Attribut, pairs, QELElement::Attribut, component, document);
    return 0;
}

long QELDMToXML::writeCATIAMappingAttributes(QELComponent* component, QELDocument* document) {
    if (TYPVectorCATUnicodeString* pairs =
            mappingList(document, QELDocument::kCATIAMappingAttributes, "writeCATIAMappingAttributes"))
        writeDynamicAttributes(QELElement::Mapping_Attribut, pairs, QELElement::Attribut, component, document);
    return 0;
}

void QELDMToXML::writeDynamicAttributes(const CATUnicodeString& element, TYPVectorCATUnicodeString* values,
                                        const CATUnicodeString& itemElement, QELComponent* component,
                                        QELDocument* /*document*/) {
    if (component) {
        if (isBroken(component)) {
            JNLManager::writeMsg("QELDMToXML::writeDynamicAttributes: does not manage dynamic attributes on broken icon");
            return;
        }
        // An unmodified component has nothing new to say, except to the life
        // cycle, which shows the attributes whatever the state.
        if (component->getIntegerProperty("Modified_Flag") == -1 && !PROCManager::isProcessLifeCycleFactory()) return;
    }
    if (!values || values->empty()) {
        JNLManager::writeMsg("QELDMToXML::writeDynamicAttributes: no dynamic attribute");
        return;
    }

    const CATUnicodeString description = ENVManager::getOemPrefix() + "_description";
    writeOpenBalise(element);
    // The count is of strings, two per attribute: the PDM side reads it so.
    writeBalise(QELElement::NBElements, values->size());
    for (int i = 0; i < values->size(); i += 2) {
        const CATUnicodeString name = pdmAttributeName((*values)[i]);
        // Every string is written, empty or not, so that the count holds; a
        // list of odd length ends with a name alone.
        writeBalise(itemElement, name, "", 1);
        if (i + 1 >= values->size()) break;
        CATUnicodeString& value = (*values)[i + 1];
        // The model keeps the cut value, so that what it holds matches what
        // the PDM side was sent.
        if (name == description && value.GetLengthInChar() > kDescriptionLimit) value = cutDescription(value);
        writeBalise(itemElement, value, "", 1);
    }
    writeCloseBalise(element);
}

// A drawing imported on its own carries the attributes of the PDM mapping and
// the OEM's ones in a single list, since the PDM side reads one
// Mapping_Attribut per entry: the mapping's pairs first, then the OEM pairs
// whose names the mapping does not have.
void QELDMToXML::writeMappingAttributesForDrawingOnImport(QELComponent* component, QELDocument* document) {
    TYPVectorCATUnicodeString* mapping =
        mappingList(document, QELDocument::kMappingAttributes, "writeMappingAttributesForDrawingOnImport");
    TYPVectorCATUnicodeString* oem =
        document ? document->getDynamicProperty(QELDocument::kOEMMappingAttributes) : nullptr;
    if (!mapping || !oem) {
        TYPVectorCATUnicodeString* only = mapping ? mapping : oem;
        if (only) writeDynamicAttributes(QELElement::Mapping_Attribut, only, QELElement::Attribut, component, document);
        return;
    }

    // Where each merged string comes from, so that a cut value goes back to
    // the list that holds it.
    TYPVectorCATUnicodeString merged;
    std::vector<CATUnicodeString*> sources;
    std::unordered_set<std::string> names;
    auto take = [&](TYPVectorCATUnicodeString& pairs, bool skipKnown) {
        for (int i = 0; i + 1 < pairs.size(); i += 2) {
            if (skipKnown && names.count(pairs[i].ToLatin1())) continue;
            names.insert(pairs[i].ToLatin1());
            for (int j = i; j <= i + 1; ++j) {
                merged.push_back(pairs[j]);
                sources.push_back(&pairs[j]);
            }
        }
    };
    take(*mapping, false);
    take(*oem, true);
    writeDynamicAttributes(QELElement::Mapping_Attribut, &merged, QELElement::Attribut, component, document);
    for (int i = 0; i < merged.size(); ++i) *sources[static_cast<size_t>(i)] = merged[i];
}

// A catalog component is never modified in the session, yet the PDM side
// needs its attributes when it is imported: the document's mapping pairs are
// written whatever the component's modified state, still not for a broken
// icon.
void QELDMToXML::writeDynamicAttributesForImportCompCatalog(const CATUnicodeString& element,
                                                            QELComponent* component, QELDocument* document) {
    TYPVectorCATUnicodeString* pairs =
        mappingList(document, QELDocument::kMappingAttributes, "writeDynamicAttributesForImportCompCatalog");
    if (!pairs) return;
    if (isBroken(component)) {
        JNLManager::writeMsg("QELDMToXML::writeDynamicAttributes: does not manage dynamic attributes on broken icon");
        return;
    }
    writeDynamicAttributes(element, pairs, QELElement::Attribut, nullptr, document);
}

// ---- secondaries -----------------------------------------------------------

// The element of each entry is always "secondary": the PDM side's reader
// knows no other name, whatever the caller asks for.
void QELDMToXML::writeSecondariesAttributes(const CATUnicodeString& listElement,
                                            const CATUnicodeString& /*itemElement*/, QELDocument* document) {
    const char* const function = "QELDMToXML::writeSecondariesAttributes";
    if (!document) return journalNull("writeSecondariesAttributes", "ip_document");
    std::unique_ptr<TYPVectorPQELLink> links(document->getLinkedSecondaries());
    if (!links) {
        JNLManager::writeMsgFormatted("%s : getLinkedSecondaries returns NULL", function);
        return;
    }
    if (links->empty()) {
        JNLManager::writeMsgFormatted("%s : getLinkedSecondaries returns 0 element", function);
        return;
    }

    writeOpenBalise(listElement);
    writeBalise(QELElement::NBElements, links->size());
    for (QELLink* link : *links) {
        QELComponent* secondary = link ? link->get_Secondary() : nullptr;
        if (!secondary) {
            JNLManager::writeMsgFormatted("%s : Linked secondaries document is NULL", function);
            continue;
        }
        CATUnicodeString displayName = secondary->getStringProperty("spfilenametodisplay");
        // An import names files as the PDM side stores them, with forward slashes.
        if (PROCManager::isCommandImport()) displayName.ReplaceAll("\\", "/");
        writeOpenBalise(QELElement::secondary);
        writeValue(displayName);
        writeValue(CATUnicodeString());
        writeValue(secondary->getStringProperty("Part_Number"));
        writeValue(secondary->getStringProperty("DST_UID"));
        writeValue(secondary->getStringProperty("NamedRef_UID"));
        writeValue(CATUnicodeString(secondary->getBooleanProperty("Modified_Flag") ? "true" : "false"));
        writeValue(secondary->getIntegerProperty("Mask"));
        writeCloseBalise(QELElement::secondary);
    }
    writeCloseBalise(listElement);
}

// ---- linked documents ------------------------------------------------------

void QELDMToXML::writeLinkedDocuments(QELComponent* component, QELDocument* document, unsigned char withUuid) {
    if (!component) return journalNull("writeLinkedDocuments", "ip_component");
    if (!document) return journalNull("writeLinkedDocuments", "ip_document");

    const EnumDocumentType type = document->getType();
    const bool fromDatFile = document->getBooleanProperty("LinkedDocsFromDATFile");
    TYPVectorCATUnicodeString names;
    if (type == EnumDocumentType_Drawing) {
        names.push_back("VT_CATIAV5_DWGLINK");
    } else if (type == EnumDocumentType_Process) {
        names.push_back("CATIA_MFGLink_type");
    } else if (type == EnumDocumentType_Analysis) {
        names.push_back("CATIA_analysis_Link_type");
    } else if ((type == EnumDocumentType_Product || type == EnumDocumentType_Part) && fromDatFile) {
        names.push_back("VT_CATIAV5_MML");
        // A product read from a DAT file also lists its flattened structure.
        if (type == EnumDocumentType_Product) names.push_back("CATIA_flattening_link_type");
    } else if (type == EnumDocumentType_Product) {
        names.push_back("CATIA_flattening_link_type");
    }
    const CATUnicodeString context = component->getStringProperty("resolvedcontextid");
    // With neither a link type of its own nor a resolved context, the
    // document has nothing to list.
    if (names.empty() && context.IsNull()) return;
    // A part always lists the assemblies it is used in, whatever else it has.
    if (type == EnumDocumentType_Part) names.push_back("VT_CATIAV5_MMLASSY");
    writeLinkedDocumentList(document, names, context, withUuid);
}

// A spreadsheet lists every document the row's document points to, whatever
// its type: the assembly links, the flattened structure and the drawing links
// together, by name only (the spreadsheet identifies nothing in the session).
void QELDMToXML::writeLinkedDocumentsForSpreadSheet(QELComponent* component, QELDocument* document) {
    if (!component) return journalNull("writeLinkedDocumentsForSpreadSheet", "ip_component");
    if (!document) return journalNull("writeLinkedDocumentsForSpreadSheet", "ip_document");
    TYPVectorCATUnicodeString names;
    for (const char* name :
         {"VT_CATIAV5_MML", "VT_CATIAV5_MMLASSY", "CATIA_flattening_link_type", "VT_CATIAV5_DWGLINK"})
        names.push_back(name);
    writeLinkedDocumentList(document, names, component->getStringProperty("resolvedcontextid"), 0);
}

// Names already in `into` are looked up in a hash set of their case-folded
// form, so that merging stays linear in the two vectors.
void QELDMToXML::merge(TYPVectorPQELLink*& into, TYPVectorPQELLink* from) {
    if (!into || !from) return;
    std::unordered_set<std::string> names;
    for (QELLink* link : *into) {
        QELComponent* secondary = link ? link->get_Secondary() : nullptr;
        if (secondary) names.insert(caseFolded(secondary->get_Name()));
    }
    for (QELLink* link : *from) {
        QELComponent* secondary = link ? link->get_Secondary() : nullptr;
        if (!secondary) continue;
        if (names.insert(caseFolded(secondary->get_Name())).second) into->push_back(link);
    }
}

void QELDMToXML::writeLinkedDocumentList(QELDocument* document, const TYPVectorCATUnicodeString& linkNames,
                                         const CATUnicodeString& context, unsigned char withUuid) {
    if (!context.IsNull()) JNLManager::writeMsgFormatted("-->resolved context [%s]\n", context.ConvertToChar());
    if (linkNames.empty() && context.IsNull()) return;

    // The first list that has links is taken as it is; the later ones add
    // the items it does not name yet.
    std::unique_ptr<TYPVectorPQELLink> links;
    for (const CATUnicodeString& name : linkNames) {
        std::unique_ptr<TYPVectorPQELLink> more(document->getGRMItemLinksWhereUsedAsPrimary(name));
        if (!more) continue;
        if (!links || links->empty()) {
            links = std::move(more);
        } else {
            TYPVectorPQELLink* into = links.get();
            merge(into, more.get());
        }
    }

    struct Entry {
        CATUnicodeString name;
        CATUnicodeString uuid;
    };
    std::vector<Entry> entries;
    size_t active = 0;
    const int linkCount = links ? links->size() : 0;
    for (int i = 0; i < linkCount; ++i) {
        QELLink* link = (*links)[i];
        QELComponent* secondary = link ? link->get_Secondary() : nullptr;
        if (!secondary || !secondary->isAKindOf("QELITEM_CLASSNAME")) {
            JNLManager::writeMsgFormatted("could not get item from QELLink at index [%d]", i);
            continue;
        }
        auto* item = static_cast<QELItem*>(secondary);
        CV5CAAQELItem* host = hostItem(item);
        QELDocument* pointed = host ? host->getItemDefaultDocument() : nullptr;
        CV5CAAQELDocument* hostPointed = hostDocument(pointed);
        // Counted over the links, not over the entries kept below.
        if (hostPointed && hostPointed->isPointedDocOfActiveSheet()) active = static_cast<size_t>(i);
        if (item->get_Name().IsNull()) continue;
        Entry entry{item->get_Name(), CATUnicodeString()};
        if (withUuid) {
            if (pointed)
                entry.uuid = pointed->getStringProperty("catia_uuid");
            else
                JNLManager::writeMsgFormatted("could not get document from QELLink at index [%d]", i);
        }
        entries.push_back(entry);
    }

    const int count = static_cast<int>(entries.size()) + (context.IsNull() ? 0 : 1);
    if (count == 0) {
        JNLManager::writeMsg("no linked doc to write");
        return;
    }

    auto writeEntry = [&](const Entry& entry) {
        writeBalise(QELElement::Attribut, entry.name, "", 0);
        if (withUuid) writeBalise(QELElement::Attribut, entry.uuid, "", 1);
    };
    writeOpenBalise(QELElement::LinkedDocs);
    writeBalise(QELElement::NBElements, count);
    // The document shown on a drawing's active sheet comes first. When no
    // entry stands at that place (every item skipped) there is nothing to
    // put first.
    const bool hasFirst = active < entries.size();
    if (hasFirst) writeEntry(entries[active]);
    for (size_t i = 0; i < entries.size(); ++i) {
        if (!(hasFirst && i == active)) writeEntry(entries[i]);
    }
    if (!context.IsNull()) writeBalise(QELElement::Attribut, context, "", 0);
    writeCloseBalise(QELElement::LinkedDocs);
}

// ---- sheets ----------------------------------------------------------------

void QELDMToXML::writeSheetsForDrawing(QELDocument* document) {
    if (!document) return journalNull("writeSheetsForDrawing", "ip_document");
    if (document->getType() != EnumDocumentType_Drawing) return;
    CV5CAAQELDocument* host = hostDocument(document);
    const TYPVectorCATUnicodeString* sheets = host ? host->getSheetsNames() : nullptr;
    if (!sheets) return;
    writeOpenBalise(QELElement::Sheets);
    writeBalise(QELElement::Active_Sheet, host->getDWActiveSheet(), "", 0);
    writeBalise(QELElement::NBElements, sheets->size());
    for (const CATUnicodeString& sheet : *sheets) writeBalise(QELElement::Attribut, sheet, "", 0);
    writeCloseBalise(QELElement::Sheets);
}
