#include "QELComponent.h"

#include <unordered_set>

#include "QELHandleTable.h"
#include "QELLink.h"
#include "QELLinkType.h"
#include "QELModelHeap.h"
#include "QELPropertySet.h"
#include "UTILString.h"

namespace {

const char* const kChild = "LINKNAME_CHILD";
const char* const kParent = "LINKNAME_PARENT";

using LinkTable = TYPMapCATUnicodeStringPVoid;     // link name -> TYPVectorPQELLink*
using RelationTable = TYPMapCATUnicodeStringPVoid; // relation name -> key -> component

bool identical(const CATUnicodeString& a, const CATUnicodeString& b) { return a.Compare(b) == 2; }

const QELComponent* endOf(const QELLink* link, bool primary) {
    return primary ? link->get_Primary() : link->get_Secondary();
}

bool alwaysNewLink(const CATUnicodeString& name) {
    static const CATUnicodeString kNames[] = {"CATIA_alternateShapeRep_Link_type", "CATIA_componentShapeRep_Link_type",
                                              "catdesigntable"};
    for (const auto& n : kNames) {
        if (name.Compare(n) != 0) return true;
    }
    return false;
}

} // namespace

QELComponent::QELComponent()
    : _name(TYPSharedText::acquire(CATUnicodeString())), _grmLinks(nullptr), _relations(nullptr),
      _handle(QELHandleTable::add(this)) {}

QELComponent::~QELComponent() {
    release();
    TYPSharedText::release(_name);
    QELHandleTable::remove(_handle);
}

void QELComponent::set_Name(const CATUnicodeString& name) {
    // Acquired first: `name` may be this component's own name.
    const TYPSharedText::Node* shared = TYPSharedText::acquire(name);
    TYPSharedText::release(_name);
    _name = shared;
}

// ---- relations -------------------------------------------------------------

TYPMapCATUnicodeStringPVoid* QELComponent::relationMap(int type, const CATUnicodeString& relationName, bool create) {
    if (!_relations) {
        if (!create) return nullptr;
        _relations = new TYPMapIntPVoid("MAP_TYPED_LINK");
    }
    auto* byName = static_cast<RelationTable*>(_relations->find(type));
    bool newByName = false;
    if (!byName) {
        if (!create) return nullptr;
        byName = new RelationTable("p_sub_map");
        newByName = true;
    }
    auto* byKey = static_cast<TYPMapCATUnicodeStringPVoid*>(byName->find(relationName));
    if (!byKey && create) {
        byKey = new TYPMapCATUnicodeStringPVoid("p_sub_sub_map");
        byName->insert(relationName, byKey, "TYPMapCATUnicodeStringPVoid", 0);
    }
    if (newByName) _relations->insert(type, byName, "TYPMapCATUnicodeStringPVoid", 0);
    return byKey;
}

void QELComponent::addUnderKey(QELComponent* component, int type, const CATUnicodeString& relationName,
                               const CATUnicodeString& key) {
    relationMap(type, relationName, true)->insert(key, component, "QELComponent", 0);
}

void QELComponent::addComponent(QELComponent* component, int type, const CATUnicodeString& relationName) {
    if (!component) return;
    // Keyed by the shared copy of the name, so no text is copied.
    relationMap(type, relationName, true)->insert(component->_name, component, "QELComponent", 0);
}

void QELComponent::addChildrenComponent(QELComponent* component, int type) { addComponent(component, type, kChild); }

void QELComponent::addParentComponent(QELComponent* component, int type) { addComponent(component, type, kParent); }

void QELComponent::addAbsolute(QELComponent* occurrence, int type, const CATUnicodeString& relationName) {
    if (!occurrence) return;
    addUnderKey(occurrence, type, relationName, occurrence->get_Name() + occurrence->getStringProperty("Parent_Comp"));
}

void QELComponent::addParentAbsolute(QELComponent* occurrence, int type, const CATUnicodeString& relationName) {
    if (!occurrence) return;
    addUnderKey(occurrence, type, relationName, get_Name() + getStringProperty("Parent_Comp"));
}

TYPMapCATUnicodeStringPVoid* QELComponent::getComponents(int type) const {
    return _relations ? static_cast<RelationTable*>(_relations->find(type)) : nullptr;
}

TYPMapCATUnicodeStringPVoid* QELComponent::getComponents(int type, const CATUnicodeString& relationName) const {
    RelationTable* byName = getComponents(type);
    return byName ? static_cast<TYPMapCATUnicodeStringPVoid*>(byName->find(relationName)) : nullptr;
}

TYPMapCATUnicodeStringPVoid* QELComponent::getComponents(int type, const char* relationName) const {
    RelationTable* byName = getComponents(type);
    return byName ? static_cast<TYPMapCATUnicodeStringPVoid*>(byName->find(relationName)) : nullptr;
}

