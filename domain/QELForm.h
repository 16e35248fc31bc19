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
// A GRM vector answered is new and the caller deletes it;
// getAllGRMDocumentLinks is a new map of new vectors, caller deletes the map
// and every vector. A link or document answered is the model's: owned by the
// model heap when the library made it, valid until QELModelHeap::freeAll.
class QELForm : public QELComponent {
public:
    QELForm();
    explicit QELForm(const CATUnicodeString& formType);
    QELForm(const CATUnicodeString& formType, const CATUnicodeString& name);

    CATUnicodeString getFormType() const;
    void setFormType(const CATUnicodeString& formType);

    void linkDocument(QELDocument* document);
    // Owned by its maker (the model heap for the library's factories).
    QELDocument* getLinkedDocument() const;

    // GRM links to documents, the form being primary. The filter keeps a
    // link whose primary is a form OR whose secondary is a document. A link is
    // owned by the model heap, valid until QELModelHeap::freeAll; a vector is
    // new, caller deletes; the map is new, caller deletes it and its vectors.
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
