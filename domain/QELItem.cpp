#include "QELItem.h"

#include "QELAbsoluteOccurrence.h"
#include "QELAbsoluteView.h"
#include "QELDocument.h"
#include "QELForm.h"
#include "QELLink.h"
#include "QELLinkType.h"
#include "QELModelHeap.h"
#include "QELRelativeOccurrence.h"
#include "QELScene.h"
#include "QELSession.h"

namespace {

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
    addComponent(document, QELLinkType::ITM_DOC, refName);
}

TYPMapCATUnicodeStringPVoid* QELItem::getLinkedDocuments(const CATUnicodeString& refName) const {
    return getComponents(QELLinkType::ITM_DOC, refName);
}

TYPMapCATUnicodeStringPVoid* QELItem::getAllLinkedDocuments() const { return getComponents(QELLinkType::ITM_DOC); }

// ---- forms -------------------------------------------------------------------

void QELItem::linkForm(QELForm* form) {
    if (form) addComponent(form, QELLinkType::ITM_FRM, form->getFormType());
}

TYPMapCATUnicodeStringPVoid* QELItem::getLinkedForms(const CATUnicodeString& formType) const {
    return getComponents(QELLinkType::ITM_FRM, formType);
}

TYPVectorPQELForm* QELItem::getAllLinkedForms() const {
    auto* out = new TYPVectorPQELForm();
    TYPMapCATUnicodeStringPVoid* byType = getComponents(QELLinkType::ITM_FRM);
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
    addChildrenComponent(occurrence, QELLinkType::ITM_REL);
}

TYPMapCATUnicodeStringPVoid* QELItem::getAllLinkedRelOccs() const { return getChildrenComponents(QELLinkType::ITM_REL); }

QELRelativeOccurrence* QELItem::getLinkedRelativeOccurrence(const CATUnicodeString& key) const {
    return static_cast<QELRelativeOccurrence*>(getChildrenComponent(QELLinkType::ITM_REL, key));
}

QELRelativeOccurrence* QELItem::getLinkedRelativeOccurrence(const CATUnicodeString& key1,
                                                            const CATUnicodeString& key2) const {
    return static_cast<QELRelativeOccurrence*>(getChildrenComponent(QELLinkType::ITM_REL, key1, key2));
}

void QELItem::linkAbsOcc(QELAbsoluteOccurrence* occurrence) { addParentComponent(occurrence, QELLinkType::ITM_ABS); }

QELAbsoluteOccurrence* QELItem::getLinkedAbsOcc() const {
    return static_cast<QELAbsoluteOccurrence*>(getParentComponent(QELLinkType::ITM_ABS, 0));
}

TYPMapCATUnicodeStringPVoid* QELItem::getAllLinkedAbsOccs() const { return getParentComponents(QELLinkType::ITM_ABS); }

// A view's signature is also its component name, so the map under a
// signature holds the one view of it, filed under that same text.
void QELItem::linkAbsoluteView(QELAbsoluteView* view) {
    if (view) addComponent(view, QELLinkType::ITM_ABV, view->getSignature());
}

QELAbsoluteView* QELItem::getLinkedAbsoluteViews(const CATUnicodeString& signature) const {
    return static_cast<QELAbsoluteView*>(getComponent(QELLinkType::ITM_ABV, signature, signature));
}

TYPMapCATUnicodeStringPVoid* QELItem::getAllLinkedAbsoluteViews() const { return getComponents(QELLinkType::ITM_ABV); }

void QELItem::linkScene(QELScene* scene) {
    if (scene) addComponent(scene, QELLinkType::ITM_SCENE, scene->getSignature());
}

TYPMapCATUnicodeStringPVoid* QELItem::getAllLinkedScenes() const { return getComponents(QELLinkType::ITM_SCENE); }

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
