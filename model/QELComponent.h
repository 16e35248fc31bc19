#ifndef QELComponent_H
#define QELComponent_H

#include <cstdint>

#include "CATUnicodeString.h"
#include "QELObject.h"
#include "QELPropertyHolder.h"
#include "TYPMapCATUnicodeStringPVoid.h"
#include "TYPMapIntPVoid.h"
#include "TYPSharedText.h"
#include "TYPVector.h"

class QELLink;

// Base of every node kind of the model: a unique name, typed properties,
// typed structural relations and named GRM links.
//
// Relations: link type -> relation name -> key of the related component ->
// component. The key is the component's name, except for absolute occurrences
// (addAbsolute / addParentAbsolute). GRM links: link type 19 -> link name ->
// the links of that name touching this component, in the order added.
//
// A component owns its maps and property set, never the components it relates
// to and never its links. Accordingly, a map or vector answered here is owned
// by this component, valid until release() or its destruction, unless its
// comment says "caller deletes". A component or link answered is owned by
// whoever made it: the model heap for those the library's factories make
// (valid until QELModelHeap::freeAll), the caller for one it constructed.
class QELComponent : public QELObject, public QELPropertyHolder {
public:
    QELComponent();
    QELComponent(const QELComponent&) = delete;
    QELComponent& operator=(const QELComponent&) = delete;
    ~QELComponent();

    // The name is a shared copy (TYPSharedText) that the relation maps keying
    // this component hold too: renaming takes a new copy and leaves their keys
    // as they were.
    const CATUnicodeString& get_Name() const { return _name->text; }
    void set_Name(const CATUnicodeString& name);
    // This component's entry in the table of live components.
    uint64_t get_Handle() const { return _handle; }

    // Relations
    void addComponent(QELComponent* component, int type, const CATUnicodeString& relationName);
    void addChildrenComponent(QELComponent* component, int type);
    void addParentComponent(QELComponent* component, int type);
    // Keyed by the occurrence's name followed by its "Parent_Comp".
    void addAbsolute(QELComponent* occurrence, int type, const CATUnicodeString& relationName);
    // Keyed by THIS component's name and "Parent_Comp", whatever the parent.
    void addParentAbsolute(QELComponent* occurrence, int type, const CATUnicodeString& relationName);

    // The relation maps below are owned by this component, valid until
    // release(); null while there is no relation of that type (and name).
    // The components in them, and those answered singly, are owned by their
    // makers (see above).
    TYPMapCATUnicodeStringPVoid* getComponents(int type) const;
    TYPMapCATUnicodeStringPVoid* getComponents(int type, const CATUnicodeString& relationName) const;
    // The same for an ISO-8859-1 relation name given as text.
    TYPMapCATUnicodeStringPVoid* getComponents(int type, const char* relationName) const;
    QELComponent* getComponent(int type, const CATUnicodeString& relationName, const CATUnicodeString& key) const;
    // The index-th relation map (from 0) of the type, whatever its name; the
    // name argument is not used.
    TYPMapCATUnicodeStringPVoid* getComponent(int type, const CATUnicodeString& relationName, int index) const;
    TYPMapCATUnicodeStringPVoid* getChildrenComponents(int type) const;
    TYPMapCATUnicodeStringPVoid* getParentComponents(int type) const;
    QELComponent* getChildrenComponent(int type, int index) const;
    QELComponent* getParentComponent(int type, int index) const;
    // Single components: owned by their makers, valid until freed there.
    QELComponent* getChildrenComponent(int type, const CATUnicodeString& key) const;
    QELComponent* getParentComponent(int type, const CATUnicodeString& key) const;
    // The child under key2, only when a child under key1 exists too.
    QELComponent* getChildrenComponent(int type, const CATUnicodeString& key1, const CATUnicodeString& key2) const;
    // -1 when the type or the relation has none.
    int getChildrenCount(int type) const;
    int getParentsCount(int type) const;
    int getLinkSize() const { return 0; }

