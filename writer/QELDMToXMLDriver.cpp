// Export driver of the description writer: the entries, the ordinary
// workspace traversal and its count, and the document lists.

#include "QELDMToXML.h"
#include "QELElementNames.h"
#include "QELStatus.h"

#include <memory>
#include <string>
#include <unordered_set>

#include "CATRawCollint.h"
#include "CV5CAAToolsCommon.h"
#include "EMHManager.h"
#include "ENVManager.h"
#include "JNLManager.h"
#include "PROCManager.h"
#include "QELAbsoluteOccurrence.h"
#include "QELDMToXMLTraversal.h"
#include "QELLink.h"
#include "QELLinkType.h"
#include "QELLookups.h"
#include "QELSession.h"
#include "QELWorkSpace.h"
#include "TYPMapIntPVoid.h"
#include "UTILFile.h"

using QELLookups::hostDocument;
using QELLookups::hostItem;
using QELLookups::hostWorkSpace;
using QELDMToXMLTraversal::isLeftOut;

namespace {

const int kCatalogWorkSpace = 8;

unsigned char flatteningOf(const QELSession* session) {
    return session && session->hasFlatteningWorkspace() ? 1 : 0;
}

// A design table that the host shows; only those are described.
bool isVisibleDesignTable(QELDocument* document) {
    CV5CAAQELDocument* host = hostDocument(document);
    return host && host->getType() == EnumDocumentType_DesignTable && host->getDesignTableVisibility();
}

// The key under which two names are the same for merge: equal when letter
// case is ignored, exactly as CATUnicodeString::Compare decides.
std::string caseFolded(const CATUnicodeString& name) {
    CATUnicodeString lowered(name);
    lowered.ToLower();
    return lowered.ConvertToUTF8();
}

} // namespace

// ---- entries ----------------------------------------------------------------

void QELDMToXML::execute(QELSession* session) {
    QELWorkSpace* active = session ? session->getActiveWorkSpace() : nullptr;
    CV5CAAQELWorkSpace* host = hostWorkSpace(active);
    const int type = host ? host->getWorkSpaceType() : -1;
    const bool stateDetailsUpdate = PROCManager::isCommandStateDetailsUpdate();

    if (type == kCatalogWorkSpace) {
        if (stateDetailsUpdate) {
            CATListValCATUnicodeString names, selected;
            if (CV5CAAToolsCommon::readListOfElements(CATUnicodeString(), names, selected) < 0)
                EMHManager::writeMsg("QELDMToXML::execute", 2102, "readListOfElements");
            executeForCatalogWorkSpaceForUpdateStateDetails(session, selected);
        } else {
            executeForCatalogWorkSpace(session);
        }
    } else {
        executeForNonCatalogWorkSpace(session);
    }

    // The status window's selection is consumed by this export.
    if (stateDetailsUpdate) UTILFile::deleteFile(ENVManager::getTempDirectory() + "documentsOfStatusWindow.xml");
}

long QELDMToXML::execute(QELSession* session, TYPVectorPCV5CAAQELDocument* documents) {
    const char* function = "QELDMToXML::execute";
    JNLManager::beginFunction(function);

    int count = documents ? documents->size() : 0;
    if (documents && PROCManager::isProcessStateDetailsFactory()) {
        for (CV5CAAQELDocument* document : *documents) {
            if (!document) continue;
            if (document->isABrokenIcon()) {
                JNLManager::writeMsg("It is a broken icon, we skip it");
                --count;
                continue;
            }
            if (document->getType() != EnumDocumentType_Product) continue;
            std::unique_ptr<TYPVectorPQELLink> secondaries(document->getGRMDocumentLinks("CATIA_secondary_Link_type"));
            if (secondaries) count += secondaries->size();
        }
    }
    writeHeader(count, session);

    // The broken icons left out of the count are described all the same; the
    // count check then reports them.
    long result = 0;
    if (PROCManager::isCommandUpdateStatus()) result = writeDescForUpdateStatus(documents);

    finishDescription(function);
    JNLManager::endFunction(function, result);
    return result;
}

long QELDMToXML::execute(TYPVectorPQELItem* items) {
    const char* function = "QELDMToXML::execute";
    JNLManager::beginFunction(function);
    if (items) {
        for (QELItem* item : *items) {
            if (!item) continue;
            CV5CAAQELItem* host = hostItem(item);
            writeDocEntry(host ? host->getItemDefaultDocument() : nullptr, item->get_Name());
        }
    }
    JNLManager::endFunction(function, 0);
    return 0;
}

// The browser lists documents rather than items: revuid is then the name of
// the document's default item, the other fields as in the status window.
long QELDMToXML::writeDocumentsForCatalogBrowser(TYPVectorPQELDocument* documents) {
    const char* function = "QELDMToXML::writeDocumentsForCatalogBrowser";
    JNLManager::beginFunction(function);
    if (documents) {
        for (QELDocument* document : *documents) {
            if (!document) continue;
            CV5CAAQELDocument* host = hostDocument(document);
            QELItem* item = host ? host->getDefaultItem() : nullptr;
            writeDocEntry(document, item ? item->get_Name() : CATUnicodeString());
        }
    }
    JNLManager::endFunction(function, 0);
    return 0;
}

