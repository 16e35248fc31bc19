#include "QELSession.h"

#include <memory>

#include "JNLManager.h"
#include "QELAbsoluteOccurrence.h"
#include "QELDocument.h"
#include "QELItem.h"
#include "QELLink.h"
#include "QELLinkType.h"
#include "QELModelHeap.h"
#include "QELStatus.h"
#include "QELWorkSpace.h"
#include "TYPMapIntPVoid.h"

namespace {

// The first document an item (or any component) holds under ITM_DOC.
QELComponent* firstItemDocument(const QELComponent* item) {
    TYPMapCATUnicodeStringPVoid* documents = item ? item->getChildrenComponents(QELLinkType::ITM_DOC) : nullptr;
    return documents ? static_cast<QELComponent*>(documents->first()) : nullptr;
}

// Documents of these types are described through the workspace loaded on them.
bool opensAsWorkSpace(int type) {
    return (type >= EnumDocumentType_Product && type <= EnumDocumentType_Analysis) ||
           type == EnumDocumentType_Catalog;
}

} // namespace

QELWorkSpace* QELSession::createWorkSpace(EnumDocumentType, const CATUnicodeString& a, const CATUnicodeString& b,
                                          const CATUnicodeString& c) {
    if (QELWorkSpace* known = getWorkSpace(a + "+++" + b + "+++" + c)) return known;
    // The key above only finds; the new workspace is registered under its own
    // (still empty) name, as callers of this operation have always seen it.
    auto* created = QELModelHeap::adopt(new QELWorkSpace());
    addWorkSpace(created);
    return created;
}

QELWorkSpace* QELSession::getActiveWorkSpace() const {
    TYPMapCATUnicodeStringPVoid* all = getWorkSpaces();
    if (!all) return nullptr;
    for (const auto& e : *all) {
        auto* ws = static_cast<QELWorkSpace*>(e.object);
        if (ws && ws->isActiveWorkspace()) return ws;
    }
    return nullptr;
}

TYPVectorPQELWorkSpace* QELSession::getPassiveWorkSpaces() const {
    auto* out = new TYPVectorPQELWorkSpace();
    if (TYPMapCATUnicodeStringPVoid* all = getWorkSpaces()) {
        for (const auto& e : *all) {
            auto* ws = static_cast<QELWorkSpace*>(e.object);
            if (ws && !ws->isActiveWorkspace()) out->push_back(ws);
        }
    }
    return out;
}

long QELSession::getOrderedPassiveWorkSpaces(TYPVectorPQELWorkSpace*& out) const {
    const CATUnicodeString function("QELSession::getOrderedPassiveWorkSpaces");
    JNLManager::beginFunction(function);
    out = new TYPVectorPQELWorkSpace();
    TYPMapIntPVoid sorted("temp_map_for_sort");
    if (TYPMapCATUnicodeStringPVoid* all = getWorkSpaces()) {
        for (const auto& e : *all) {
            auto* ws = static_cast<QELWorkSpace*>(e.object);
            if (ws && !ws->isActiveWorkspace()) sorted.insert(ws->getIntegerProperty("WorkspaceIndex"), ws, "QELComponent", 0);
        }
    }
    for (const auto& e : sorted) out->push_back(static_cast<QELWorkSpace*>(e.object));
    JNLManager::endFunction(function, -1);
    return 0;
}

TYPVectorPQELDocument* QELSession::getAllQELDocuments() const {
    auto* out = new TYPVectorPQELDocument();
    if (TYPMapCATUnicodeStringPVoid* all = getDocuments()) {
        for (const auto& e : *all) out->push_back(static_cast<QELDocument*>(e.object));
    }
    return out;
}

QELDocument* QELSession::getDocumentByOldName(const CATUnicodeString& name) const {
    return getDocumentByStringProperty("Doc_Old_File_Name", name);
}

QELDocument* QELSession::getDocumentByStringProperty(const CATUnicodeString& propertyName,
                                                     const CATUnicodeString& value) const {
    TYPMapCATUnicodeStringPVoid* all = getDocuments();
    if (!all) return nullptr;
    for (const auto& e : *all) {
        auto* doc = static_cast<QELDocument*>(e.object);
        if (doc && doc->getStringProperty(propertyName) == value) return doc;
    }
    return nullptr;
}

