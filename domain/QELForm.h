#ifndef QELForm_H
#define QELForm_H

#include "CATUnicodeString.h"
#include "QELComponent.h"
#include "TYPMapCATUnicodeStringPVoid.h"
#include "TYPVector.h"

class QELDocument;
class QELLink;

// A PDM form attached to a document (link 13, FRM_DOC). Its component name is
// a fresh UUID so that forms of one type and visible name can coexist under
// one key; the visible name is the property "QELFRM_PROPERTY_NAME".
//
// The GRM vectors returned are new and the caller deletes them;
// getAllGRMDocumentLinks is a new map of new vectors, both the caller's.
class QELForm : public QELComponent {
public:
    QELForm();
    explicit QELForm(const CATUnicodeString& formType);
    QELForm(const CATUnicodeString& formType, const CATUnicodeString& name);

    CATUnicodeString getFormType() const;
    void setFormType(const CATUnicodeString& formType);

    void linkDocument(QELDocument* document);
    QELDocument* getLinkedDocument() const;

    // GRM links to documents, the form being primary. The filter keeps a
    // link whose primary is a form OR whose secondary is a document.
    QELLink* addGRMDocumentLink(const CATUnicodeString& name, QELDocument* document);
    TYPVectorPQELLink* getGRMDocumentLinks(const CATUnicodeString& name) const;
    TYPMapCATUnicodeStringPVoid* getAllGRMDocumentLinks() const;
    QELLink* getGRMDocumentLinksWhereUsedAsPrimary(const CATUnicodeString& name, const QELDocument* other) const;
    TYPVectorPQELLink* getGRMDocumentLinksWhereUsedAsPrimary(const QELDocument* other) const;
    TYPVectorPQELLink* getGRMDocumentLinksWhereUsedAsPrimary(const CATUnicodeString& name) const;
    QELLink* getGRMDocumentLinksWhereUsedAsSecondary(const CATUnicodeString& name, const QELDocument* other) const;
    TYPVectorPQELLink* getGRMDocumentLinksWhereUsedAsSecondary(const QELDocument* other) const;
    TYPVectorPQELLink* getGRMDocumentLinksWhereUsedAsSecondary(const CATUnicodeString& name) const;
};

#endif
