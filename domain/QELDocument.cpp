#include "QELDocument.h"

#include "QELAbsoluteOccurrence.h"
#include "QELFile.h"
#include "QELForm.h"
#include "QELGeoDatas.h"
#include "QELItem.h"
#include "QELLink.h"
#include "QELLinkType.h"
#include "QELModelHeap.h"
#include "QELSession.h"
#include "QELStacking.h"
#include "TYPMapIntPVoid.h"

namespace {

const char* const kDocumentClass = "QELDOCUMENT_CLASSNAME";
const char* const kFileClass = "QELFILE_CLASSNAME";
const char* const kFormClass = "QELFORM_CLASSNAME";
const char* const kItemClass = "QELITEM_CLASSNAME";

const char* const kDesignTableKey = "catdesigntable";
const char* const kDocAttributesType = "catia_doc_attributes";
const char* const kPublicationType = "catpublication";
const char* const kAlternateShapeLink = "CATIA_alternateShapeRep_Link_type";
const char* const kSecondaryLink = "CATIA_secondary_Link_type";

// Every component under every key of link 16 that is of `className`, in the
// store's order.
template <typename T>
TYPVector<T*>* collectReferences(const QELComponent& owner, const char* className) {
    auto* out = new TYPVector<T*>();
    TYPMapCATUnicodeStringPVoid* byKey = owner.getComponents(QELLinkType::REF);
    if (!byKey) return out;
    for (const auto& key : *byKey) {
        for (const auto& e : *static_cast<TYPMapCATUnicodeStringPVoid*>(key.object)) {
            auto* c = static_cast<QELComponent*>(e.object);
            if (c && c->isAKindOf(className)) out->push_back(static_cast<T*>(c));
        }
    }
    return out;
}

} // namespace

// ---- construction, type and flags ----------------------------------------------

QELDocument::QELDocument() { set_ClassName(kDocumentClass); }

QELDocument::QELDocument(const CATUnicodeString& name) : QELDocument(name, EnumDocumentType_Unset) {}

QELDocument::QELDocument(const CATUnicodeString& name, EnumDocumentType type) {
    set_ClassName(kDocumentClass);
    set_Name(name);
    setType(type);
}

EnumDocumentType QELDocument::getType() const {
    return static_cast<EnumDocumentType>(getIntegerProperty("DocumentType"));
}

void QELDocument::setType(EnumDocumentType type) { addIntegerProperty("DocumentType", type); }

long QELDocument::getCalculGeometricStatus(unsigned char& flag) const {
    flag = getBooleanProperty("Calcul_Flag");
    return 0;
}

long QELDocument::setCalculGeometricStatus(unsigned char flag) {
    addBooleanProperty("Calcul_Flag", flag != 0);
    return 0;
}

long QELDocument::getComputeGeo(unsigned char& flag) const {
    flag = getBooleanProperty("ComputeGeo");
    return 0;
}

long QELDocument::setComputeGeo(unsigned char flag) {
    addBooleanProperty("ComputeGeo", flag != 0);
    return 0;
}

unsigned char QELDocument::isAForeignFile() const { return getStringProperty("IsAForeignFile") == "FF"; }

// ---- files, items, forms, documents ----------------------------------------------

QELFile* QELDocument::createFile(const CATUnicodeString& refName, const CATUnicodeString& fileName) {
    QELSession* session = QELSession::getInstance();
    QELFile* file = session->getFile(fileName);
    if (!file) {
        file = QELModelHeap::adopt(new QELFile(fileName));
        session->addFile(file);
    }
    addComponent(file, QELLinkType::REF, refName);
    file->linkDocument(this);
    return file;
}

TYPMapCATUnicodeStringPVoid* QELDocument::getLinkedFiles(const CATUnicodeString& refName) const {
    return getComponents(QELLinkType::REF, refName);
}

void QELDocument::linkItem(const CATUnicodeString& refName, QELItem* item) { addComponent(item, QELLinkType::DOC_ITM, refName); }

