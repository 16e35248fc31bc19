// Catalog traversals of the description writer.
//
// A catalog workspace is described as its own block, whose parent objects
// come from the catalog document (the workspace's root document), followed
// by its occurrences depth first, parent before children, children by
// ascending "IndiceOfAbsolute", with the same left-out rules as the ordinary
// traversal. The state-details update describes the workspace and only the
// occurrences whose document the user selected in the status window; the
// walk still goes below an occurrence that is not selected, since a
// selected document may sit under it. Passive workspaces and design tables
// belong to the ordinary export and are not described here.
//
// Unlike the ordinary traversal, the count comes from the same walk as the
// blocks, so that NBElements announces what is written; 2104 then only
// flags a node that the block writers themselves could not describe.

#include "QELDMToXML.h"

#include <memory>
#include <unordered_set>

#include "JNLManager.h"
#include "PROCManager.h"
#include "QELAbsoluteOccurrence.h"
#include "QELDMToXMLTraversal.h"
#include "QELLink.h"
#include "QELLookups.h"
#include "QELSession.h"
#include "QELWorkSpace.h"

using QELDMToXMLTraversal::flatteningOf;
using QELDMToXMLTraversal::isLeftOut;

namespace {

// The document a node stands for: a workspace's root document, or the first
// document of an occurrence's item.
QELDocument* documentOf(QELComponent* component) {
    if (!component) return nullptr;
    if (component->isWorkSpace()) return static_cast<QELWorkSpace*>(component)->getLinkedDocument();
    if (component->isAbsolute())
        return QELLookups::firstDocument(static_cast<QELAbsoluteOccurrence*>(component)->getLinkedItem());
    return nullptr;
}

// The secondary documents of `document` that get a block of their own in the
// state-details factory: those flagged "IsSecondary", each once per export
// whichever primaries point to it.
void collectSecondaries(QELDocument* document, std::unordered_set<const QELComponent*>& secondaries) {
    if (!document) return;
    std::unique_ptr<TYPVectorPQELLink> links(document->getLinkedSecondaries());
    if (!links) return;
    for (QELLink* link : *links) {
        QELComponent* secondary = link ? link->get_Secondary() : nullptr;
        // The document's link table also holds the links that point to it.
        if (!secondary || secondary == document || !secondary->isAKindOf("QELDOCUMENT_CLASSNAME")) continue;
        if (secondary->getBooleanProperty("IsSecondary")) secondaries.insert(secondary);
    }
}

// Every occurrence of the workspace that the catalog walk reaches, in the
// order the walk writes them.
template <typename Children, typename Visit>
void walkWorkSpace(QELWorkSpace* workspace, Children children, Visit visit) {
    std::unique_ptr<TYPVectorPQELAbsoluteOccurrence> firstLevel(workspace->getFirstLevelAbsoluteOccurrences());
    if (!firstLevel) return;
    for (QELAbsoluteOccurrence* occurrence : *firstLevel) {
        if (isLeftOut(occurrence)) continue;
        visit(occurrence);
        QELDMToXMLTraversal::walkDescendants(occurrence, children, visit);
    }
}

} // namespace

void QELDMToXML::executeForCatalogWorkSpace(QELSession* session) {
    const char* function = "QELDMToXML::executeForCatalogWorkSpace";
    JNLManager::beginFunction(function);
    QELWorkSpace* workspace = session ? session->getActiveWorkSpace() : nullptr;
    QELDocument* catalog = workspace ? workspace->getLinkedDocument() : nullptr;

    writeHeader(getNumberOfObjectsInWspForCatalog(workspace), session);
    if (workspace) {
        writeDesc(workspace, session, catalog, flatteningOf(session));
        writeDescAssemblyAbsoluteOccurrencesCatalogSD(workspace, session, catalog, nullptr);
    }
    finishDescription(function);
    JNLManager::endFunction(function, 0);
}

