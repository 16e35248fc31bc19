#include "QELWorkSpace.h"

#include <cstdio>
#include <string>
#include <unordered_set>

#include "CATRawCollint.h"
#include "JNLManager.h"
#include "QELAbsoluteOccurrence.h"
#include "QELDocument.h"
#include "QELFile.h"
#include "QELItem.h"
#include "QELLink.h"
#include "QELLinkType.h"
#include "QELUtilities.h"
#include "TYPMapIntPVoid.h"

namespace {

const char* const kConfiguration = "Configuration";
const char* const kDocFileLink = "QELWORKSPACE_PROPERTY_DOCFILE_LINK";
const char* const kItemDocLink = "QELWORKSPACE_PROPERTY_ITEMDOC_LINK";
const char* const kDocumentTag = "QELDocument";

template <typename T> T* firstOf(const TYPMapCATUnicodeStringPVoid* map) {
    return map ? static_cast<T*>(map->first()) : nullptr;
}

bool isBrokenIcon(const QELDocument* document) {
    return document->getBooleanProperty("IsBrokenIcon");
}

// Design tables travel with their owner; a name already present stays.
void insertDesignTables(const QELDocument* owner, TYPMapCATUnicodeStringPVoid& documents) {
    TYPVectorPQELLink* links =
        owner->getGRMDocumentLinksWhereUsedAsPrimary(CATUnicodeString("catdesigntable"));
    if (!links)
        return;
    for (QELLink* link : *links) {
        QELComponent* table = link ? link->get_Secondary() : nullptr;
        if (table)
            documents.insert(table->get_Name(), table, kDocumentTag, 0);
    }
    delete links;
}

// A document the host could load wins over a broken-icon placeholder of the
// same name; otherwise the first one stays.
void insertOccurrenceDocument(QELDocument* document, TYPMapCATUnicodeStringPVoid& documents) {
    auto* known = static_cast<QELDocument*>(documents.find(document->get_Name()));
    if (!known) {
        documents.insert(document->get_Name(), document, kDocumentTag, 0);
    } else if (!isBrokenIcon(document) && isBrokenIcon(known)) {
        documents.erase(document->get_Name());
        documents.insert(document->get_Name(), document, kDocumentTag, 0);
    }
}

} // namespace

QELWorkSpace::QELWorkSpace() : _active(false) { set_ClassName("QELWORKSPACE_CLASSNAME"); }

// ---- configuration and link kinds ------------------------------------------

long QELWorkSpace::setConfiguration(const CATListValCATUnicodeString& configuration) {
    for (int i = 1; i <= configuration.Size(); ++i)
        addStringArrayProperty(kConfiguration, configuration[i]);
    return 0;
}

long QELWorkSpace::getConfiguration(TYPVectorCATUnicodeString*& configuration) const {
    configuration = getStringArrayProperty(kConfiguration);
    return 0;
}

CATUnicodeString QELWorkSpace::getDocFileLinkType() const {
    return QELUtilities::getDocFilRefNameFromDocumentType(
        static_cast<EnumDocumentType>(getIntegerProperty(kDocFileLink)));
}

void QELWorkSpace::setDocFileLinkType(EnumDocumentType type) {
    addIntegerProperty(kDocFileLink, type);
}

CATUnicodeString QELWorkSpace::getItemDocLinkType() const {
    return getStringProperty(kItemDocLink);
}

void QELWorkSpace::setItemDocLinkType(const CATUnicodeString& refName) {
    addStringProperty(kItemDocLink, refName);
}

// ---- root document, item and file ------------------------------------------

void QELWorkSpace::linkDocument(QELDocument* document) {
    addChildrenComponent(document, QELLinkType::WSP_DOC);
}

QELDocument* QELWorkSpace::getLinkedDocument() const {
    return firstOf<QELDocument>(getChildrenComponents(QELLinkType::WSP_DOC));
}

void QELWorkSpace::linkItem(QELItem* item) { addChildrenComponent(item, QELLinkType::WSP_ITEM); }

QELItem* QELWorkSpace::getItem() const {
    return firstOf<QELItem>(getChildrenComponents(QELLinkType::WSP_ITEM));
}

QELFile* QELWorkSpace::getFile() const {
    QELDocument* document = getLinkedDocument();
    if (!document)
        return nullptr;
    return firstOf<QELFile>(document->getLinkedFiles(
        QELUtilities::getDocFilRefNameFromDocumentType(document->getType())));
}

// ---- occurrences -----------------------------------------------------------

void QELWorkSpace::linkAbsoluteOccurrence(QELAbsoluteOccurrence* occurrence) {
    addAbsolute(occurrence, QELLinkType::WSP_ABS, "LINKNAME_CHILD");
}

TYPMapCATUnicodeStringPVoid* QELWorkSpace::getLinkedAbsoluteOccurrences() const {
    return getChildrenComponents(QELLinkType::WSP_ABS);
}

QELAbsoluteOccurrence* QELWorkSpace::getAbsoluteOccurrence(const CATUnicodeString& name) const {
    // Keys carry "Parent_Comp" as well, so a find by name would miss some.
    if (TYPMapCATUnicodeStringPVoid* occurrences = getLinkedAbsoluteOccurrences()) {
        for (const auto& e : *occurrences) {
            auto* occurrence = static_cast<QELAbsoluteOccurrence*>(e.object);
            if (occurrence->get_Name() == name)
                return occurrence;
        }
    }
    return nullptr;
}