TYPMapCATUnicodeStringPVoid* QELDocument::getLinkedItems(const CATUnicodeString& refName) const {
    return getComponents(QELLinkType::DOC_ITM, refName);
}

TYPMapCATUnicodeStringPVoid* QELDocument::getAllLinkedItems() const { return getComponents(QELLinkType::DOC_ITM); }

void QELDocument::linkDocument(const CATUnicodeString& refName, QELDocument* document) {
    addComponent(document, QELLinkType::REF, refName);
}

void QELDocument::linkForm(QELForm* form) {
    if (form) addComponent(form, QELLinkType::REF, form->getFormType());
}

QELForm* QELDocument::addCATIADocAttributesForm() {
    auto* form = QELModelHeap::adopt(new QELForm(kDocAttributesType));
    linkForm(form);
    form->linkDocument(this);
    return form;
}

TYPMapCATUnicodeStringPVoid* QELDocument::getLinkedCATIADocAttributesForms() const {
    return getComponents(QELLinkType::REF, kDocAttributesType);
}

QELForm* QELDocument::addPublication(const CATUnicodeString& name) {
    if (QELForm* known = getLinkedPublication(name)) return known;
    auto* form = QELModelHeap::adopt(new QELForm(kPublicationType, name));
    linkForm(form);
    form->linkDocument(this);
    return form;
}

// Publications are filed under their UUID, not their visible name, so the
// search walks them; a document carries a handful.
QELForm* QELDocument::getLinkedPublication(const CATUnicodeString& name) const {
    TYPMapCATUnicodeStringPVoid* publications = getLinkedPublications();
    if (!publications) return nullptr;
    for (const auto& e : *publications) {
        auto* form = static_cast<QELForm*>(e.object);
        if (form && form->getStringProperty("QELFRM_PROPERTY_NAME") == name) return form;
    }
    return nullptr;
}

TYPMapCATUnicodeStringPVoid* QELDocument::getLinkedPublications() const {
    return getComponents(QELLinkType::REF, kPublicationType);
}

TYPVectorPQELDocument* QELDocument::getAllLinkedDocuments() const {
    return collectReferences<QELDocument>(*this, kDocumentClass);
}

TYPVectorPQELFile* QELDocument::getAllLinkedFiles() const { return collectReferences<QELFile>(*this, kFileClass); }

TYPVectorPQELForm* QELDocument::getAllLinkedForms() const { return collectReferences<QELForm>(*this, kFormClass); }

// ---- design tables -------------------------------------------------------------

QELDocument* QELDocument::addDesignTable(const CATUnicodeString& name, const CATUnicodeString& oldName) {
    TYPMapCATUnicodeStringPVoid* known = getComponents(QELLinkType::REF, kDesignTableKey);
    auto* table = QELModelHeap::adopt(new QELDocument(oldName));
    table->addIntegerProperty("indiceDesignTable", known ? known->size() : 0);
    table->addStringProperty("OldDesignTableName", oldName);
    table->addStringProperty("DesignTableName", name);
    table->createFile(kDesignTableKey, oldName);
    addDesignTable(table);
    return table;
}

void QELDocument::addDesignTable(QELDocument* designTable) { addComponent(designTable, QELLinkType::REF, kDesignTableKey); }

TYPVectorPQELDocument* QELDocument::getLinkedDesignTables() const {
    auto* out = new TYPVectorPQELDocument();
    TYPMapCATUnicodeStringPVoid* tables = getComponents(QELLinkType::REF, kDesignTableKey);
    if (!tables) return out;
    TYPMapIntPVoid byIndex("p_list_dt");
    for (const auto& e : *tables) {
        auto* table = static_cast<QELDocument*>(e.object);
        if (table) byIndex.insert(table->getIntegerProperty("indiceDesignTable"), table, "QELDocument", 0);
    }
    out->reserve(static_cast<size_t>(byIndex.size()));
    for (const auto& e : byIndex) out->push_back(static_cast<QELDocument*>(e.object));
    return out;
}

// ---- alternate shapes and secondaries ----------------------------------------------