void QELDMToXML::executeForCatalogWorkSpaceForUpdateStateDetails(QELSession* session,
                                                                 const CATListValCATUnicodeString& selected) {
    const char* function = "QELDMToXML::executeForCatalogWorkSpaceForUpdateStateDetails";
    JNLManager::beginFunction(function);
    // Looked up once per node: a hash map keeps that constant whatever the
    // size of the selection.
    TYPMapCATUnicodeStringPVoid names("p_selected_documents");
    for (int i = 1; i <= selected.Size(); ++i) names.insert(selected[i], nullptr);
    QELWorkSpace* workspace = session ? session->getActiveWorkSpace() : nullptr;
    QELDocument* catalog = workspace ? workspace->getLinkedDocument() : nullptr;

    writeHeader(getNumberOfObjectsWithInstanceForCatalog(workspace, &names), session);
    if (workspace) {
        // The workspace's block frames the update whatever was selected.
        writeDesc(workspace, session, catalog, flatteningOf(session));
        writeDescAssemblyAbsoluteOccurrencesCatalogSD(workspace, session, catalog, &names);
    }
    finishDescription(function);
    JNLManager::endFunction(function, 0);
}

void QELDMToXML::writeDescAssemblyAbsoluteOccurrencesCatalogSD(QELWorkSpace* workspace, QELSession* session,
                                                               QELDocument* catalogDocument,
                                                               const TYPMapCATUnicodeStringPVoid* selected) {
    if (!workspace) return;
    std::unique_ptr<TYPVectorPQELAbsoluteOccurrence> firstLevel(workspace->getFirstLevelAbsoluteOccurrences());
    if (!firstLevel) return;
    const unsigned char flattening = flatteningOf(session);
    for (QELAbsoluteOccurrence* occurrence : *firstLevel) {
        if (isLeftOut(occurrence)) continue;
        if (isDocumentSelectedInStateDetailsUpdate(occurrence, selected))
            writeDesc(occurrence, session, catalogDocument, flattening);
        recurseOnAbsoluteOccurrenceCatalogSD(occurrence, session, catalogDocument, selected);
    }
}

void QELDMToXML::recurseOnAbsoluteOccurrenceCatalogSD(QELAbsoluteOccurrence* occurrence, QELSession* session,
                                                      QELDocument* catalogDocument,
                                                      const TYPMapCATUnicodeStringPVoid* selected) {
    const unsigned char flattening = flatteningOf(session);
    QELDMToXMLTraversal::walkDescendants(occurrence, &QELDMToXML::getOrderedChildren,
                                         [&](QELAbsoluteOccurrence* child) {
                                             if (isDocumentSelectedInStateDetailsUpdate(child, selected))
                                                 writeDesc(child, session, catalogDocument, flattening);
                                         });
}

int QELDMToXML::getNumberOfObjectsInWspForCatalog(QELWorkSpace* workspace) {
    return getNumberOfObjectsWithInstanceForCatalog(workspace, nullptr);
}

// The workspace's own block (always written), plus every occurrence that the
// walk reaches and the selection keeps, plus in the state-details factory
// the secondary documents those blocks bring along.
int QELDMToXML::getNumberOfObjectsWithInstanceForCatalog(QELWorkSpace* workspace,
                                                         const TYPMapCATUnicodeStringPVoid* selected) {
    if (!workspace) return 0;
    const bool factory = PROCManager::isProcessStateDetailsFactory();
    std::unordered_set<const QELComponent*> secondaries;
    int count = 0;
    auto described = [&](QELComponent* node) {
        ++count;
        if (factory) collectSecondaries(documentOf(node), secondaries);
    };
    described(workspace);
    walkWorkSpace(workspace, &QELDMToXML::getOrderedChildren, [&](QELAbsoluteOccurrence* occurrence) {
        if (isDocumentSelectedInStateDetailsUpdate(occurrence, selected)) described(occurrence);
    });
    return count + static_cast<int>(secondaries.size());
}

// Selected means the node's document is named, exactly, in the status
// window's list; without a list everything is.
unsigned char QELDMToXML::isDocumentSelectedInStateDetailsUpdate(QELComponent* component,
                                                                 const TYPMapCATUnicodeStringPVoid* selected) {
    if (!selected) return 1;
    QELDocument* document = documentOf(component);
    return document && selected->contains(document->get_Name()) ? 1 : 0;
}