TYPVectorPQELAbsoluteOccurrence* QELWorkSpace::getFirstLevelAbsoluteOccurrences() const {
    TYPMapCATUnicodeStringPVoid* occurrences = getLinkedAbsoluteOccurrences();
    if (!occurrences)
        return nullptr;
    TYPMapIntPVoid byIndex("p_abs_list_of_1st_level");
    CATRawCollint indices;
    for (const auto& e : *occurrences) {
        auto* occurrence = static_cast<QELAbsoluteOccurrence*>(e.object);
        if (occurrence->getLinkedParentAbsoluteOccurrence())
            continue;
        int index = occurrence->getIntegerProperty("IndiceOfAbsolute");
        byIndex.insert(index, occurrence, "QELAbsoluteOccurrence", 0);
        indices.Append(index);
    }
    indices.QuickSort();
    // An index met twice is looked up twice and answers the first occurrence
    // filed under it both times.
    auto* result = new TYPVectorPQELAbsoluteOccurrence(static_cast<size_t>(indices.Size()));
    for (int i = 1; i <= indices.Size(); ++i) {
        result->push_back(static_cast<QELAbsoluteOccurrence*>(byIndex.find(indices[i])));
    }
    return result;
}

// ---- documents -------------------------------------------------------------

TYPMapCATUnicodeStringPVoid* QELWorkSpace::getWorkspaceDocuments() const {
    auto* result = new TYPMapCATUnicodeStringPVoid("p_result", 100);
    QELDocument* root = getLinkedDocument();
    if (root)
        result->insert(root->get_Name(), root, kDocumentTag, 0);

    // Many occurrences show one document: its design tables are inserted
    // once, which gives the same map as inserting them every time.
    std::unordered_set<const QELDocument*> seen;
    if (TYPMapCATUnicodeStringPVoid* occurrences = getLinkedAbsoluteOccurrences()) {
        for (const auto& e : *occurrences) {
            const QELItem* item = static_cast<QELAbsoluteOccurrence*>(e.object)->getLinkedItem();
            auto* document =
                item ? static_cast<QELDocument*>(item->getChildrenComponent(QELLinkType::ITM_DOC, 0))
                     : nullptr;
            if (!document)
                continue;
            insertOccurrenceDocument(document, *result);
            if (seen.insert(document).second)
                insertDesignTables(document, *result);
        }
    }
    if (root)
        insertDesignTables(root, *result);
    return result;
}

int QELWorkSpace::getWorkSpaceDocumentsPointingFormsByLink(
    const CATUnicodeString& refName, TYPVectorPQELDocument*& documents) const {
    documents = new TYPVectorPQELDocument();
    TYPMapCATUnicodeStringPVoid* workspaceDocuments = getWorkspaceDocuments();
    for (const auto& e : *workspaceDocuments) {
        auto* document = static_cast<QELDocument*>(e.object);
        TYPMapCATUnicodeStringPVoid* linked = document->getLinkedFiles(refName);
        if (linked && !linked->empty())
            documents->push_back(document);
    }
    delete workspaceDocuments;
    return 0;
}

int QELWorkSpace::getWorkSpacePointedItemsByLink(const CATUnicodeString& linkName,
                                                 TYPVectorPQELDocument*& documents) const {
    documents = new TYPVectorPQELDocument();
    TYPMapCATUnicodeStringPVoid* workspaceDocuments = getWorkspaceDocuments();
    std::unordered_set<CATUnicodeString, CATUnicodeStringHash> names;
    int status = 0;
    // Each document is asked once. A document without any GRM link of the
    // name would hold the walk on itself, asking the same question again and
    // again: the walk stops there instead, with what it found before it.
    for (int i = 0; i < workspaceDocuments->size(); ++i) {
        auto* document = static_cast<QELDocument*>(workspaceDocuments->getObject(i));
        TYPVectorPQELLink* links = document->getGRMItemLinksWhereUsedAsPrimary(linkName);
        if (!links) {
            JNLManager::writeMsgFormatted(
                "QELWorkSpace::getWorkSpacePointedItemsByLink error : document %s has no GRM link %s, "
                "walk stopped after %d of %d documents",
                document->get_Name().ToLatin1().c_str(), linkName.ToLatin1().c_str(), i, workspaceDocuments->size());
            status = -1;
            break;
        }
        if (!links->empty() && names.insert(document->get_Name()).second)
            documents->push_back(document);
        delete links;
    }
    delete workspaceDocuments;
    return status;
}

// ---- dump ------------------------------------------------------------------

void QELWorkSpace::describeComponents() const {
    std::fputs(" WORKSPACE\n", stdout);
    std::fputs("     |    \n", stdout);
    TYPVectorPQELAbsoluteOccurrence* firstLevel = getFirstLevelAbsoluteOccurrences();
    if (!firstLevel)
        return;
    for (QELAbsoluteOccurrence* occurrence : *firstLevel)
        describeSubLevels(occurrence, 1);
    delete firstLevel;
}

void QELWorkSpace::describeSubLevels(const QELAbsoluteOccurrence* occurrence, int level) const {
    if (!occurrence)
        return;
    std::string line;
    for (int i = 1; i < level; ++i)
        line += "            ";
    if (level >= 1)
        line += "     |-----";
    line += "ABS [";
    line += occurrence->get_Name().ToLatin1();
    line += "]\n";
    std::fputs(line.c_str(), stdout);
    if (TYPMapCATUnicodeStringPVoid* children = occurrence->getLinkedChildAbsoluteOccurrences()) {
        // The same level on purpose: the dump shows every level at one indent.
        for (const auto& e : *children)
            describeSubLevels(static_cast<QELAbsoluteOccurrence*>(e.object), level);
    }
}
