#ifndef QELDocument_H
#define QELDocument_H

#include "CATUnicodeString.h"
#include "EnumDocumentType.h"
#include "QELComponent.h"
#include "TYPMapCATUnicodeStringPVoid.h"
#include "TYPVector.h"

class QELAbsoluteOccurrence;
class QELFile;
class QELForm;
class QELGeoDatas;
class QELItem;
class QELLink;
class QELStacking;

// One CAD document of the host session: its type and flags live in
// properties, its files, forms, design tables and linked documents under link
// 16 (REF), its items under link 15 (DOC_ITM), and its alternate shapes and
// secondaries as GRM links where it is primary.
//
// Ownership, as each group below says: a map is owned by this document, valid
// until release(); a vector is new and the caller deletes it, and a map of
// vectors the caller deletes with every vector in it; the components, forms,
// files and links in them, and those answered singly, stay the model's (owned
// by the model heap when the library made them, valid until
// QELModelHeap::freeAll).
class QELDocument : public QELComponent {
public:
    // Prefix of the qualified function names given to the journal and the
    // error handler.
    static constexpr const char* _CteCLASS_NAME = "QELDocument::";
    // The document's dynamic pair lists of mapping attributes (names at even
    // places, each followed by its value): the PDM mapping's, the OEM's and
    // the CAD system's own. The first is also filled from the answer.
    static constexpr const char* kMappingAttributes = "Mapping_Attribut";
    static constexpr const char* kOEMMappingAttributes = "OEM_Mapping_Attribut";
    static constexpr const char* kCATIAMappingAttributes = "CATIA_Mapping_Attribut";

    QELDocument();
    explicit QELDocument(const CATUnicodeString& name);
    QELDocument(const CATUnicodeString& name, EnumDocumentType type);

    // Type and flags
    // -1 as well when the document has no "DocumentType" at all.
    EnumDocumentType getType() const;
    void setType(EnumDocumentType type);
    long getCalculGeometricStatus(unsigned char& flag) const;
    long setCalculGeometricStatus(unsigned char flag);
    long getComputeGeo(unsigned char& flag) const;
    long setComputeGeo(unsigned char flag);
    // Exactly "FF": letter case matters.
    unsigned char isAForeignFile() const;

    // Files, items, forms and linked documents
    // Reuses the file the session knows under fileName, so documents naming
    // the same file share it. Owned by the model heap (a new file) or by the
    // file's maker, valid until freed there.
    QELFile* createFile(const CATUnicodeString& refName, const CATUnicodeString& fileName);
    // Maps owned by this document, valid until release(); null when none.
    TYPMapCATUnicodeStringPVoid* getLinkedFiles(const CATUnicodeString& refName) const;
    void linkItem(const CATUnicodeString& refName, QELItem* item);
    TYPMapCATUnicodeStringPVoid* getLinkedItems(const CATUnicodeString& refName) const;
    // Reference name -> map of items.
    TYPMapCATUnicodeStringPVoid* getAllLinkedItems() const;
    void linkDocument(const CATUnicodeString& refName, QELDocument* document);
    void linkForm(QELForm* form);
    // Always a new form, unlike addPublication; owned by the model heap,
    // valid until QELModelHeap::freeAll.
    QELForm* addCATIADocAttributesForm();
    TYPMapCATUnicodeStringPVoid* getLinkedCATIADocAttributesForms() const;
    // The publication of that visible name if there is one, else a new one;
    // owned by the model heap, valid until QELModelHeap::freeAll.
    QELForm* addPublication(const CATUnicodeString& name);
    QELForm* getLinkedPublication(const CATUnicodeString& name) const;
    // Owned by this document, valid until release().
    TYPMapCATUnicodeStringPVoid* getLinkedPublications() const;
    // New vectors, caller deletes.
    TYPVectorPQELDocument* getAllLinkedDocuments() const;
    TYPVectorPQELFile* getAllLinkedFiles() const;
    TYPVectorPQELForm* getAllLinkedForms() const;

    // Design tables
    // The new table is owned by the model heap, valid until
    // QELModelHeap::freeAll.
    QELDocument* addDesignTable(const CATUnicodeString& name, const CATUnicodeString& oldName);
    void addDesignTable(QELDocument* designTable);
    // New vector, caller deletes: in ascending "indiceDesignTable"; of two
    // with the same index the first filed is kept.
    TYPVectorPQELDocument* getLinkedDesignTables() const;

    // Alternate shape representations and secondaries
    // The new document is owned by the model heap, valid until
    // QELModelHeap::freeAll.
    QELDocument* addAlternateShapeRepresentation(const CATUnicodeString& shapeRepName,
                                                 const CATUnicodeString& docName);
    void linkAlternateShapeRepresentation(const CATUnicodeString& shapeRepName, QELDocument* document);
    // New vectors of links, caller deletes (null without a GRM link at all).
    TYPVectorPQELLink* getLinkedAlternateShapeRepresentations() const;
    TYPVectorPQELLink* getLinkedSecondaries() const;