    // GRM links
    // Answers the existing link of that name to that secondary, or makes one.
    // "CATIA_alternateShapeRep_Link_type", "CATIA_componentShapeRep_Link_type"
    // and "catdesigntable" always make a new link.
    // The link is owned by the model heap, valid until QELModelHeap::freeAll.
    QELLink* addGRMLink(const CATUnicodeString& name, QELComponent* secondary);
    void addGRMLink(QELLink* link);
    // The links of that name; the vector is owned by this component, valid
    // until release(). Null without one.
    TYPVectorPQELLink* getGRMLinks(const CATUnicodeString& name) const;
    // New vector, caller deletes: the links whose primary is of primaryClass
    // OR whose secondary is of secondaryClass. Null without any GRM link.
    TYPVectorPQELLink* getGRMLinks(const CATUnicodeString& name, const CATUnicodeString& primaryClass,
                                   const CATUnicodeString& secondaryClass) const;
    // Link name -> vector of links; owned by this component, valid until
    // release().
    TYPMapCATUnicodeStringPVoid* getAllGRMLinks() const;
    // New map of new vectors, filtered as above; caller deletes the map and
    // every vector in it.
    TYPMapCATUnicodeStringPVoid* getAllGRMLinks(const CATUnicodeString& primaryClass,
                                                const CATUnicodeString& secondaryClass) const;
    int getAllLinks(TYPVectorPQELLink& out) const;

    // Where-used queries; names match when identical (Compare answers 2).
    // A vector answered is new, caller deletes (the links in it stay the
    // model heap's); a single link is owned by the model heap, valid until
    // QELModelHeap::freeAll.
    TYPVectorPQELLink* getGRMLinksWhereUsedAsPrimary(const CATUnicodeString& name) const;
    TYPVectorPQELLink* getGRMLinksWhereUsedAsPrimary(const QELComponent* other) const;
    QELLink* getGRMLinksWhereUsedAsPrimary(const CATUnicodeString& name, const QELComponent* other) const;
    // Null without a link of that name. For "catdesigntable" every link of the
    // name; otherwise the first link per secondary whose primary is this
    // component and whose secondary is of the class.
    TYPVectorPQELLink* getGRMLinksWhereUsedAsPrimary(const CATUnicodeString& name,
                                                     const CATUnicodeString& secondaryClass) const;
    TYPVectorPQELLink* getGRMLinksWhereUsedAsSecondary(const CATUnicodeString& name) const;
    TYPVectorPQELLink* getGRMLinksWhereUsedAsSecondary(const QELComponent* other) const;
    QELLink* getGRMLinksWhereUsedAsSecondary(const CATUnicodeString& name, const QELComponent* other) const;
    TYPVectorPQELLink* getGRMLinksWhereUsedAsSecondary(const CATUnicodeString& name,
                                                       const CATUnicodeString& primaryClass) const;
    bool hasGRMLinkWhereUsedAsSecondary(const CATUnicodeString& name, const CATUnicodeString& primaryClass) const;

    bool isAbsolute() const;
    bool isWorkSpace() const;

    // Style 0: text dump; style 1: XML-like dump.
    CATUnicodeString print(int style) const;
    // Frees relation maps, link tables (not the links) and properties.
    void release();

private:
    // Owned by this component, valid until release(); made when `create`.
    TYPMapCATUnicodeStringPVoid* relationMap(int type, const CATUnicodeString& relationName, bool create);
    void addUnderKey(QELComponent* component, int type, const CATUnicodeString& relationName,
                     const CATUnicodeString& key);
    // The where-used searches: vectors new, caller deletes; a single link
    // owned by the model heap.
    TYPVectorPQELLink* whereUsed(const CATUnicodeString& name, const CATUnicodeString& otherClass,
                                 bool asPrimary) const;
    TYPVectorPQELLink* whereUsedWith(const QELComponent* other, bool asPrimary) const;
    QELLink* firstWhereUsed(const CATUnicodeString& name, const QELComponent* other, bool asPrimary) const;
    TYPVectorPQELLink* namedWhereUsed(const CATUnicodeString& name, bool asPrimary) const;

    const TYPSharedText::Node* _name;
    TYPMapIntPVoid* _grmLinks;  // "MAP_DM_LINK"
    TYPMapIntPVoid* _relations; // "MAP_TYPED_LINK"
    uint64_t _handle;
};

#endif