QELComponent* QELComponent::getComponent(int type, const CATUnicodeString& relationName,
                                         const CATUnicodeString& key) const {
    TYPMapCATUnicodeStringPVoid* byKey = getComponents(type, relationName);
    return byKey ? static_cast<QELComponent*>(byKey->find(key)) : nullptr;
}

TYPMapCATUnicodeStringPVoid* QELComponent::getComponent(int type, const CATUnicodeString&, int index) const {
    RelationTable* byName = getComponents(type);
    return byName ? static_cast<TYPMapCATUnicodeStringPVoid*>(byName->getObject(index)) : nullptr;
}

TYPMapCATUnicodeStringPVoid* QELComponent::getChildrenComponents(int type) const { return getComponents(type, kChild); }

TYPMapCATUnicodeStringPVoid* QELComponent::getParentComponents(int type) const { return getComponents(type, kParent); }

QELComponent* QELComponent::getChildrenComponent(int type, int index) const {
    TYPMapCATUnicodeStringPVoid* children = getChildrenComponents(type);
    return children ? static_cast<QELComponent*>(children->getObject(index)) : nullptr;
}

QELComponent* QELComponent::getParentComponent(int type, int index) const {
    TYPMapCATUnicodeStringPVoid* parents = getParentComponents(type);
    return parents ? static_cast<QELComponent*>(parents->getObject(index)) : nullptr;
}

QELComponent* QELComponent::getChildrenComponent(int type, const CATUnicodeString& key) const {
    return getComponent(type, kChild, key);
}

QELComponent* QELComponent::getParentComponent(int type, const CATUnicodeString& key) const {
    return getComponent(type, kParent, key);
}

QELComponent* QELComponent::getChildrenComponent(int type, const CATUnicodeString& key1,
                                                 const CATUnicodeString& key2) const {
    if (!getChildrenComponent(type, key1)) return nullptr;
    return getChildrenComponent(type, key2);
}

int QELComponent::getChildrenCount(int type) const {
    TYPMapCATUnicodeStringPVoid* children = getChildrenComponents(type);
    return children ? children->size() : -1;
}

int QELComponent::getParentsCount(int type) const {
    TYPMapCATUnicodeStringPVoid* parents = getParentComponents(type);
    return parents ? parents->size() : -1;
}

// ---- GRM links ---------------------------------------------------------------

QELLink* QELComponent::addGRMLink(const CATUnicodeString& name, QELComponent* secondary) {
    if (!secondary) return nullptr;
    if (!alwaysNewLink(name)) {
        // The where-used rule keeps the first link per secondary: the link to
        // reuse is the first one to this secondary, if this component is its
        // primary.
        if (TYPVectorPQELLink* links = getGRMLinks(name)) {
            for (QELLink* link : *links) {
                if (link && link->get_Secondary() == secondary) {
                    if (link->get_Primary() && identical(link->get_Primary()->get_Name(), get_Name())) return link;
                    break;
                }
            }
        }
    }
    auto* link = QELModelHeap::adopt(new QELLink(QELLinkType::GRM_LINK, name, this, secondary));
    addGRMLink(link);
    if (secondary != this) secondary->addGRMLink(link);
    return link;
}

void QELComponent::addGRMLink(QELLink* link) {
    if (!link) return;
    if (!_grmLinks) _grmLinks = new TYPMapIntPVoid("MAP_DM_LINK");
    auto* byName = static_cast<LinkTable*>(_grmLinks->find(link->get_Type()));
    if (!byName) {
        byName = new LinkTable("p_sub_map");
        _grmLinks->insert(link->get_Type(), byName, "TYPMapCATUnicodeStringPVoid", 0);
    }
    auto* links = static_cast<TYPVectorPQELLink*>(byName->find(link->get_Name()));
    if (!links) {
        links = new TYPVectorPQELLink();
        byName->insert(link->get_Name(), links, "TYPVectorPQELLink", 0);
    }
    links->push_back(link);
}

TYPMapCATUnicodeStringPVoid* QELComponent::getAllGRMLinks() const {
    return _grmLinks ? static_cast<LinkTable*>(_grmLinks->find(QELLinkType::GRM_LINK)) : nullptr;
}

TYPVectorPQELLink* QELComponent::getGRMLinks(const CATUnicodeString& name) const {
    LinkTable* byName = getAllGRMLinks();
    return byName ? static_cast<TYPVectorPQELLink*>(byName->find(name)) : nullptr;
}

