#ifndef QELWorkSpace_H
#define QELWorkSpace_H

#include "CATListValCATUnicodeString.h"
#include "CATUnicodeString.h"
#include "EnumDocumentType.h"
#include "QELComponent.h"
#include "TYPMapCATUnicodeStringPVoid.h"
#include "TYPVector.h"

class QELAbsoluteOccurrence;
class QELDocument;
class QELFile;
class QELItem;

// The root of one loaded structure of the host session: its root document
// (children link 2), its root item (22), every absolute occurrence of its
// assembly tree at all levels (1), the PDM configuration it was loaded under,
// and whether it is the workspace the user is working in.
//
// Ownership: a map answered by a getter is owned by this workspace, valid
// until release(); one said to be NEW, and every new vector, the caller
// deletes (not the components in it). The components answered are the
// model's: owned by their makers (the model heap for the library's
// factories), valid until freed there.
class QELWorkSpace : public QELComponent {
public:
    QELWorkSpace();

    unsigned char isActiveWorkspace() const { return _active ? 1 : 0; }
    void setActiveWorkspace(unsigned char active) { _active = active != 0; }

    // Appends to what is there already, so a second call extends the list.
    long setConfiguration(const CATListValCATUnicodeString& configuration);
    // `configuration`: the workspace's own vector, null when never set:
    // owned by this workspace's property set, valid until release().
    long getConfiguration(TYPVectorCATUnicodeString*& configuration) const;

    // The file reference name of the root document's kind ("unknown" unset).
    CATUnicodeString getDocFileLinkType() const;
    void setDocFileLinkType(EnumDocumentType type);
    // The reference name under which the root item holds its document.
    CATUnicodeString getItemDocLinkType() const;
    void setItemDocLinkType(const CATUnicodeString& refName);

    // Root document, root item and its file: the first filed counts. Each is
    // owned by its maker (the model heap for the library's factories), valid
    // until freed there.
    void linkDocument(QELDocument* document);
    QELDocument* getLinkedDocument() const;
    void linkItem(QELItem* item);
    QELItem* getItem() const;
    // The root document's first file under its own type's reference name.
    QELFile* getFile() const;

    // Occurrences of every level, keyed by name and "Parent_Comp"; owned by
    // this workspace, valid until release().
    void linkAbsoluteOccurrence(QELAbsoluteOccurrence* occurrence);
    TYPMapCATUnicodeStringPVoid* getLinkedAbsoluteOccurrences() const;
    // The first occurrence, in store order, named exactly `name`.
    QELAbsoluteOccurrence* getAbsoluteOccurrence(const CATUnicodeString& name) const;
    // Null without any occurrence; otherwise a NEW vector (caller deletes) of
    // the top-level occurrences in ascending "IndiceOfAbsolute". Two
    // occurrences with the same index give the first of them twice and lose
    // the other.
    TYPVectorPQELAbsoluteOccurrence* getFirstLevelAbsoluteOccurrences() const;

    // A NEW map "p_result" (caller deletes) from document name to document:
    // the root document, the first document of each occurrence's item, and
    // the design tables of all of them. Of two documents with one name the
    // first stays, unless it is a broken icon and the later one is not.
    TYPMapCATUnicodeStringPVoid* getWorkspaceDocuments() const;
    // `documents`: a NEW vector (caller deletes) of the workspace documents
    // that hold something under link 16 with key `refName` (a file reference
    // name or a form type such as "catpublication"). Always 0.
    int getWorkSpaceDocumentsPointingFormsByLink(const CATUnicodeString& refName,
                                                 TYPVectorPQELDocument*& documents) const;
    // `documents`: a NEW vector (caller deletes) of the workspace documents
    // (not items) that are primary of at least one GRM item link named
    // `linkName`, one per name, in the order of getWorkspaceDocuments. 0.
    //
    // A workspace document with no GRM link of that name at all stops the
    // walk there: one journal line names it, `documents` holds what was found
    // before it, and the answer is -1. Every document is asked at most once.
    int getWorkSpacePointedItemsByLink(const CATUnicodeString& linkName,
                                       TYPVectorPQELDocument*& documents) const;

    // Diagnostic dump of the occurrence tree on standard output. Every level
    // is printed at the first indent.
    void describeComponents() const;
    void describeSubLevels(const QELAbsoluteOccurrence* occurrence, int level) const;

private:
    bool _active;
};

#endif
