#ifndef QELDMToXMLTraversal_H
#define QELDMToXMLTraversal_H

// The occurrence walk shared by the writer's traversals (the ordinary one and
// the catalog ones) and by the counts that must agree with them.

#include <memory>
#include <unordered_set>
#include <vector>

#include "JNLManager.h"
#include "PROCManager.h"
#include "QELAbsoluteOccurrence.h"
#include "QELDocument.h"
#include "QELLookups.h"
#include "QELSession.h"
#include "QELWorkSpace.h"
#include "TYPVector.h"

namespace QELDMToXMLTraversal {

// Whether the export flattens the session (the host session holds a
// flattening workspace).
inline unsigned char flatteningOf(const QELSession* session) {
    return session && session->hasFlatteningWorkspace() ? 1 : 0;
}

// A node that the description leaves out together with its whole subtree.
inline bool isLeftOut(const QELComponent* node) {
    if (!node) return true;
    if (node->getBooleanProperty("IsAnIgnoreNode")) return true;
    return PROCManager::manageInvisibleBrokenIcon() && node->getBooleanProperty("IsBrokenIcon");
}

// A design table that the host shows; only those are described.
inline bool isVisibleDesignTable(QELComponent* document) {
    CV5CAAQELDocument* host = QELLookups::hostDocument(document);
    return host && host->getType() == EnumDocumentType_DesignTable && host->getDesignTableVisibility();
}

// Whether a workspace is counted, with its occurrences: visible and not ignored.
inline bool countsItself(const QELWorkSpace* workspace) {
    return workspace && workspace->getBooleanProperty("IsVisible") && !workspace->getBooleanProperty("IsAnIgnoreNode");
}

// Each component the ordinary export's header counts in a workspace, passed
// to `count`: the workspace itself, then every occurrence not left out by
// itself (one under a left-out node counts all the same).
template <typename Count> void forEachCountedInWorkSpace(QELWorkSpace* workspace, Count count) {
    if (!countsItself(workspace)) return;
    count(static_cast<QELComponent*>(workspace));
    TYPMapCATUnicodeStringPVoid* occurrences = workspace->getLinkedAbsoluteOccurrences();
    if (!occurrences) return;
    for (const auto& entry : *occurrences) {
        auto* occurrence = static_cast<QELComponent*>(entry.object);
        if (!isLeftOut(occurrence)) count(occurrence);
    }
}

// Each component the ordinary export's header counts, once per time it
// counts: the active workspace alone when synchronising the active shapes,
// otherwise every workspace, every visible design table and, in the
// state-details factory, every secondary document.
template <typename Count> void forEachCounted(QELSession* session, Count count) {
    if (!session) return;
    if (PROCManager::isCommandSynchronizeActiveShapes()) {
        forEachCountedInWorkSpace(session->getActiveWorkSpace(), count);
        return;
    }
    if (TYPMapCATUnicodeStringPVoid* workspaces = session->getWorkSpaces())
        for (const auto& entry : *workspaces)
            forEachCountedInWorkSpace(static_cast<QELWorkSpace*>(entry.object), count);
    TYPMapCATUnicodeStringPVoid* documents = session->getDocuments();
    if (!documents) return;
    const bool factory = PROCManager::isProcessStateDetailsFactory();
    for (const auto& entry : *documents) {
        auto* document = static_cast<QELDocument*>(entry.object);
        if (!document) continue;
        if (isVisibleDesignTable(document)) count(static_cast<QELComponent*>(document));
        if (factory && document->getBooleanProperty("IsSecondary")) count(static_cast<QELComponent*>(document));
    }
}

// Visits the descendants of `top` depth first, each node before its
// children, the children of a node in the order `children(node)` gives (a
// new vector or null, freed here). A left-out node is not visited and its
// subtree not entered.
//
// The walk keeps its own stack instead of recursing, so that an assembly of
// any depth cannot exhaust the call stack. A node met again below itself (a
// model whose child links loop) is reported and not entered a second time;
// a node listed twice among siblings is still visited twice.
template <typename Children, typename Visit>
void walkDescendants(QELAbsoluteOccurrence* top, Children children, Visit visit) {
    if (!top) return;
    struct Level {
        std::unique_ptr<TYPVectorPQELAbsoluteOccurrence> nodes;
        int next;
        const QELAbsoluteOccurrence* owner;
    };
    std::vector<Level> stack;
    std::unordered_set<const QELAbsoluteOccurrence*> onPath;
    onPath.insert(top);
    stack.push_back(Level{std::unique_ptr<TYPVectorPQELAbsoluteOccurrence>(children(top)), 0, top});
    while (!stack.empty()) {
        Level& level = stack.back();
        if (!level.nodes || level.next >= level.nodes->size()) {
            onPath.erase(level.owner);
            stack.pop_back();
            continue;
        }
        QELAbsoluteOccurrence* node = (*level.nodes)[level.next++];
        if (isLeftOut(node)) continue;
        if (onPath.count(node)) {
            JNLManager::writeMsgFormatted("QELDMToXML: occurrence %s is its own ancestor, not walked again",
                                          node->get_Name().ConvertToChar());
            continue;
        }
        visit(node);
        onPath.insert(node);
        stack.push_back(Level{std::unique_ptr<TYPVectorPQELAbsoluteOccurrence>(children(node)), 0, node});
    }
}

} // namespace QELDMToXMLTraversal

#endif
