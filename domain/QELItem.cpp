#include "QELItem.h"

#include "QELAbsoluteOccurrence.h"
#include "QELAbsoluteView.h"
#include "QELDocument.h"
#include "QELForm.h"
#include "QELLink.h"
#include "QELModelHeap.h"
#include "QELRelativeOccurrence.h"
#include "QELScene.h"
#include "QELSession.h"

namespace {

const int kItemView = 8;       // ITM_ABV
const int kItemRelative = 9;   // ITM_REL
const int kItemAbsolute = 10;  // ITM_ABS
const int kItemDocument = 11;  // ITM_DOC
const int kItemForm = 12;      // ITM_FRM
const int kItemScene = 25;     // ITM_SCENE

const char* const kItemClass = "QELITEM_CLASSNAME";
const char* const kDocumentClass = "QELDOCUMENT_CLASSNAME";

} // namespace

QELItem::QELItem() { set_ClassName(kItemClass); }

QELItem::QELItem(const CATUnicodeString& name) {
    set_ClassName(kItemClass);
    set_Name(name);
}

// ---- documents ---------------------------------------------------------------

QELDocument* QELItem::createDocument(const CATUnicodeString& refName, EnumDocumentType type,
                                     const CATUnicodeString& docName) {
    QELSession* session = QELSession::getInstance();
    QELDocument* document = session->getDocument(docName);
    if (!document) {
        document = QELModelHeap::adopt(new QELDocument(docName, type));
        session->addDocument(document);
    }
    linkDocument(refName, document);
    document->linkItem(refName, this);
    return document;
}

void QELItem::linkDocument(const CATUnicodeString& refName, QELDocument* document) {
    addComponent(document, kItemDocument, refName);
}

TYPMapCATUnicodeStringPVoid* QELItem::getLinkedDocuments(const CATUnicodeString& refName) const {
    return getComponents(kItemDocument, refName);
}

TYPMapCATUnicodeStringPVoid* QELItem::getAllLinkedDocuments() const { return getComponents(kItemDocument); }

// ---- forms -------------------------------------------------------------------

void QELItem::linkForm(QELForm* form) {
    if (form) addComponent(form, kItemForm, form->getFormType());
}

TYPMapCATUnicodeStringPVoid* QELItem::getLinkedForms(const CATUnicodeString& formType) const {
    return getComponents(kItemForm, formType);
}

TYPVectorPQELForm* QELItem::getAllLinkedForms() const {
    auto* out = new TYPVectorPQELForm();
    TYPMapCATUnicodeStringPVoid* byType = getComponents(kItemForm);
    if (!byType) return out;
    for (const auto& type : *byType) {
        for (const auto& e : *static_cast<TYPMapCATUnicodeStringPVoid*>(type.object)) {
            out->push_back(static_cast<QELForm*>(static_cast<QELComponent*>(e.object)));
        }
    }
    return out;
}

// ---- assembly objects ------------------------------------------------------------

void QELItem::linkRelativeOccurrence(QELRelativeOccurrence* occurrence) {
    addChildrenComponent(occurrence, kItemRelative);
}

TYPMapCATUnicodeStringPVoid* QELItem::getAllLinkedRelOccs() const { return getChildrenComponents(kItemRelative); }

QELRelativeOccurrence* QELItem::getLinkedRelativeOccurrence(const CATUnicodeString& key) const {
    return static_cast<QELRelativeOccurrence*>(getChildrenComponent(kItemRelative, key));
}

QELRelativeOccurrence* QELItem::getLinkedRelativeOccurrence(const CATUnicodeString& key1,
                                                            const CATUnicodeString& key2) const {
    return static_cast<QELRelativeOccurrence*>(getChildrenComponent(kItemRelative, key1, key2));
}

void QELItem::linkAbsOcc(QELAbsoluteOccurrence* occurrence) { addParentComponent(occurrence, kItemAbsolute); }

QELAbsoluteOccurrence* QELItem::getLinkedAbsOcc() const {
    return static_cast<QELAbsoluteOccurrence*>(getParentComponent(kItemAbsolute, 0));
}

TYPMapCATUnicodeStringPVoid* QELItem::getAllLinkedAbsOccs() const { return getParentComponents(kItemAbsolute); }

// A view's signature is also its component name, so the map under a
// signature holds the one view of it, filed under that same text.
void QELItem::linkAbsoluteView(QELAbsoluteView* view) {
    if (view) addComponent(view, kItemView, view->getSignature());
}

QELAbsoluteView* QELItem::getLinkedAbsoluteViews(const CATUnicodeString& signature) const {
    return static_cast<QELAbsoluteView*>(getComponent(kItemView, signature, signature));
}

TYPMapCATUnicodeStringPVoid* QELItem::getAllLinkedAbsoluteViews() const { return getComponents(kItemView); }

void QELItem::linkScene(QELScene* scene) {
    if (scene) addComponent(scene, kItemScene, scene->getSignature());
}

TYPMapCATUnicodeStringPVoid* QELItem::getAllLinkedScenes() const { return getComponents(kItemScene); }

// ---- GRM links ---------------------------------------------------------------------

QELLink* QELItem::addGRMDocumentLink(const CATUnicodeString& name, QELDocument* document) {
    return addGRMLink(name, document);
}

TYPVectorPQELLink* QELItem::getGRMDocumentLinks(const CATUnicodeString& name) const {
    return getGRMLinks(name, kItemClass, kDocumentClass);
}

TYPMapCATUnicodeStringPVoid* QELItem::getAllGRMDocumentLinks() const {
    return getAllGRMLinks(kItemClass, kDocumentClass);
}

unsigned char QELItem::hasGRMDocumentLinkWhereUsedAsSecondary(const CATUnicodeString& name) const {
    return hasGRMLinkWhereUsedAsSecondary(name, kDocumentClass);
}

QELLink* QELItem::getGRMDocumentLinksWhereUsedAsPrimary(const CATUnicodeString& name,
                                                        const QELDocument* other) const {
    return getGRMLinksWhereUsedAsPrimary(name, other);
}

TYPVectorPQELLink* QELItem::getGRMDocumentLinksWhereUsedAsPrimary(const QELDocument* other) const {
    return getGRMLinksWhereUsedAsPrimary(other);
}

TYPVectorPQELLink* QELItem::getGRMDocumentLinksWhereUsedAsPrimary(const CATUnicodeString& name) const {
    return getGRMLinksWhereUsedAsPrimary(name, CATUnicodeString(kDocumentClass));
}

QELLink* QELItem::getGRMDocumentLinksWhereUsedAsSecondary(const CATUnicodeString& name,
                                                          const QELDocument* other) const {
    return getGRMLinksWhereUsedAsSecondary(name, other);
}

TYPVectorPQELLink* QELItem::getGRMDocumentLinksWhereUsedAsSecondary(const QELDocument* other) const {
    return getGRMLinksWhereUsedAsSecondary(other);
}

TYPVectorPQELLink* QELItem::getGRMDocumentLinksWhereUsedAsSecondary(const CATUnicodeString& name) const {
    return getGRMLinksWhereUsedAsSecondary(name, CATUnicodeString(kDocumentClass));
}
