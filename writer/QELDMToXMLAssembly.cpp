// The ordinary export's traversal: the active workspace and its occurrences
// depth first, the passive workspaces in their order, then the design tables
// the host shows; the count the header announces for it; and the look-ups
// that place a document or an occurrence in the assembly.

#include "QELDMToXML.h"

#include <memory>

#include "CATRawCollint.h"
#include "JNLManager.h"
#include "PROCManager.h"
#include "QELAbsoluteOccurrence.h"
#include "QELDMToXMLTraversal.h"
#include "QELLinkType.h"
#include "QELLookups.h"
#include "QELSession.h"
#include "QELWorkSpace.h"
#include "TYPMapIntPVoid.h"

using QELDMToXMLTraversal::countsItself;
using QELDMToXMLTraversal::flatteningOf;
using QELDMToXMLTraversal::isLeftOut;
using QELDMToXMLTraversal::isVisibleDesignTable;

void QELDMToXML::executeForNonCatalogWorkSpace(QELSession* session) {
    const char* function = "QELDMToXML::executeForNonCatalogWorkSpace";
    JNLManager::beginFunction(function);

    const unsigned char flattening = flatteningOf(session);
    QELWorkSpace* active = session ? session->getActiveWorkSpace() : nullptr;
    const bool synchronize = PROCManager::isCommandSynchronizeActiveShapes();
    TYPMapCATUnicodeStringPVoid* documents = session ? session->getDocuments() : nullptr;

    int count = 0;
    QELDMToXMLTraversal::forEachCounted(session, [&count](QELComponent*) { ++count; });

    writeHeader(count, session);

    // The current workspace is described even when it is not visible (it
    // then counts 0, and the count check reports it).
    if (active) {
        writeDesc(active, session, nullptr, flattening);
        writeDescAssemblyAbsoluteOccurrences(active, session, flattening);
    }

    if (!synchronize && session) {
        TYPVectorPQELWorkSpace* ordered = nullptr;
        session->getOrderedPassiveWorkSpaces(ordered);
        std::unique_ptr<TYPVectorPQELWorkSpace> passive(ordered);
        if (passive) {
            for (QELWorkSpace* workspace : *passive) {
                // An ignored workspace counts 0, so it is not described either.
                if (!countsItself(workspace)) continue;
                writeDesc(workspace, session, nullptr, flattening);
                writeDescAssemblyAbsoluteOccurrences(workspace, session, flattening);
            }
        }
        if (documents) {
            for (const auto& entry : *documents) {
                auto* document = static_cast<QELDocument*>(entry.object);
                if (isVisibleDesignTable(document)) writeDescDesignTable(document, session, nullptr, flattening);
            }
        }
    }

    finishDescription(function);
    JNLManager::endFunction(function, 0);
}

// Each occurrence is counted by itself, while the walk drops whole subtrees
// under an ignored or broken node: the children of such a node are counted
// but not described, and the count check reports the difference. That is
// intended.
int QELDMToXML::getNumberOfObjectsInWsp(QELWorkSpace* workspace) {
    int count = 0;
    QELDMToXMLTraversal::forEachCountedInWorkSpace(workspace, [&count](QELComponent*) { ++count; });
    return count;
}

void QELDMToXML::writeDescAssemblyAbsoluteOccurrences(QELWorkSpace* workspace, QELSession* session,
                                                      unsigned char flattening) {
    if (!workspace) return;
    std::unique_ptr<TYPVectorPQELAbsoluteOccurrence> firstLevel(workspace->getFirstLevelAbsoluteOccurrences());
    if (!firstLevel) return;
    for (QELAbsoluteOccurrence* occurrence : *firstLevel) {
        if (isLeftOut(occurrence)) continue;
        writeDesc(occurrence, session, nullptr, flattening);
        recurseOnAbsoluteOccurrence(occurrence, session, flattening);
    }
}

void QELDMToXML::recurseOnAbsoluteOccurrence(QELAbsoluteOccurrence* occurrence, QELSession* session,
                                             unsigned char flattening) {
    QELDMToXMLTraversal::walkDescendants(
        occurrence, &QELDMToXML::getOrderedChildren,
        [&](QELAbsoluteOccurrence* child) { writeDesc(child, session, nullptr, flattening); });
}

// Two children with the same index: the index list holds it twice and the
// map the first child filed under it, so that child comes twice and the
// other not at all. The workspace's first level behaves the same way.
TYPVectorPQELAbsoluteOccurrence* QELDMToXML::getOrderedChildren(QELAbsoluteOccurrence* occurrence) {
    TYPMapCATUnicodeStringPVoid* children = occurrence ? occurrence->getLinkedChildAbsoluteOccurrences() : nullptr;
    if (!children) return nullptr;
    TYPMapIntPVoid byIndex("p_list_abs");
    CATRawCollint indices;
    for (const auto& entry : *children) {
        auto* child = static_cast<QELAbsoluteOccurrence*>(entry.object);
        if (!child) continue;
        const int index = child->getIntegerProperty("IndiceOfAbsolute");
        byIndex.insert(index, child, "QELAbsoluteOccurrence");
        indices.Append(index);
    }
    indices.QuickSort();
    auto* ordered = new TYPVectorPQELAbsoluteOccurrence(static_cast<size_t>(indices.Size()));
    for (int i = 1; i <= indices.Size(); ++i)
        ordered->push_back(static_cast<QELAbsoluteOccurrence*>(byIndex.find(indices[i])));
    return ordered;
}

QELComponent* QELDMToXML::getMasterComponent(QELDocument* document) {
    if (!document) return nullptr;
    QELSession* session = QELSession::getInstance();
    if (TYPMapCATUnicodeStringPVoid* workspaces = session ? session->getWorkSpaces() : nullptr) {
        for (const auto& entry : *workspaces) {
            auto* workspace = static_cast<QELWorkSpace*>(entry.object);
            QELDocument* root = workspace ? workspace->getLinkedDocument() : nullptr;
            // The search gives up at the first workspace without a document.
            if (!root) return nullptr;
            if (root->get_Name() == document->get_Name()) return workspace;
        }
    }
    QELComponent* parent = document->getParentComponent(QELLinkType::DOC_ITM, 0);
    if (!parent || !parent->isAKindOf("QELITEM_CLASSNAME")) return nullptr;
    return static_cast<QELItem*>(parent)->getLinkedAbsOcc();
}
