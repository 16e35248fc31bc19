// Reading driver of the answer reader: the frame of the answer, its entries
// in turn, and the workspace, occurrence or document that each entry updates.

#include "QELXMLToDM.h"

#include <cstdlib>
#include <cstring>
#include <string>

#include "CATDocument.h"
#include "CV5CAAQELDocument.h"
#include "CV5CAAQELSession.h"
#include "CV5CAAQELWorkSpace.h"
#include "CV5CAAToolsCommon.h"
#include "CV5CAAToolsDesc.h"
#include "EMHManager.h"
#include "ENVManager.h"
#include "JNLManager.h"
#include "PROCManager.h"
#include "QELAbsoluteOccurrence.h"
#include "QELDocument.h"
#include "QELElementNames.h"
#include "QELItem.h"
#include "QELLookups.h"
#include "QELRelativeOccurrence.h"
#include "QELSession.h"
#include "QELStatus.h"
#include "QELUtilities.h"
#include "QELWorkSpace.h"
#include "QELXMLToDMUpdateTools.h"
#include "UTILFile.h"

using QELLookups::hostDocument;
using QELLookups::hostWorkSpace;
using QELXMLToDMUpdateTools::entryValue;
using QELXMLToDMUpdateTools::journalMissing;
using QELXMLToDMUpdateTools::toInt;

namespace {

const char* const kExecute = "QELXMLToDM::execute";
const char* const kCreateAbsolute = "QELXMLToDM::createAbsoluteOccurrence";
const char* const kCatalogInStateDetails = " document is comp_catalog in state details no mask to update";
const long kNullObject = 2103;

// What the POINTER_ADDRESS of an entry designates. A root is an entry with
// neither a pointer nor a real parent: it opens a workspace.
struct Designated {
    QELWorkSpace* workspace = nullptr;
    QELAbsoluteOccurrence* occurrence = nullptr;
    QELDocument* document = nullptr;
    bool root = false;
};

// The host knows a workspace's default document; a workspace the host did not
// make falls back on its root document.
QELDocument* defaultDocumentOf(QELWorkSpace* workspace) {
    if (!workspace) return nullptr;
    if (CV5CAAQELWorkSpace* host = hostWorkSpace(workspace)) {
        QELDocument* document = nullptr;
        return host->getWorkSpaceDefaultDocument(document) < 0 ? nullptr : document;
    }
    return workspace->getLinkedDocument();
}

CATUnicodeString fileNameOf(QELDocument* document) {
    CATUnicodeString name;
    if (CV5CAAQELDocument* host = hostDocument(document)) {
        if (host->getFileName(name) < 0) name = CATUnicodeString();
    } else if (document) {
        name = document->get_Name();
    }
    return name;
}

bool isCatalogComponent(QELDocument* document) {
    CV5CAAQELDocument* host = hostDocument(document);
    return host && host->isCatalogComp();
}

Designated classify(QELComponent* component, bool hasPointer, const CATUnicodeString* parentUid) {
    Designated designated;
    if (component) {
        if (component->isWorkSpace())
            designated.workspace = static_cast<QELWorkSpace*>(component);
        else if (component->isAbsolute())
            designated.occurrence = static_cast<QELAbsoluteOccurrence*>(component);
        else if (component->instanceOf("QELDOCUMENT_CLASSNAME") || component->instanceOf("CV5CAAQELDOCUMENT_CLASSNAME"))
            designated.document = static_cast<QELDocument*>(component);
    } else if (!hasPointer && parentUid) {
        designated.root = parentUid->IsNull() || *parentUid == "ERROR";
    }
    return designated;
}

CATUnicodeString itemRevUidOf(QELItem* item) {
    return item ? item->getStringProperty("ItemRev_UID") : CATUnicodeString();
}

bool sameParent(QELItem* item, const CATUnicodeString& parentUid) {
    const CATUnicodeString uid = itemRevUidOf(item);
    JNLManager::writeMsgFormatted("wsp_item_rev_uid = [%s] and parent_item_rev_uid = [%s]", uid.ConvertToChar(),
                                  parentUid.ConvertToChar());
    return uid.Compare(parentUid) == 2;
}

// The workspace of the entry's parent: among the session's workspaces, or,
// in a session without any, through the occurrences read so far, the latest
// first. Every comparison is journalled, which is why this is a walk.
QELComponent* findParent(QELSession* session, const TYPVectorPQELAbsoluteOccurrence& occurrences,
                         const CATUnicodeString& parentUid) {
    const TYPMapCATUnicodeStringPVoid* workspaces = session->getWorkSpaces();
    if (workspaces && !workspaces->empty()) {
        for (const auto& entry : *workspaces) {
            auto* workspace = static_cast<QELWorkSpace*>(entry.object);
            if (workspace && sameParent(workspace->getItem(), parentUid)) return workspace;
        }
        return nullptr;
    }
    for (int i = occurrences.size() - 1; i >= 0; --i) {
        QELAbsoluteOccurrence* occurrence = occurrences[i];
        if (occurrence && sameParent(occurrence->getLinkedItem(), parentUid)) return occurrence->getLinkedWorkSpace();
    }
    return nullptr;
}

// The writer's matrix is 12 numbers; the property holds 16. Only the first 16
// numbers count, and a short list leaves the rest 0.
void parseMatrix(const CATUnicodeString& text, double matrix[16]) {
    static const char* const kBlanks = " \t\r\n";
    for (int i = 0; i < 16; ++i) matrix[i] = 0.0;
    const char* p = text.ConvertToChar();
    for (int n = 0; n < 16; ++n) {
        p += std::strspn(p, kBlanks);
        if (!*p) break;
        const size_t length = std::strcspn(p, kBlanks);
        matrix[n] = std::strtod(std::string(p, length).c_str(), nullptr);
        p += length;
    }
}

} // namespace

