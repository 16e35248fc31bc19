// Reading driver of the answer reader: the frame of the answer, its entries,
// and the workspace, occurrence or document that each entry updates.

#include "QELXMLToDM.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unordered_set>

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
using QELXMLToDMUpdateTools::toInt;

namespace {

const char* const kExecute = "QELXMLToDM::execute";
const char* const kCreateAbsolute = "QELXMLToDM::createAbsoluteOccurrence";
const char* const kCatalogInStateDetails = " document is comp_catalog in state details no mask to update";
const long kNullObject = 2103;

// Everything execute learns before the entries, and keeps for all of them.
struct Run {
    QELWorkSpace* workspace = nullptr;
    QELDocument* document = nullptr;
    bool product = false;
    bool catalogInStateDetails = false;
};

// What the POINTER_ADDRESS of an entry designates. A root is an entry with
// neither a pointer nor a real parent: it opens a workspace.
struct Designated {
    QELWorkSpace* workspace = nullptr;
    QELAbsoluteOccurrence* occurrence = nullptr;
    QELDocument* document = nullptr;
    bool root = false;
};

// The elements whose content is read later, from its position, by the update
// that needs it; the entry map keeps the position instead of the text.
bool isBlock(const std::string& name) {
    using namespace QELElement;
    static const std::unordered_set<std::string> kBlocks = {
        Mapping_Attribut, AbsoluteMatrix, DesignTable_Name, DT_Files,       DesignTable_File, Sheets,
        Auxiliaries,      LinkedDocs,     Shapes,           secondaries,    Components,       DefaultShapeForCache,
        ActivateShapes,   AnalysisFiles,  Externals,        Mapping_Inst,   PartComposites};
    return kBlocks.count(name) != 0;
}

void journalEndOfFile(const std::string& path) {
    JNLManager::writeMsgFormatted("Error while reading desc.xml file %s. Unexpected end of file", path.c_str());
}

void journalMissing(const std::string& path, const std::string& line) {
    JNLManager::writeMsgFormatted("Error while reading desc.xml file %s. %s is missing", path.c_str(), line.c_str());
}

// An opening tag line gives its element name, every "<" and ">" taken out.
bool elementName(const std::string& line, std::string& name) {
    if (line.size() < 2 || line.front() != '<' || line.back() != '>') return false;
    name.assign(line, 1, line.size() - 2);
    if (name.find('<') != std::string::npos || name.find('>') != std::string::npos)
        name.erase(std::remove_if(name.begin(), name.end(), [](char c) { return c == '<' || c == '>'; }), name.end());
    return true;
}

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

// The active document decides whether masks are updated (a product) and
// whether a catalog component in state details is left alone. False when the
// run cannot go on; the error is reported.
bool findActiveDocument(QELSession* session, Run& run) {
    CATUnicodeString fileName;
    if (!PROCManager::isProcessLifeCycleFactory() && !PROCManager::isProcessStateDetailsFactory()) {
        run.workspace = session->getActiveWorkSpace();
        if (!run.workspace) {
            EMHManager::writeMsg(kExecute, kNullObject, "p_active_wsp");
            return false;
        }
        run.document = defaultDocumentOf(run.workspace);
        if (!run.document) {
            EMHManager::writeMsg(kExecute, kNullObject, "p_active_document");
            return false;
        }
        fileName = fileNameOf(run.document);
    } else if (CATDocument* active = CV5CAAToolsCommon::getActiveCATDocument()) {
        // The session files its documents under their bare file names.
        CATUnicodeString directory;
        UTILFile::splitPathAndFileName(active->StorageName(), directory, fileName);
        QELDocument* known = nullptr;
        if (CV5CAAQELSession::getCATIASessionInstance()->getSessionDocument(fileName, known) >= 0) run.document = known;
    }
    const CATUnicodeString extension = UTILFile::getExtension(fileName);
    run.product = extension == "CATProduct";
    const bool stateDetails = PROCManager::isProcessStateDetails() || PROCManager::isProcessStateDetailsUpdate();
    run.catalogInStateDetails = stateDetails && (extension == "catalog" || isCatalogComponent(run.document));
    return true;
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
        if (occurrence && sameParent(occurrence->getLinkedItem(), parentUid))
            return occurrence->getLinkedWorkSpace();
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

bool QELXMLToDM::beginReading(const char* function, QELSession* session, std::string& rootLine) {
    if (!session) {
        JNLManager::writeMsgFormatted("%s: ip_session is NULL", function);
        JNLManager::endFunction(function, -1);
        return false;
    }
    if (openFile() != 0) {
        JNLManager::writeMsgFormatted("Error while opening desc.xml file %s", _path.c_str());
        JNLManager::endFunction(function, -1);
        return false;
    }
    // The answer is read from its first line, whatever an earlier reading left.
    _file.seek(0);
    readLine(rootLine);
    readLine(rootLine);
    return true;
}

void QELXMLToDM::execute(QELSession* session) {
    JNLManager::beginFunction(kExecute);
    std::string line;
    if (!beginReading(kExecute, session, line)) return;
    _oldNames.reset();
    _primary = nullptr;
    _primaryScanned = 0;
    long long start = _file.tell();
    long long pos = start;
    if (line != QELElement::openingLine(QELElement::DESCFILE)) {
        JNLManager::writeMsgFormatted("Error while reading desc.xml file %s. Balise DESC_FILE not found",
                                      _path.c_str());
        closeFile();
        JNLManager::endFunction(kExecute, -1);
        return;
    }

    // The options may stand before or after the count.
    const bool optionsFound = getOptions(session, start, pos);
    if (optionsFound) start = pos;
    // The count is looked for among the root's children only: an entry's
    // own block counts are no entry count.
    long long countEnd = 0;
    const int count = readCount(start, countEnd);
    if (countEnd > 0) start = countEnd;
    if (count < 0)
        JNLManager::writeMsgFormatted("Error while reading desc.xml file %s. NBElements not found", _path.c_str());
    if (!optionsFound && getOptions(session, start, pos)) start = pos;

    Run run;
    if (PROCManager::manageSavableStatusForNonSave() && !findActiveDocument(session, run)) {
        closeFile();
        JNLManager::endFunction(kExecute, -1);
        return;
    }

    const bool emptySession = PROCManager::manageDescForEmptyQEL();
    auto* entries = new TYPMapCATUnicodeStringPVoid("p_list_balises");
    pos = start;
    bool stop = false;
    bool ended = false;
    // The count comes from the file: the end of the file bounds it as well.
    for (int i = 0; i < count && !stop; ++i) {
        start = pos;
        if (!entryBegins(start, i, count)) {
            ended = true;
            break;
        }
        std::string typeName;
        EnumDocumentType type = EnumDocumentType_Unset;
        if (CV5CAAToolsDesc::getNodeName(_file, start, pos, typeName)) {
            start = pos;
            type = CV5CAAToolsDesc::getDocumentTypeFromBalise(typeName);
        }
        // Where the entry's own reading ended: the search for its closing
        // line starts there, so that no line of a damaged entry is read twice.
        long long entryEnd = start;
        bool complete = false;
        std::string name;
        if (CV5CAAToolsDesc::getNodeName(_file, start, pos, name) && name == QELElement::Item_Info) {
            start = pos;
            complete = getValuesAndStore(start, pos, entries, QELElement::closingLine(QELElement::Item_Info).c_str());
            entryEnd = pos;
        } else {
            JNLManager::writeMsgFormatted("Error while reading desc.xml file %s. Entry %d <%s> holds no Item_Info",
                                          _path.c_str(), i + 1, typeName.c_str());
        }

        // An entry whose Item_Info did not close is not applied.
        QELWorkSpace* entryWorkspace = nullptr;
        if (complete) {
            if (PROCManager::manageExternalFiles() && QELFailed(readAndUpdateExternalFiles(session, entries)))
                JNLManager::writeMsg("ERROR : The external files are not updated.");
            if (ENVManager::isCompositeManaged() && QELFailed(readAndUpdateCompositeFiles(session, entries)))
                JNLManager::writeMsg("ERROR : The composite files are not updated.");

            if (run.product && PROCManager::manageSavableStatusForNonSave()) {
                if (run.catalogInStateDetails)
                    JNLManager::writeMsg(kCatalogInStateDetails);
                else
                    updateDocumentForMaskManagement(hostWorkSpace(run.workspace), hostDocument(run.document),
                                                    entries);
            } else if (run.catalogInStateDetails) {
                JNLManager::writeMsg(kCatalogInStateDetails);
            } else {
                // An empty session takes workspaces and drawings only, and
                // the first entry of another kind ends the reading.
                const CATUnicodeString* pointer = entryValue(entries, QELElement::POINTER_ADDRESS);
                const Designated designated =
                    classify(resolvePointer(pointer), pointer != nullptr, entryValue(entries, QELElement::Parent_ItemRev_UID));
                if (type == EnumDocumentType_DesignTable || designated.document) {
                    if (emptySession) {
                        JNLManager::writeMsg("Design Table ignored");
                        stop = true;
                    } else {
                        createDocument(designated.document, type, entries);
                    }
                } else if (!designated.root && !designated.workspace) {
                    if (emptySession) {
                        JNLManager::writeMsg("Element in assembly ignored");
                        stop = true;
                    } else {
                        long long blockPos = pos;
                        createAbsoluteOccurrence(designated.occurrence, session, start, blockPos, type, entries);
                    }
                } else if (emptySession && type != EnumDocumentType_Drawing) {
                    JNLManager::writeMsgFormatted("Document of type %s ignored",
                                                  QELUtilities::getDocFilRefNameFromDocumentType(type).ConvertToChar());
                    stop = true;
                } else {
                    entryWorkspace = createWorkspace(designated.workspace, session, type, entries);
                }
            }

            const bool loadable = type == EnumDocumentType_Part || type == EnumDocumentType_Unset;
            if (!stop && run.product && loadable && PROCManager::isProcessCheckout()) {
                if (!entryWorkspace) {
                    const CATUnicodeString* pointer = entryValue(entries, QELElement::POINTER_ADDRESS);
                    if (!pointer) {
                        JNLManager::writeMsg("Cannot find balise POINTER_ADDRESS");
                    } else {
                        QELComponent* component = resolvePointer(pointer);
                        if (component && component->isWorkSpace()) entryWorkspace = static_cast<QELWorkSpace*>(component);
                    }
                }
                const CATUnicodeString* loadFlag = entryValue(entries, QELElement::Load_Flag);
                if (QELDocument* document = loadFlag ? defaultDocumentOf(entryWorkspace) : nullptr)
                    document->addIntegerProperty("Load_Flag", toInt(*loadFlag));
            }
        }

        if (!stop && !CV5CAAToolsDesc::searchClosingNode(_file, typeName, entryEnd, pos))
            journalMissing(_path, "</" + typeName + ">");
        recycleEntryValues(entries);
    }
    // Entries beyond the count are not read: say so rather than drop them.
    if (!stop && !ended && moreEntriesFollow(pos))
        JNLManager::writeMsgFormatted("Error while reading desc.xml file %s. %d entries announced, more found",
                                      _path.c_str(), count < 0 ? 0 : count);

    clearEntryMap(entries);
    delete entries;
    closeFile();
    JNLManager::endFunction(kExecute, 0);
}

bool QELXMLToDM::getValuesAndStore(long long start, long long& pos, TYPMapCATUnicodeStringPVoid*& map,
                                   const char* endLine) {
    if (!map) map = new TYPMapCATUnicodeStringPVoid("p_list_balises");
    const std::string end = endLine ? endLine : "";
    moveTo(start);
    std::string line;
    std::string key;
    std::string close;
    std::string value;
    for (;;) {
        const long long lineStart = _file.tell();
        if (!readLine(line)) break;
        if (line == end) {
            pos = _file.tell();
            return true;
        }
        // A closing line other than ours: our block lost its closing line,
        // and what follows belongs to the parent.
        if (line.compare(0, 2, "</") == 0) {
            journalMissing(_path, end);
            pos = lineStart;
            moveTo(pos);
            return false;
        }
        // A stray line between elements carries nothing.
        if (!elementName(line, key)) continue;

        const long long blockStart = _file.tell();
        if (isBlock(key)) {
            storeValue(map, key, std::to_string(blockStart));
            CV5CAAToolsDesc::searchClosingNode(_file, key, blockStart, pos);
            continue;
        }
        // Multi-line values keep their line feeds, without the scanner's
        // trailing blanks.
        close.assign("</").append(key) += '>';
        value.clear();
        bool closed = false;
        if (readLine(value)) {
            while (!closed && readLine(line)) {
                closed = line == close;
                if (!closed) {
                    value += '\n';
                    value += line;
                }
            }
        }
        storeValue(map, key, value);
        if (!closed) break;
    }
    journalEndOfFile(_path);
    pos = _file.tell();
    return false;
}

bool QELXMLToDM::getValuesAndStoreForComponents(long long start, long long& pos, TYPMapIntPVoid*& map) {
    static const std::string kEnd = QELElement::closingLine(QELElement::Components);
    static const std::string kComponentName = QELElement::openingLine(QELElement::ComponentName);
    static const std::string kShapes = QELElement::openingLine(QELElement::Shapes);
    if (!map) map = new TYPMapIntPVoid("p_list_component");
    moveTo(start);
    // The shape lists are numbered across the whole block, not per component.
    int index = 0;
    CATUnicodeString component;
    std::string line;
    std::string value;
    bool more = readLine(line);
    while (more && line != kEnd) {
        if (line == kComponentName) {
            more = readLine(value) && readLine(line);
            component = CATUnicodeString(value);
        } else if (line == kShapes) {
            long long at = _file.tell();
            const int count = readCount(at, at);
            long long probe = 0;
            for (int i = 0; i < count && findSibling(QELElement::SR, at, probe); ++i) {
                TYPVectorCATUnicodeString* names = getBaliseValueListByName(at, QELElement::SR, at);
                auto* shapes = new TYPMapCATUnicodeStringPVoid("p_sub_map");
                shapes->insert(component, names);
                map->insert(index++, shapes);
            }
            // Stand after </Shapes> whatever the count said.
            more = CV5CAAToolsDesc::searchClosingNode(_file, QELElement::Shapes, at, at);
        } else {
            more = readLine(value) && readLine(line);
        }
        if (more) more = readLine(line);
    }
    if (!more) journalEndOfFile(_path);
    pos = _file.tell();
    return more;
}

QELWorkSpace* QELXMLToDM::createWorkspace(QELWorkSpace* workspace, QELSession* session, EnumDocumentType type,
                                          TYPMapCATUnicodeStringPVoid* map) {
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
                                          long long& pos, EnumDocumentType type, TYPMapCATUnicodeStringPVoid* map) {
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

void QELXMLToDM::createDocument(QELDocument* document, EnumDocumentType type, TYPMapCATUnicodeStringPVoid* map) {
    if (!document) return;
    if (type == EnumDocumentType_DesignTable)
        updatePropertyDT(document, map);
    else
        updatePropertyCompCatalogSpecific(document, map);
}

void QELXMLToDM::createDesignTableDocument(QELDocument* document, TYPMapCATUnicodeStringPVoid* map) {
    if (document) updatePropertyDT(document, map);
}

void QELXMLToDM::createCompCatalogSpecificDocument(QELDocument* document, TYPMapCATUnicodeStringPVoid* map) {
    if (document) updatePropertyCompCatalogSpecific(document, map);
}

void QELXMLToDM::clearEntryMap(TYPMapCATUnicodeStringPVoid* map) {
    if (!map) return;
    for (const auto& entry : *map) delete static_cast<CATUnicodeString*>(entry.object);
    map->clear();
}

void QELXMLToDM::storeValue(TYPMapCATUnicodeStringPVoid* map, const std::string& key, const std::string& value) {
    std::unique_ptr<CATUnicodeString> text;
    if (_spareValues.empty()) {
        text = std::make_unique<CATUnicodeString>();
    } else {
        text = std::move(_spareValues.back());
        _spareValues.pop_back();
    }
    *text = value;
    // The first value of a key is the one kept.
    if (map->insert(CATUnicodeString(key), text.get()))
        text.release();
    else
        _spareValues.push_back(std::move(text));
}

void QELXMLToDM::recycleEntryValues(TYPMapCATUnicodeStringPVoid* map) {
    if (!map) return;
    _spareValues.reserve(_spareValues.size() + static_cast<size_t>(map->size()));
    for (const auto& entry : *map) _spareValues.emplace_back(static_cast<CATUnicodeString*>(entry.object));
    map->clear();
}

void QELXMLToDM::freeComponentsMap(TYPMapIntPVoid* map) {
    if (!map) return;
    for (const auto& entry : *map) {
        auto* shapes = static_cast<TYPMapCATUnicodeStringPVoid*>(entry.object);
        if (!shapes) continue;
        for (const auto& list : *shapes) delete static_cast<TYPVectorCATUnicodeString*>(list.object);
        delete shapes;
    }
    delete map;
}
