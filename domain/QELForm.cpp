#include "QELForm.h"

#include "QELDocument.h"
#include "QELLink.h"
#include "QELLinkType.h"
#include "UTILString.h"

namespace {
const char* const kFormClass = "QELFORM_CLASSNAME";
const char* const kDocumentClass = "QELDOCUMENT_CLASSNAME";
const char* const kTypeProperty = "QELFORM_PROPERTY_TYPE_FORM";
} // namespace

QELForm::QELForm() { set_ClassName(kFormClass); }

QELForm::QELForm(const CATUnicodeString& formType) {
    set_ClassName(kFormClass);
    set_Name(UTILString::genUuid());
    setFormType(formType);
}

QELForm::QELForm(const CATUnicodeString& formType, const CATUnicodeString& name) : QELForm(formType) {
    addStringProperty("QELFRM_PROPERTY_NAME", name);
}

CATUnicodeString QELForm::getFormType() const { return getStringProperty(kTypeProperty); }

void QELForm::setFormType(const CATUnicodeString& formType) { addStringProperty(kTypeProperty, formType); }

void QELForm::linkDocument(QELDocument* document) { addParentComponent(document, QELLinkType::FRM_DOC); }

QELDocument* QELForm::getLinkedDocument() const {
    return static_cast<QELDocument*>(getParentComponent(QELLinkType::FRM_DOC, 0));
}

// ---- GRM links ---------------------------------------------------------------

QELLink* QELForm::addGRMDocumentLink(const CATUnicodeString& name, QELDocument* document) {
    return addGRMLink(name, document);
}

TYPVectorPQELLink* QELForm::getGRMDocumentLinks(const CATUnicodeString& name) const {
    return getGRMLinks(name, kFormClass, kDocumentClass);
}

TYPMapCATUnicodeStringPVoid* QELForm::getAllGRMDocumentLinks() const {
    return getAllGRMLinks(kFormClass, kDocumentClass);
}

QELLink* QELForm::getGRMDocumentLinksWhereUsedAsPrimary(const CATUnicodeString& name,
                                                        const QELDocument* other) const {
    return getGRMLinksWhereUsedAsPrimary(name, other);
}

TYPVectorPQELLink* QELForm::getGRMDocumentLinksWhereUsedAsPrimary(const QELDocument* other) const {
    return getGRMLinksWhereUsedAsPrimary(other);
}

TYPVectorPQELLink* QELForm::getGRMDocumentLinksWhereUsedAsPrimary(const CATUnicodeString& name) const {
    return getGRMLinksWhereUsedAsPrimary(name, CATUnicodeString(kDocumentClass));
}

QELLink* QELForm::getGRMDocumentLinksWhereUsedAsSecondary(const CATUnicodeString& name,
                                                          const QELDocument* other) const {
    return getGRMLinksWhereUsedAsSecondary(name, other);
}

TYPVectorPQELLink* QELForm::getGRMDocumentLinksWhereUsedAsSecondary(const QELDocument* other) const {
    return getGRMLinksWhereUsedAsSecondary(other);
}

TYPVectorPQELLink* QELForm::getGRMDocumentLinksWhereUsedAsSecondary(const CATUnicodeString& name) const {
    return getGRMLinksWhereUsedAsSecondary(name, CATUnicodeString(kDocumentClass));
}