// Everything execute learns before the entries, and keeps for all of them.
struct QELXMLToDM::ActiveDocument {
    QELWorkSpace* workspace = nullptr;
    QELDocument* document = nullptr;
    bool product = false;
    bool catalogInStateDetails = false;
};

void QELXMLToDM::execute(QELSession* session) {
    JNLManager::beginFunction(kExecute);
    std::string line;
    if (!beginReading(kExecute, session, line)) return;
    _oldNames.reset();
    _primary = nullptr;
    _primaryScanned = 0;
    if (line != QELElement::openingLine(QELElement::DESCFILE)) {
        JNLManager::writeMsgFormatted("Error while reading desc.xml file %s. Balise DESC_FILE not found",
                                      _path.c_str());
        closeFile();
        JNLManager::endFunction(kExecute, -1);
        return;
    }
    long long start = _file.tell();
    const int count = readOptionsAndCount(session, start);
    if (count < 0)
        JNLManager::writeMsgFormatted("Error while reading desc.xml file %s. NBElements not found", _path.c_str());

    ActiveDocument active;
    if (PROCManager::manageSavableStatusForNonSave() && !findActiveDocument(session, active)) {
        closeFile();
        JNLManager::endFunction(kExecute, -1);
        return;
    }
    readEntries(session, active, count, start);
    closeFile();
    JNLManager::endFunction(kExecute, 0);
}

// The active document decides whether masks are updated (a product) and
// whether a catalog component in state details is left alone. False when the
// run cannot go on; the error is reported.
bool QELXMLToDM::findActiveDocument(QELSession* session, ActiveDocument& active) {
    CATUnicodeString fileName;
    if (!PROCManager::isProcessLifeCycleFactory() && !PROCManager::isProcessStateDetailsFactory()) {
        active.workspace = session->getActiveWorkSpace();
        if (!active.workspace) {
            EMHManager::writeMsg(kExecute, kNullObject, "p_active_wsp");
            return false;
        }
        active.document = defaultDocumentOf(active.workspace);
        if (!active.document) {
            EMHManager::writeMsg(kExecute, kNullObject, "p_active_document");
            return false;
        }
        fileName = fileNameOf(active.document);
    } else if (CATDocument* hostActive = CV5CAAToolsCommon::getActiveCATDocument()) {
        // The session files its documents under their bare file names.
        CATUnicodeString directory;
        UTILFile::splitPathAndFileName(hostActive->StorageName(), directory, fileName);
        QELDocument* known = nullptr;
        if (CV5CAAQELSession::getCATIASessionInstance()->getSessionDocument(fileName, known) >= 0)
            active.document = known;
    }
    const CATUnicodeString extension = UTILFile::getExtension(fileName);
    active.product = extension == "CATProduct";
    const bool stateDetails = PROCManager::isProcessStateDetails() || PROCManager::isProcessStateDetailsUpdate();
    active.catalogInStateDetails = stateDetails && (extension == "catalog" || isCatalogComponent(active.document));
    return true;
}