    // GRM links. The class filters keep a link when its primary is of the
    // first class OR its secondary of the second: a link naming this document
    // at either end passes the document filter. A link answered is owned by
    // the model heap, valid until QELModelHeap::freeAll.
    QELLink* addGRMDocumentLink(const CATUnicodeString& name, QELDocument* document);
    QELLink* addGRMItemLink(const CATUnicodeString& name, QELItem* item);
    void addGRMFormLink(const CATUnicodeString& name, QELForm* form);
    // New vectors, caller deletes (null without a GRM link at all).
    TYPVectorPQELLink* getGRMDocumentLinks(const CATUnicodeString& name) const;
    TYPVectorPQELLink* getGRMFormLinks(const CATUnicodeString& name) const;
    TYPVectorPQELLink* getGRMItemLinks(const CATUnicodeString& name) const;
    // New maps of new vectors; caller deletes the map and every vector.
    TYPMapCATUnicodeStringPVoid* getAllGRMDocumentLinks() const;
    TYPMapCATUnicodeStringPVoid* getAllGRMFormLinks() const;
    TYPMapCATUnicodeStringPVoid* getAllGRMItemLinks() const;

    // Where-used: a link is owned by the model heap (valid until
    // QELModelHeap::freeAll); a vector is new, caller deletes.
    QELLink* getGRMDocumentLinksWhereUsedAsPrimary(const CATUnicodeString& name, const QELDocument* other) const;
    QELLink* getGRMFormLinksWhereUsedAsPrimary(const CATUnicodeString& name, const QELForm* other) const;
    QELLink* getGRMItemLinksWhereUsedAsPrimary(const CATUnicodeString& name, const QELItem* other) const;
    TYPVectorPQELLink* getGRMDocumentLinksWhereUsedAsPrimary(const QELDocument* other) const;
    TYPVectorPQELLink* getGRMFormLinksWhereUsedAsPrimary(const QELForm* other) const;
    TYPVectorPQELLink* getGRMItemLinksWhereUsedAsPrimary(const QELItem* other) const;
    // Null when the document has no link of that name.
    TYPVectorPQELLink* getGRMDocumentLinksWhereUsedAsPrimary(const CATUnicodeString& name) const;
    TYPVectorPQELLink* getGRMFormLinksWhereUsedAsPrimary(const CATUnicodeString& name) const;
    TYPVectorPQELLink* getGRMItemLinksWhereUsedAsPrimary(const CATUnicodeString& name) const;

    // As secondary: a link is owned by the model heap (valid until
    // QELModelHeap::freeAll); a vector is new, caller deletes.
    QELLink* getGRMDocumentLinksWhereUsedAsSecondary(const CATUnicodeString& name, const QELDocument* other) const;
    QELLink* getGRMFormLinksWhereUsedAsSecondary(const CATUnicodeString& name, const QELForm* other) const;
    QELLink* getGRMItemLinksWhereUsedAsSecondary(const CATUnicodeString& name, const QELItem* other) const;
    TYPVectorPQELLink* getGRMDocumentLinksWhereUsedAsSecondary(const QELDocument* other) const;
    TYPVectorPQELLink* getGRMFormLinksWhereUsedAsSecondary(const QELForm* other) const;
    TYPVectorPQELLink* getGRMItemLinksWhereUsedAsSecondary(const QELItem* other) const;
    TYPVectorPQELLink* getGRMDocumentLinksWhereUsedAsSecondary(const CATUnicodeString& name) const;
    TYPVectorPQELLink* getGRMFormLinksWhereUsedAsSecondary(const CATUnicodeString& name) const;
    TYPVectorPQELLink* getGRMItemLinksWhereUsedAsSecondary(const CATUnicodeString& name) const;

    // Always sets `items` to a new vector, caller deletes (even the empty one
    // of a -1). -1 when the document has no GRM link of that name, else 0.
    int getPointedItemsByLink(const CATUnicodeString& linkName, TYPVectorPQELItem*& items) const;

    // Assembly and composites
    void linkComponentAbsoluteOccurrence(QELAbsoluteOccurrence* occurrence);
    // Maps owned by this document, valid until release().
    TYPMapCATUnicodeStringPVoid* getLinkedComponentAbsoluteOccurrences() const;
    void linkBody(QELGeoDatas* body);
    // Signature -> map of bodies.
    TYPMapCATUnicodeStringPVoid* getLinkedBodys() const;
    void linkStacking(QELStacking* stacking);
};

#endif