void QELDMToXML::writeDocEntry(QELDocument* document, const CATUnicodeString& revuid) {
    CATUnicodeString fileName, dstuid, namedrefuid;
    if (CV5CAAQELDocument* host = hostDocument(document)) {
        dstuid = host->getDocumentUID();
        if (host->getNamedRefUID(namedrefuid) < 0) namedrefuid = CATUnicodeString();
        if (QELFile* file = host->getDefaultFile()) fileName = file->get_Name();
    }
    writeOpenBalise(QELElement::doc);
    writeBalise(QELElement::filename, fileName, "", 0);
    writeBalise(QELElement::revuid, revuid, "", 0);
    writeBalise(QELElement::dstuid, dstuid, "", 0);
    writeBalise(QELElement::namedrefuid, namedrefuid, "", 0);
    writeCloseBalise(QELElement::doc);
}

// ---- the ordinary traversal -----------------------------------------------

void QELDMToXML::executeForNonCatalogWorkSpace(QELSession* session) {
    const char* function = "QELDMToXML::executeForNonCatalogWorkSpace";
    JNLManager::beginFunction(function);

    const unsigned char flattening = flatteningOf(session);
    QELWorkSpace* active = session ? session->getActiveWorkSpace() : nullptr;
    const bool synchronize = PROCManager::isCommandSynchronizeActiveShapes();
    TYPMapCATUnicodeStringPVoid* documents = session ? session->getDocuments() : nullptr;

    int count = 0;
    if (synchronize) {
        count = getNumberOfObjectsInWsp(active);
    } else if (session) {
        if (TYPMapCATUnicodeStringPVoid* workspaces = session->getWorkSpaces()) {
            for (const auto& entry : *workspaces) count += getNumberOfObjectsInWsp(static_cast<QELWorkSpace*>(entry.object));
        }
        if (documents) {
            const bool factory = PROCManager::isProcessStateDetailsFactory();
            for (const auto& entry : *documents) {
                auto* document = static_cast<QELDocument*>(entry.object);
                if (!document) continue;
                if (isVisibleDesignTable(document)) ++count;
                if (factory && document->getBooleanProperty("IsSecondary")) ++count;
            }
        }
    }

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
                if (!workspace || !workspace->getBooleanProperty("IsVisible") ||
                    workspace->getBooleanProperty("IsAnIgnoreNode"))
                    continue;
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
    if (!workspace || !workspace->getBooleanProperty("IsVisible") || workspace->getBooleanProperty("IsAnIgnoreNode"))
        return 0;
    TYPMapCATUnicodeStringPVoid* occurrences = workspace->getLinkedAbsoluteOccurrences();
    if (!occurrences) return 1;
    int count = 1;
    for (const auto& entry : *occurrences) {
        if (!isLeftOut(static_cast<QELComponent*>(entry.object))) ++count;
    }
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
    QELDMToXMLTraversal::walkDescendants(occurrence, &QELDMToXML::getOrderedChildren,
                                         [&](QELAbsoluteOccurrence* child) {
                                             writeDesc(child, session, nullptr, flattening);
                                         });
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

// ---- helpers of the content writers ------------------------------------------

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

// Names already in `into` are looked up in a hash set of their case-folded
// form, so that merging stays linear in the two vectors.
void QELDMToXML::merge(TYPVectorPQELLink*& into, TYPVectorPQELLink* from) {
    if (!into || !from) return;
    std::unordered_set<std::string> names;
    for (QELLink* link : *into) {
        QELComponent* secondary = link ? link->get_Secondary() : nullptr;
        if (secondary) names.insert(caseFolded(secondary->get_Name()));
    }
    for (QELLink* link : *from) {
        QELComponent* secondary = link ? link->get_Secondary() : nullptr;
        if (!secondary) continue;
        if (names.insert(caseFolded(secondary->get_Name())).second) into->push_back(link);
    }
}

long QELDMToXML::writeConfiguration(QELWorkSpace* workspace) {
    if (!workspace) return QEL_E_FAIL;
    TYPVectorCATUnicodeString* configuration = nullptr;
    workspace->getConfiguration(configuration);
    if (!configuration || configuration->empty()) return 0;
    writeOpenBalise(QELElement::Configuration);
    for (const CATUnicodeString& line : *configuration) writeValue(line);
    writeCloseBalise(QELElement::Configuration);
    return 0;
}

void QELDMToXML::finishDescription(const char* function) {
    writeCloseBalise(QELElement::DESCFILE);
    closeFile(function);
    if (_declaredElements != _writtenItems) EMHManager::writeMsg(function, 2104, "");
}