void QELXMLToDM::readEntries(QELSession* session, const ActiveDocument& active, int count, long long pos) {
    QELAnswerEntry values;
    Entry entry;
    bool stop = false;
    bool ended = false;
    // The count comes from the file: the end of the file bounds it as well.
    for (int i = 0; i < count && !stop; ++i) {
        const long long start = pos;
        if (!entryBegins(start, i, count)) {
            ended = true;
            break;
        }
        if (!readEntry(start, pos, entry, values))
            JNLManager::writeMsgFormatted("Error while reading desc.xml file %s. Entry %d <%s> holds no Item_Info",
                                          _path.c_str(), i + 1, entry.typeName.c_str());
        // An entry whose Item_Info did not close is not applied.
        if (entry.complete) stop = !applyEntry(session, active, entry, &values);
        if (!stop && !CV5CAAToolsDesc::searchClosingNode(_file, entry.typeName, entry.end, pos))
            journalMissing(_path, QELElement::closingLine(entry.typeName));
    }
    // Entries beyond the count are not read: say so rather than drop them.
    if (!stop && !ended && moreEntriesFollow(pos))
        JNLManager::writeMsgFormatted("Error while reading desc.xml file %s. %d entries announced, more found",
                                      _path.c_str(), count < 0 ? 0 : count);
}

bool QELXMLToDM::applyEntry(QELSession* session, const ActiveDocument& active, const Entry& entry,
                            const QELAnswerEntry* values) {
    if (PROCManager::manageExternalFiles() && QELFailed(readAndUpdateExternalFiles(session, values)))
        JNLManager::writeMsg("ERROR : The external files are not updated.");
    if (ENVManager::isCompositeManaged() && QELFailed(readAndUpdateCompositeFiles(session, values)))
        JNLManager::writeMsg("ERROR : The composite files are not updated.");

    QELWorkSpace* workspace = nullptr;
    if (active.product && PROCManager::manageSavableStatusForNonSave()) {
        if (active.catalogInStateDetails)
            JNLManager::writeMsg(kCatalogInStateDetails);
        else
            updateDocumentForMaskManagement(hostWorkSpace(active.workspace), hostDocument(active.document), values);
    } else if (active.catalogInStateDetails) {
        JNLManager::writeMsg(kCatalogInStateDetails);
    } else if (!updateDesignated(session, entry, values, workspace)) {
        return false;
    }

    const bool loadable = entry.type == EnumDocumentType_Part || entry.type == EnumDocumentType_Unset;
    if (active.product && loadable && PROCManager::isProcessCheckout()) applyLoadFlag(workspace, values);
    return true;
}

bool QELXMLToDM::updateDesignated(QELSession* session, const Entry& entry, const QELAnswerEntry* values,
                                  QELWorkSpace*& workspace) {
    // An empty session takes workspaces and drawings only, and the first
    // entry of another kind ends the reading.
    const bool emptySession = PROCManager::manageDescForEmptyQEL();
    const CATUnicodeString* pointer = entryValue(values, QELElement::POINTER_ADDRESS);
    const Designated designated =
        classify(resolvePointer(pointer), pointer != nullptr, entryValue(values, QELElement::Parent_ItemRev_UID));
    if (entry.type == EnumDocumentType_DesignTable || designated.document) {
        if (emptySession) {
            JNLManager::writeMsg("Design Table ignored");
            return false;
        }
        createDocument(designated.document, entry.type, values);
    } else if (!designated.root && !designated.workspace) {
        if (emptySession) {
            JNLManager::writeMsg("Element in assembly ignored");
            return false;
        }
        long long blockPos = entry.end;
        createAbsoluteOccurrence(designated.occurrence, session, entry.valuesStart, blockPos, entry.type, values);
    } else if (emptySession && entry.type != EnumDocumentType_Drawing) {
        JNLManager::writeMsgFormatted("Document of type %s ignored",
                                      QELUtilities::getDocFilRefNameFromDocumentType(entry.type).ConvertToChar());
        return false;
    } else {
        workspace = createWorkspace(designated.workspace, session, entry.type, values);
    }
    return true;
}

