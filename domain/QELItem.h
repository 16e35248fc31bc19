#ifndef QELItem_H
#define QELItem_H

#include "CATUnicodeString.h"
#include "EnumDocumentType.h"
#include "QELComponent.h"
#include "TYPMapCATUnicodeStringPVoid.h"
#include "TYPVector.h"

class QELAbsoluteOccurrence;
class QELAbsoluteView;
class QELDocument;
class QELForm;
class QELLink;
class QELRelativeOccurrence;
class QELScene;

// A PDM item (item revision): the documents that belong to it (link 11,
// ITM_DOC), its forms (12, ITM_FRM) and the assembly objects that show it
// (relative occurrences 9, absolute occurrences 10, absolute views 8,
// scenes 25).
//
// Ownership, as each group below says: a map is owned by this item, valid
// until release(); a vector is new and the caller deletes it; the objects in
// them, and those answered singly, stay the model's (owned by the model heap
// when the library made them, valid until QELModelHeap::freeAll).
class QELItem : public QELComponent {
public:
    QELItem();
    explicit QELItem(const CATUnicodeString& name);

    // Documents
    // Reuses the document the session knows under docName, keeping its type;
    // either way the item and the document point at each other under refName.
    // A new document is owned by the model heap, valid until
    // QELModelHeap::freeAll.
    QELDocument* createDocument(const CATUnicodeString& refName, EnumDocumentType type,
                                const CATUnicodeString& docName);
    // One direction only.
    void linkDocument(const CATUnicodeString& refName, QELDocument* document);
    // Maps owned by this item, valid until release(); null when none.
    TYPMapCATUnicodeStringPVoid* getLinkedDocuments(const CATUnicodeString& refName) const;
    // Reference name -> map of documents.
    TYPMapCATUnicodeStringPVoid* getAllLinkedDocuments() const;

    // Forms
    void linkForm(QELForm* form);
    // Owned by this item, valid until release().
    TYPMapCATUnicodeStringPVoid* getLinkedForms(const CATUnicodeString& formType) const;
    // Everything under link 12, taken as forms without a class test; a new
    // vector, caller deletes.
    TYPVectorPQELForm* getAllLinkedForms() const;

    // Assembly objects. Maps owned by this item, valid until release().
    void linkRelativeOccurrence(QELRelativeOccurrence* occurrence);
    TYPMapCATUnicodeStringPVoid* getAllLinkedRelOccs() const;
    QELRelativeOccurrence* getLinkedRelativeOccurrence(const CATUnicodeString& key) const;
    // The one under key2, only when one under key1 exists too.
    QELRelativeOccurrence* getLinkedRelativeOccurrence(const CATUnicodeString& key1,
                                                       const CATUnicodeString& key2) const;
    void linkAbsOcc(QELAbsoluteOccurrence* occurrence);
    QELAbsoluteOccurrence* getLinkedAbsOcc() const;
    TYPMapCATUnicodeStringPVoid* getAllLinkedAbsOccs() const;
    void linkAbsoluteView(QELAbsoluteView* view);
    QELAbsoluteView* getLinkedAbsoluteViews(const CATUnicodeString& signature) const;
    // Signature -> map of views.
    TYPMapCATUnicodeStringPVoid* getAllLinkedAbsoluteViews() const;
    void linkScene(QELScene* scene);
    // Signature -> map of scenes; owned by this item, valid until release().
    TYPMapCATUnicodeStringPVoid* getAllLinkedScenes() const;

    // GRM links to documents, the item being primary. The filter keeps a link
    // whose primary is an item OR whose secondary is a document. A link is
    // owned by the model heap, valid until QELModelHeap::freeAll; a vector is
    // new, caller deletes; the map is new and the caller deletes it with every
    // vector in it.
    QELLink* addGRMDocumentLink(const CATUnicodeString& name, QELDocument* document);
    TYPVectorPQELLink* getGRMDocumentLinks(const CATUnicodeString& name) const;
    TYPMapCATUnicodeStringPVoid* getAllGRMDocumentLinks() const;
    unsigned char hasGRMDocumentLinkWhereUsedAsSecondary(const CATUnicodeString& name) const;
    QELLink* getGRMDocumentLinksWhereUsedAsPrimary(const CATUnicodeString& name, const QELDocument* other) const;
    TYPVectorPQELLink* getGRMDocumentLinksWhereUsedAsPrimary(const QELDocument* other) const;
    TYPVectorPQELLink* getGRMDocumentLinksWhereUsedAsPrimary(const CATUnicodeString& name) const;
    QELLink* getGRMDocumentLinksWhereUsedAsSecondary(const CATUnicodeString& name, const QELDocument* other) const;
    TYPVectorPQELLink* getGRMDocumentLinksWhereUsedAsSecondary(const QELDocument* other) const;
    TYPVectorPQELLink* getGRMDocumentLinksWhereUsedAsSecondary(const CATUnicodeString& name) const;
};

#endif