QELDocument* QELDocument::addAlternateShapeRepresentation(const CATUnicodeString& shapeRepName,
                                                          const CATUnicodeString& docName) {
    auto* shape = QELModelHeap::adopt(new QELDocument(docName));
    linkAlternateShapeRepresentation(shapeRepName, shape);
    return shape;
}

void QELDocument::linkAlternateShapeRepresentation(const CATUnicodeString& shapeRepName, QELDocument* document) {
    QELLink* link = addGRMLink(kAlternateShapeLink, document);
    if (link) link->addStringProperty("ShapeRepName", shapeRepName);
}

// The names below are built once: the writer asks for them on every
// occurrence it describes.
TYPVectorPQELLink* QELDocument::getLinkedAlternateShapeRepresentations() const {
    static const CATUnicodeString name(kAlternateShapeLink);
    return getGRMDocumentLinks(name);
}

TYPVectorPQELLink* QELDocument::getLinkedSecondaries() const {
    static const CATUnicodeString name(kSecondaryLink);
    return getGRMDocumentLinks(name);
}

// ---- GRM links -----------------------------------------------------------------------

QELLink* QELDocument::addGRMDocumentLink(const CATUnicodeString& name, QELDocument* document) {
    return addGRMLink(name, document);
}

QELLink* QELDocument::addGRMItemLink(const CATUnicodeString& name, QELItem* item) { return addGRMLink(name, item); }

void QELDocument::addGRMFormLink(const CATUnicodeString& name, QELForm* form) { addGRMLink(name, form); }

TYPVectorPQELLink* QELDocument::getGRMDocumentLinks(const CATUnicodeString& name) const {
    return getGRMLinks(name, kDocumentClass, kDocumentClass);
}

TYPVectorPQELLink* QELDocument::getGRMFormLinks(const CATUnicodeString& name) const {
    return getGRMLinks(name, kDocumentClass, kFormClass);
}

TYPVectorPQELLink* QELDocument::getGRMItemLinks(const CATUnicodeString& name) const {
    return getGRMLinks(name, kDocumentClass, kItemClass);
}

TYPMapCATUnicodeStringPVoid* QELDocument::getAllGRMDocumentLinks() const {
    return getAllGRMLinks(kDocumentClass, kDocumentClass);
}

TYPMapCATUnicodeStringPVoid* QELDocument::getAllGRMFormLinks() const {
    return getAllGRMLinks(kDocumentClass, kFormClass);
}

TYPMapCATUnicodeStringPVoid* QELDocument::getAllGRMItemLinks() const {
    return getAllGRMLinks(kDocumentClass, kItemClass);
}

QELLink* QELDocument::getGRMDocumentLinksWhereUsedAsPrimary(const CATUnicodeString& name,
                                                            const QELDocument* other) const {
    return getGRMLinksWhereUsedAsPrimary(name, other);
}

QELLink* QELDocument::getGRMFormLinksWhereUsedAsPrimary(const CATUnicodeString& name, const QELForm* other) const {
    return getGRMLinksWhereUsedAsPrimary(name, other);
}

QELLink* QELDocument::getGRMItemLinksWhereUsedAsPrimary(const CATUnicodeString& name, const QELItem* other) const {
    return getGRMLinksWhereUsedAsPrimary(name, other);
}

TYPVectorPQELLink* QELDocument::getGRMDocumentLinksWhereUsedAsPrimary(const QELDocument* other) const {
    return getGRMLinksWhereUsedAsPrimary(other);
}

TYPVectorPQELLink* QELDocument::getGRMFormLinksWhereUsedAsPrimary(const QELForm* other) const {
    return getGRMLinksWhereUsedAsPrimary(other);
}

TYPVectorPQELLink* QELDocument::getGRMItemLinksWhereUsedAsPrimary(const QELItem* other) const {
    return getGRMLinksWhereUsedAsPrimary(other);
}

TYPVectorPQELLink* QELDocument::getGRMDocumentLinksWhereUsedAsPrimary(const CATUnicodeString& name) const {
    static const CATUnicodeString otherClass(kDocumentClass);
    return getGRMLinksWhereUsedAsPrimary(name, otherClass);
}