TYPVectorPQELItem* QELSession::getItemsWithMajExisting() const {
    TYPMapCATUnicodeStringPVoid* all = getItems();
    if (!all || all->empty()) return nullptr;
    auto* out = new TYPVectorPQELItem();
    for (const auto& e : *all) {
        auto* item = static_cast<QELItem*>(e.object);
        if (item && item->getIntegerProperty("MAJ") == 2) out->push_back(item);
    }
    return out;
}

TYPVectorPQELComponent* QELSession::getLinkedComponents(QELComponent* component,
                                                         const CATUnicodeString& linkTypeName) const {
    JNLManager::beginFunction("QELSession::getLinkedComponents");
    TYPVectorPQELComponent* out = nullptr;
    QELDocument* source = nullptr;
    if (!component) {
        // nothing to look from
    } else if (component->isWorkSpace()) {
        source = static_cast<QELWorkSpace*>(component)->getLinkedDocument();
    } else if (component->isAbsolute()) {
        QELComponent* item = static_cast<QELAbsoluteOccurrence*>(component)->getLinkedItem();
        QELComponent* doc = firstItemDocument(item);
        if (doc && doc->isAKindOf("QELDOCUMENT_CLASSNAME")) source = static_cast<QELDocument*>(doc);
    }
    std::unique_ptr<TYPVectorPQELLink> links(source ? source->getGRMItemLinks(linkTypeName) : nullptr);
    if (links && !links->empty()) {
        out = new TYPVectorPQELComponent();
        for (QELLink* link : *links) {
            QELComponent* child = firstItemDocument(link ? link->get_Secondary() : nullptr);
            if (!child) continue;
            if (child->isAKindOf("QELDOCUMENT_CLASSNAME") &&
                opensAsWorkSpace(static_cast<QELDocument*>(child)->getType())) {
                if (QELWorkSpace* ws = getWorkSpace(child->get_Name())) out->push_back(ws);
            } else {
                out->push_back(child);
            }
        }
    }
    JNLManager::endFunction("QELSession::getLinkedComponents", out ? 0 : -1);
    return out;
}

long QELSession::getOrderedLinkedComponents(QELComponent* component, QELDocument* document,
                                            TYPVectorPQELComponent& components,
                                            TYPVectorPQELDocument& documents) const {
    if (!component) return QEL_E_FAIL;
    long status = 0;
    if (!component->getBooleanProperty("IsVisible") || component->getBooleanProperty("IsAnIgnoreNode")) return status;
    components.push_back(component);
    documents.push_back(document);

    CATUnicodeString linkTypeName;
    QELDocument* current = nullptr;
    switch (component->getIntegerProperty("FileType")) {
    case 8:
        linkTypeName = "CATIA_comp_catalog_link_type";
        if (component->isWorkSpace()) current = static_cast<QELWorkSpace*>(component)->getLinkedDocument();
        break;
    case 3:
        linkTypeName = "VT_CATIAV5_DWGLINK";
        break;
    case 5:
        linkTypeName = "CATIA_analysis_Link_type";
        break;
    case 4:
        linkTypeName = "CATIA_MFGLink_type";
        break;
    default:
        return status;
    }

    std::unique_ptr<TYPVectorPQELComponent> linked(getLinkedComponents(component, linkTypeName));
    if (!linked) return status;
    for (QELComponent* c : *linked) {
        if (!c) continue;
        if (c->isWorkSpace()) {
            TYPVectorPQELComponent subComponents;
            TYPVectorPQELDocument subDocuments;
            status = getOrderedLinkedComponents(c, current, subComponents, subDocuments);
            components.append(subComponents);
            documents.append(subDocuments);
        } else if (c->getIntegerProperty("DocumentType") == EnumDocumentType_DesignTable &&
                   !c->getBooleanProperty("IsDesignTableVisible")) {
            continue;
        } else {
            components.push_back(c);
            documents.push_back(current);
        }
    }
    return status;
}

bool QELSession::hasFlatteningWorkspace() const { return getBooleanProperty("HasFlatteningWorkspace"); }