TYPVectorPQELLink* QELComponent::getGRMLinks(const CATUnicodeString& name, const CATUnicodeString& primaryClass,
                                             const CATUnicodeString& secondaryClass) const {
    if (!_grmLinks) return nullptr;
    auto* out = new TYPVectorPQELLink();
    if (TYPVectorPQELLink* links = getGRMLinks(name)) {
        for (QELLink* link : *links) {
            if (!link) continue;
            const QELComponent* p = link->get_Primary();
            const QELComponent* s = link->get_Secondary();
            if ((p && p->isAKindOf(primaryClass)) || (s && s->isAKindOf(secondaryClass))) out->push_back(link);
        }
    }
    return out;
}

TYPMapCATUnicodeStringPVoid* QELComponent::getAllGRMLinks(const CATUnicodeString& primaryClass,
                                                          const CATUnicodeString& secondaryClass) const {
    if (!_grmLinks) return nullptr;
    auto* out = new TYPMapCATUnicodeStringPVoid("p_returned_map");
    if (LinkTable* byName = getAllGRMLinks()) {
        for (const auto& e : *byName) {
            out->insert(e.key, getGRMLinks(e.key, primaryClass, secondaryClass), "TYPVectorPQELLink", 0);
        }
    }
    return out;
}

int QELComponent::getAllLinks(TYPVectorPQELLink& out) const {
    out.clear();
    if (!_grmLinks) return 0;
    for (const auto& byType : *_grmLinks) {
        for (const auto& byName : *static_cast<LinkTable*>(byType.object)) {
            for (QELLink* link : *static_cast<TYPVectorPQELLink*>(byName.object)) {
                if (link) out.push_back(link);
            }
        }
    }
    return 0;
}

TYPVectorPQELLink* QELComponent::namedWhereUsed(const CATUnicodeString& name, bool asPrimary) const {
    auto* out = new TYPVectorPQELLink();
    if (TYPVectorPQELLink* links = getGRMLinks(name)) {
        for (QELLink* link : *links) {
            const QELComponent* end = link ? endOf(link, asPrimary) : nullptr;
            if (end && identical(end->get_Name(), get_Name())) out->push_back(link);
        }
    }
    return out;
}

TYPVectorPQELLink* QELComponent::whereUsedWith(const QELComponent* other, bool asPrimary) const {
    auto* out = new TYPVectorPQELLink();
    LinkTable* byName = getAllGRMLinks();
    if (!other || !byName) return out;
    for (const auto& e : *byName) {
        for (QELLink* link : *static_cast<TYPVectorPQELLink*>(e.object)) {
            const QELComponent* mine = link ? endOf(link, asPrimary) : nullptr;
            const QELComponent* theirs = link ? endOf(link, !asPrimary) : nullptr;
            if (mine && theirs && identical(mine->get_Name(), get_Name()) &&
                identical(theirs->get_Name(), other->get_Name()))
                out->push_back(link);
        }
    }
    return out;
}

QELLink* QELComponent::firstWhereUsed(const CATUnicodeString& name, const QELComponent* other, bool asPrimary) const {
    TYPVectorPQELLink* links = getGRMLinks(name);
    if (!other || !links) return nullptr;
    for (QELLink* link : *links) {
        const QELComponent* mine = link ? endOf(link, asPrimary) : nullptr;
        const QELComponent* theirs = link ? endOf(link, !asPrimary) : nullptr;
        if (mine && theirs && identical(mine->get_Name(), get_Name()) &&
            identical(theirs->get_Name(), other->get_Name()))
            return link;
    }
    return nullptr;
}

TYPVectorPQELLink* QELComponent::whereUsed(const CATUnicodeString& name, const CATUnicodeString& otherClass,
                                           bool asPrimary) const {
    TYPVectorPQELLink* links = getGRMLinks(name);
    if (!links) return nullptr;
    auto* out = new TYPVectorPQELLink();
    if (name.Compare("catdesigntable") != 0) {
        for (QELLink* link : *links) out->push_back(link);
        return out;
    }
    // Only the first link taken per far end counts.
    std::unordered_set<const QELComponent*> seen;
    for (QELLink* link : *links) {
        const QELComponent* mine = link ? endOf(link, asPrimary) : nullptr;
        const QELComponent* theirs = link ? endOf(link, !asPrimary) : nullptr;
        if (!mine || !theirs || seen.count(theirs)) continue;
        if (identical(mine->get_Name(), get_Name()) && theirs->isAKindOf(otherClass)) {
            seen.insert(theirs);
            out->push_back(link);
        }
    }
    return out;
}