// The workspace is the one the entry updated, if any; otherwise the one its
// POINTER_ADDRESS designates.
void QELXMLToDM::applyLoadFlag(QELWorkSpace* workspace, const QELAnswerEntry* values) {
    if (!workspace) {
        const CATUnicodeString* pointer = entryValue(values, QELElement::POINTER_ADDRESS);
        if (!pointer) {
            JNLManager::writeMsg("Cannot find balise POINTER_ADDRESS");
        } else {
            QELComponent* component = resolvePointer(pointer);
            if (component && component->isWorkSpace()) workspace = static_cast<QELWorkSpace*>(component);
        }
    }
    const CATUnicodeString* loadFlag = entryValue(values, QELElement::Load_Flag);
    if (QELDocument* document = loadFlag ? defaultDocumentOf(workspace) : nullptr)
        document->addIntegerProperty("Load_Flag", toInt(*loadFlag));
}

QELWorkSpace* QELXMLToDM::createWorkspace(QELWorkSpace* workspace, QELSession* session, EnumDocumentType type,
                                          const QELAnswerEntry* map) {
    QELWorkSpace* result = workspace;
    if (!result) {
        const CATUnicodeString* fileName = entryValue(map, QELElement::File_Name);
        const CATUnicodeString name = fileName ? *fileName : CATUnicodeString();
        if (PROCManager::manageDescForEmptyQEL()) {
            // The file name stands for all three names of the new workspace.
            CV5CAAQELWorkSpace* created = nullptr;
            if (CV5CAAQELSession::getCATIASessionInstance()->createEmptyWorkSpace(type, name, name, name, created) >= 0)
                result = created;
        } else if (session) {
            JNLManager::writeMsg("ERROR : p_wsp is NULL. The desc file is not correctly filled.");
            const CATUnicodeString* itemId = entryValue(map, QELElement::Item_ID);
            result = session->createWorkSpace(type, name, name, itemId ? *itemId : CATUnicodeString());
        }
    }
    if (result) updateProperty(result, map);
    return result;
}

void QELXMLToDM::createAbsoluteOccurrence(QELAbsoluteOccurrence* occurrence, QELSession* session, long long start,
                                          long long& pos, EnumDocumentType type, const QELAnswerEntry* map) {
    (void)start;
    (void)type;
    if (!occurrence) {
        JNLManager::writeMsg("ERROR : p_abs is NULL. The desc file is not correctly filled.");
        if (!session) return;
        const CATUnicodeString* parentUid = entryValue(map, QELElement::Parent_ItemRev_UID);
        const CATUnicodeString uid = parentUid ? *parentUid : CATUnicodeString();
        // The answer names no occurrence to update, and none is invented:
        // the parent search only tells the journal where the entry belongs.
        if (findParent(session, *_occurrences, uid))
            JNLManager::writeMsgFormatted("%s: no absolute occurrence to update under parent_item_rev_uid = [%s]",
                                          kCreateAbsolute, uid.ConvertToChar());
        return;
    }

    updateProperty(occurrence, map);

    QELRelativeOccurrence* relative = occurrence->getLinkedRelativeOccurrence();
    const CATUnicodeString* matrix = entryValue(map, QELElement::Matrix);
    if (relative && matrix && !matrix->IsNull()) {
        double values[16];
        parseMatrix(*matrix, values);
        relative->addMatrixProperty("RelativeMatrix", values);
    }

    // Linked documents and sheets are read past; nothing here uses them.
    for (const char* block : {QELElement::LinkedDocs, QELElement::Sheets}) {
        const int count = readBlockCount(map, block, pos);
        std::string value;
        for (int i = 0; i < count / 2; ++i) {
            if (!getBaliseValueByName(pos, QELElement::Attribut, pos, value)) {
                JNLManager::writeMsgFormatted("Error while reading desc.xml file %s. %s holds fewer than %d elements",
                                              _path.c_str(), block, count);
                break;
            }
        }
    }

    if (relative) updateMappingInst(map, relative, pos);
    _occurrences->push_back(occurrence);
}

void QELXMLToDM::createDocument(QELDocument* document, EnumDocumentType type, const QELAnswerEntry* map) {
    if (!document) return;
    if (type == EnumDocumentType_DesignTable)
        updatePropertyDT(document, map);
    else
        updatePropertyCompCatalogSpecific(document, map);
}

void QELXMLToDM::createDesignTableDocument(QELDocument* document, const QELAnswerEntry* map) {
    if (document) updatePropertyDT(document, map);
}

void QELXMLToDM::createCompCatalogSpecificDocument(QELDocument* document, const QELAnswerEntry* map) {
    if (document) updatePropertyCompCatalogSpecific(document, map);
}
