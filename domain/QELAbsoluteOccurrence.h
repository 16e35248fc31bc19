#ifndef QELAbsoluteOccurrence_H
#define QELAbsoluteOccurrence_H

#include "CATUnicodeString.h"
#include "QELComponent.h"
#include "TYPMapCATUnicodeStringPVoid.h"
#include "TYPVector.h"

class QELAbsoluteView;
class QELDocument;
class QELItem;
class QELRelativeOccurrence;
class QELScene;
class QELWorkSpace;

// One node of the expanded assembly tree of a workspace, identified by its
// whole path from the top: its name is the instance-name path ("A+++B") when
// it has an instance name, else the UID path.
//
// Links: 17 to the parent (LINKNAME_PARENT) and children (LINKNAME_CHILD)
// occurrences, 3 to the workspace of a top-level occurrence, 4 to its item,
// 5 to its relative occurrence, 6 to its absolute views and 26 to its scenes
// (both keyed by signature), and GRM links to component shape
// representations.
//
// Construction errors and orphan reports are printed on standard output.
//
// The components answered here are the model's: owned by their makers (the
// model heap for the library's factories), valid until freed there. Maps and
// vectors say whether the caller deletes them.
class QELAbsoluteOccurrence : public QELComponent {
public:
    QELAbsoluteOccurrence();
    // `parent` is a workspace or an absolute occurrence. An occurrence parent
    // is linked both ways here; a workspace parent is not linked, the caller
    // uses QELWorkSpace::linkAbsoluteOccurrence and linkWorkSpace.
    QELAbsoluteOccurrence(const CATUnicodeString& occUID, const CATUnicodeString& instanceName,
                          QELComponent* parent);

    CATUnicodeString getOccUID() const;
    CATUnicodeString getInstanceName() const;
    CATUnicodeString getPathOccUIDS() const;
    CATUnicodeString getPathInstanceNames() const;
    long getHideInAnyContext(unsigned char& hidden) const;
    long setHideInAnyContext(unsigned char hidden);

    // Single getters answer the first object filed, null when none. The map
    // of children is owned by this occurrence, valid until release().
    void linkItem(QELItem* item);
    QELItem* getLinkedItem() const;
    void linkRelativeOccurrence(QELRelativeOccurrence* relative);
    QELRelativeOccurrence* getLinkedRelativeOccurrence() const;
    void linkWorkSpace(QELWorkSpace* workspace);
    QELWorkSpace* getLinkedWorkSpace() const;
    void linkParentAbsoluteOccurrence(QELAbsoluteOccurrence* parent);
    QELAbsoluteOccurrence* getLinkedParentAbsoluteOccurrence() const;
    void linkChildAbsoluteOccurrence(QELAbsoluteOccurrence* child);
    TYPMapCATUnicodeStringPVoid* getLinkedChildAbsoluteOccurrences() const;
    QELAbsoluteOccurrence* getLinkedChildAbsoluteOccurrence(int index) const;

    // Views, filed under their signature; a view answered is owned by its
    // maker (the model heap for the library's factories), valid until freed
    // there.
    void linkAbsoluteView(QELAbsoluteView* view);
    QELAbsoluteView* getLinkedAbsoluteView(const CATUnicodeString& signature) const;
    // The first view whose context item has exactly the name of `context`.
    QELAbsoluteView* getLinkedAbsoluteView(const QELItem* context) const;
    // Null without any view; otherwise a NEW map "p_map_result" from
    // signature to view: caller deletes the map (not the views).
    TYPMapCATUnicodeStringPVoid* getLinkedAbsoluteViews() const;

    // Scenes, filed under their signature; a scene answered is owned by the
    // model heap, valid until QELModelHeap::freeAll.
    void linkScene(QELScene* scene);
    QELScene* getLinkedScene(const CATUnicodeString& signature) const;
    // Signature -> map of scenes; owned by this occurrence, valid until
    // release().
    TYPMapCATUnicodeStringPVoid* getLinkedScenes() const;
    // The scene belongs to the model heap. Without a context the scene
    // reports the error and nothing is filed.
    void createScene(QELItem* context, const CATUnicodeString& name);

    // The document is owned by the model heap, valid until
    // QELModelHeap::freeAll.
    QELDocument* addComponentShapeRepresentation(const CATUnicodeString& shapeRepName,
                                                 const CATUnicodeString& docName);
    void linkComponentShapeRepresentation(const CATUnicodeString& shapeRepName,
                                          QELDocument* document);
    // New vector, caller deletes; null without any GRM link.
    TYPVectorPQELLink* getLinkedComponentShapeRepresentations() const;

    // The name of this occurrence's view as seen from the ancestor item
    // `context`: the instance names (and "Parent_Comp" pieces, last first)
    // from this occurrence up to the context, then the context's name, joined
    // by "+++". 0x80004005 and an empty signature when `context` is null or
    // is not the item of an ancestor (or the workspace's root item). On
    // success the status is 0, or the piece count of the last "Parent_Comp"
    // split.
    long buildAbsoluteViewSignature(const QELItem* context, CATUnicodeString& signature) const;
    // `views`: null, or a NEW vector (caller deletes) of the views of
    // this occurrence found in each ancestor context, nearest context first.
    // Answers the status of the last signature built.
    long getAllAbsViews(TYPVectorPQELComponent*& views) const;
    // `parents`: a NEW vector (caller deletes): the workspace, then the
    // ancestors from the top down to the direct parent. Always 0.
    long getAllParents(TYPVectorPQELComponent*& parents) const;
    // A NEW map "p_returned_map" (caller deletes) from name to
    // ancestor: the parents upwards, then the workspace.
    TYPMapCATUnicodeStringPVoid* getAllParentComponents() const;

private:
    void build(const CATUnicodeString& occUID, const CATUnicodeString& instanceName,
               QELComponent* parent);
};

#endif