TYPVectorPQELLink* QELDocument::getGRMFormLinksWhereUsedAsPrimary(const CATUnicodeString& name) const {
    static const CATUnicodeString otherClass(kFormClass);
    return getGRMLinksWhereUsedAsPrimary(name, otherClass);
}

TYPVectorPQELLink* QELDocument::getGRMItemLinksWhereUsedAsPrimary(const CATUnicodeString& name) const {
    static const CATUnicodeString otherClass(kItemClass);
    return getGRMLinksWhereUsedAsPrimary(name, otherClass);
}

QELLink* QELDocument::getGRMDocumentLinksWhereUsedAsSecondary(const CATUnicodeString& name,
                                                              const QELDocument* other) const {
    return getGRMLinksWhereUsedAsSecondary(name, other);
}

QELLink* QELDocument::getGRMFormLinksWhereUsedAsSecondary(const CATUnicodeString& name, const QELForm* other) const {
    return getGRMLinksWhereUsedAsSecondary(name, other);
}

QELLink* QELDocument::getGRMItemLinksWhereUsedAsSecondary(const CATUnicodeString& name, const QELItem* other) const {
    return getGRMLinksWhereUsedAsSecondary(name, other);
}

TYPVectorPQELLink* QELDocument::getGRMDocumentLinksWhereUsedAsSecondary(const QELDocument* other) const {
    return getGRMLinksWhereUsedAsSecondary(other);
}

TYPVectorPQELLink* QELDocument::getGRMFormLinksWhereUsedAsSecondary(const QELForm* other) const {
    return getGRMLinksWhereUsedAsSecondary(other);
}

TYPVectorPQELLink* QELDocument::getGRMItemLinksWhereUsedAsSecondary(const QELItem* other) const {
    return getGRMLinksWhereUsedAsSecondary(other);
}

TYPVectorPQELLink* QELDocument::getGRMDocumentLinksWhereUsedAsSecondary(const CATUnicodeString& name) const {
    return getGRMLinksWhereUsedAsSecondary(name, CATUnicodeString(kDocumentClass));
}

TYPVectorPQELLink* QELDocument::getGRMFormLinksWhereUsedAsSecondary(const CATUnicodeString& name) const {
    return getGRMLinksWhereUsedAsSecondary(name, CATUnicodeString(kFormClass));
}

TYPVectorPQELLink* QELDocument::getGRMItemLinksWhereUsedAsSecondary(const CATUnicodeString& name) const {
    return getGRMLinksWhereUsedAsSecondary(name, CATUnicodeString(kItemClass));
}

int QELDocument::getPointedItemsByLink(const CATUnicodeString& linkName, TYPVectorPQELItem*& items) const {
    items = new TYPVectorPQELItem();
    TYPVectorPQELLink* links = getGRMItemLinksWhereUsedAsPrimary(linkName);
    if (!links) return -1;
    for (QELLink* link : *links) items->push_back(static_cast<QELItem*>(link->get_Secondary()));
    delete links;
    return 0;
}

// ---- assembly and composites ----------------------------------------------------------

void QELDocument::linkComponentAbsoluteOccurrence(QELAbsoluteOccurrence* occurrence) {
    addComponent(occurrence, QELLinkType::DOC_ABS, "LINKNAME_COMPONENT");
}

TYPMapCATUnicodeStringPVoid* QELDocument::getLinkedComponentAbsoluteOccurrences() const {
    return getComponents(QELLinkType::DOC_ABS, "LINKNAME_COMPONENT");
}

void QELDocument::linkBody(QELGeoDatas* body) {
    if (body) addComponent(body, QELLinkType::DOC_GEODATAS, body->getSignature());
}

TYPMapCATUnicodeStringPVoid* QELDocument::getLinkedBodys() const { return getComponents(QELLinkType::DOC_GEODATAS); }

void QELDocument::linkStacking(QELStacking* stacking) { addComponent(stacking, QELLinkType::DOC_STACKING, "LINKNAME_DOC_STACKING"); }