TYPVectorPQELLink* QELComponent::getGRMLinksWhereUsedAsPrimary(const CATUnicodeString& name) const {
    return namedWhereUsed(name, true);
}
TYPVectorPQELLink* QELComponent::getGRMLinksWhereUsedAsPrimary(const QELComponent* other) const {
    return whereUsedWith(other, true);
}
QELLink* QELComponent::getGRMLinksWhereUsedAsPrimary(const CATUnicodeString& name, const QELComponent* other) const {
    return firstWhereUsed(name, other, true);
}
TYPVectorPQELLink* QELComponent::getGRMLinksWhereUsedAsPrimary(const CATUnicodeString& name,
                                                               const CATUnicodeString& secondaryClass) const {
    return whereUsed(name, secondaryClass, true);
}
TYPVectorPQELLink* QELComponent::getGRMLinksWhereUsedAsSecondary(const CATUnicodeString& name) const {
    return namedWhereUsed(name, false);
}
TYPVectorPQELLink* QELComponent::getGRMLinksWhereUsedAsSecondary(const QELComponent* other) const {
    return whereUsedWith(other, false);
}
QELLink* QELComponent::getGRMLinksWhereUsedAsSecondary(const CATUnicodeString& name, const QELComponent* other) const {
    return firstWhereUsed(name, other, false);
}
TYPVectorPQELLink* QELComponent::getGRMLinksWhereUsedAsSecondary(const CATUnicodeString& name,
                                                                 const CATUnicodeString& primaryClass) const {
    return whereUsed(name, primaryClass, false);
}

bool QELComponent::hasGRMLinkWhereUsedAsSecondary(const CATUnicodeString& name,
                                                  const CATUnicodeString& primaryClass) const {
    TYPVectorPQELLink* links = getGRMLinks(name);
    if (!links) return false;
    for (QELLink* link : *links) {
        if (link && link->get_Secondary() && link->get_Primary() &&
            identical(link->get_Secondary()->get_Name(), get_Name()) && link->get_Primary()->isAKindOf(primaryClass))
            return true;
    }
    return false;
}

bool QELComponent::isAbsolute() const { return isAKindOf("QELABSOLUTEOCCURRENCE_CLASSNAME"); }

bool QELComponent::isWorkSpace() const { return isAKindOf("QELWORKSPACE_CLASSNAME"); }

// ---- dump and release ----------------------------------------------------------

CATUnicodeString QELComponent::print(int style) const {
    CATUnicodeString out;
    CATUnicodeString id = get_ClassName() + get_Name();
    QELPropertySet* set = getPropertySet();
    if (style == 0) {
        out = get_Name() + "\n";
        out += set ? set->print(0) : CATUnicodeString("_p_property_set is NULL\n");
    } else if (style == 1) {
        out = "\t\t<Class Id=\"" + id + "\" Name=\"" + get_ClassName() + "::" + get_Name() + "\">\n";
        out += "\t\t\t<ModelChildren>\n";
        out += set ? set->print(1) : CATUnicodeString("_p_property_set is NULL\n");
        out += "\t\t\t</ModelChildren>\n";
        out += "\t\t</Class>\n";
    } else {
        out = "unknown style";
    }
    if (LinkTable* byName = getAllGRMLinks()) {
        for (const auto& e : *byName) {
            for (QELLink* link : *static_cast<TYPVectorPQELLink*>(e.object)) {
                if (!link) continue;
                if (style == 0 || style == 1) {
                    out += link->print(style, style == 0 ? CATUnicodeString() : id);
                } else {
                    out += "unknown style";
                }
            }
        }
    }
    if (_relations) {
        for (const auto& byType : *_relations) {
            CATUnicodeString typeName = QELLinkType::name(byType.key);
            for (const auto& byName : *static_cast<RelationTable*>(byType.object)) {
                for (const auto& related : *static_cast<TYPMapCATUnicodeStringPVoid*>(byName.object)) {
                    if (style == 0) {
                        out += "\t---- " + typeName + " / " + byName.key + " ---> " + related.key + "\n";
                    } else if (style == 1) {
                        auto* other = static_cast<const QELComponent*>(related.object);
                        CATUnicodeString to = (other ? other->get_ClassName() : CATUnicodeString()) + related.key;
                        out += "\t\t<Usage From=\"" + id + "\" Id=\"" + UTILString::genUuid() + "\" Name=\"" +
                               typeName + " / " + byName.key + "\" To=\"" + to + "\" />\n";
                    } else {
                        out += "unknown style";
                    }
                }
            }
        }
    }
    return out;
}

void QELComponent::release() {
    if (_relations) {
        for (const auto& byType : *_relations) {
            auto* byName = static_cast<RelationTable*>(byType.object);
            for (const auto& byKey : *byName) delete static_cast<TYPMapCATUnicodeStringPVoid*>(byKey.object);
            delete byName;
        }
        delete _relations;
        _relations = nullptr;
    }
    if (_grmLinks) {
        for (const auto& byType : *_grmLinks) {
            auto* byName = static_cast<LinkTable*>(byType.object);
            for (const auto& links : *byName) delete static_cast<TYPVectorPQELLink*>(links.object);
            delete byName;
        }
        delete _grmLinks;
        _grmLinks = nullptr;
    }
    releaseProperties();
}
