// Mapping attributes of documents and instances, the renaming data of a
// document's secondaries, item identifiers, and the mask update of the
// current document when the answer concerns the active product.

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "CV5CAAQELDocument.h"
#include "CV5CAAQELItem.h"
#include "CV5CAAQELWorkSpace.h"
#include "EMHManager.h"
#include "JNLManager.h"
#include "QELDocument.h"
#include "QELElementNames.h"
#include "QELItem.h"
#include "QELLink.h"
#include "QELRelativeOccurrence.h"
#include "QELXMLToDM.h"
#include "QELXMLToDMUpdateTools.h"
#include "UTILFile.h"

using namespace QELLookups;
using namespace QELXMLToDMUpdateTools;

namespace {

// "Mapping Attribut: [<name>] = [<value>]", each text up to its first NUL as
// "%s" takes it, put together without a formatting pass: an answer has one
// such line per attribute.
void journalPair(const CATUnicodeString& name, const CATUnicodeString& value) {
    static std::string line;
    line.assign("Mapping Attribut: [").append(name.ConvertToChar()).append("] = [");
    line.append(value.ConvertToChar()) += ']';
    JNLManager::writeMsg(line.c_str());
}

// Reads the (name, value) pairs of a name/value block, each value a separate
// `Attribut` found by the plain tag search, and hands every complete pair to
// `add`. `readTag(pos, value)` is that search bound to the block's stop line.
//
// A name that cannot be found means the stop line (or the end of the file)
// came first: every later pair would search the same lines and fail the same
// way, so the walk stops there. A read that meets the stop line inside its
// value succeeds but leaves the position where it was; the pair is still
// used, and the walk stops after it, since the next search would only read
// the same lines again.
template <typename ReadTag, typename Add>
long readNameValuePairs(const char* function, const char* block, int count, long long& pos, ReadTag readTag, Add add) {
    long status = 0;
    const int pairs = count / 2;
    // Kept across pairs: each read assigns into the storage they hold.
    CATUnicodeString name, value;
    for (int i = 0; i < pairs; ++i) {
        const long long nameStart = pos;
        status = readTag(pos, name);
        if (status != 0) {
            EMHManager::writeMsg(function, 2102, "getTagValueByName (name)");
            if (i + 1 < pairs) reportShortBlock(function, block, count, 2 * i);
            break;
        }
        bool blockOver = pos == nameStart;
        const long long valueStart = pos;
        status = readTag(pos, value);
        if (status != 0) {
            EMHManager::writeMsg(function, 2102, "getTagValueByName (value)");
            if (blockOver) break;
            continue;
        }
        blockOver = blockOver || pos == valueStart;
        journalPair(name, value);
        add(name, value);
        if (blockOver) {
            if (i + 1 < pairs) reportShortBlock(function, block, count, 2 * i + 2);
            break;
        }
    }
    return status;
}

// The secondaries of a document by their "ShortFileName", compared exactly.
class SecondaryIndex {
public:
    explicit SecondaryIndex(const TYPVectorPQELLink& links) {
        for (QELLink* link : links) {
            QELComponent* secondary = link ? link->get_Secondary() : nullptr;
            if (secondary) _byFileName[secondary->getStringProperty("ShortFileName")].push_back(link);
        }
    }
    const std::vector<QELLink*>* find(const CATUnicodeString& fileName) const {
        auto it = _byFileName.find(fileName);
        return it == _byFileName.end() ? nullptr : &it->second;
    }

private:
    std::unordered_map<CATUnicodeString, std::vector<QELLink*>, CATUnicodeStringHash> _byFileName;
};

// The groups of seven lines of one `secondary` list. Groups start at every
// line (g advances by one), so consecutive groups overlap; a secondary is
// renamed by the first group that names it, whatever follows.
void applySecondaryList(const TYPVectorCATUnicodeString& list, const SecondaryIndex& secondaries) {
    JNLManager::writeMsgFormatted("number of data read from XML file = %d", list.size());
    const int groups = list.size() / 7;
    for (int g = 0; g < groups; ++g) {
        const CATUnicodeString& path = list[g];
        JNLManager::writeMsgFormatted("updating data for SP %s", path.ConvertToChar());
        CATUnicodeString directory, fileName;
        if (UTILFile::splitPathAndFileName(path, directory, fileName) < 0) {
            JNLManager::writeMsg("ERROR : splitPathAndFileName is failed.");
        }
        // A blank path names no file: it must not rename the secondaries that
        // have no file name of their own.
        const std::vector<QELLink*>* matches = fileName.IsNull() ? nullptr : secondaries.find(fileName);
        if (!matches) continue;
        for (QELLink* link : *matches) {
            QELComponent* secondary = link->get_Secondary();
            JNLManager::writeMsgFormatted("current QEL SP = %s", secondary->get_Name().ConvertToChar());
            JNLManager::writeMsgFormatted("updating data with new file name %s", list[g + 1].ConvertToChar());
            JNLManager::writeMsgFormatted("updating data with new part number %s", list[g + 3].ConvertToChar());
            if (link->getBooleanProperty("LinkAlreadyTreated")) continue;
            secondary->addStringProperty("New_File_name", list[g + 1]);
            secondary->addStringProperty("Part_Number", list[g + 3]);
            secondary->addBooleanProperty("Modified_Flag", list[g + 5] == "1");
            link->addBooleanProperty("LinkAlreadyTreated", true);
            if (CV5CAAQELDocument* host = hostDocument(secondary)) host->updateMaskProperty(toInt(list[g + 6]));
        }
    }
}

} // namespace

long QELXMLToDM::updateMappingAttributs(const QELAnswerEntry* map, QELDocument* document, long long& pos) {
    const char* const function = "QELXMLToDM::updateMappingAttributs";
    JNLManager::beginFunction(function);
    long status = 0;
    if (!map) {
        EMHManager::writeMsg(function, 2103, "ip_liste");
        status = QEL_E_FAIL;
    } else if (!document) {
        EMHManager::writeMsg(function, 2103, "ip_document");
        status = QEL_E_FAIL;
    } else {
        const int count = readBlockCount(map, QELElement::Mapping_Attribut, pos);
        if (count >= 0) {
            static const CATUnicodeString stopLine(QELElement::closingLine(QELElement::Mapping_Attribut));
            static const CATUnicodeString attribut(QELElement::Attribut);
            status = readNameValuePairs(
                function, QELElement::Mapping_Attribut, count, pos,
                [&](long long& at, CATUnicodeString& value) {
                    return getTagValueByName(at, stopLine, attribut, at, value);
                },
                [&](const CATUnicodeString& name, const CATUnicodeString& value) {
                    static const CATUnicodeString property(QELDocument::kMappingAttributes);
                    document->addDynamicProperty(property, name, value, false);
                });
        }
    }
    JNLManager::endFunction(function, -1);
    return status;
}

long QELXMLToDM::updateMappingInst(const QELAnswerEntry* map, QELRelativeOccurrence* relativeOccurrence,
                                   long long& pos) {
    const char* const function = "QELXMLToDM::updateMappingInst";
    JNLManager::beginFunction(function);
    long status = 0;
    if (!map) {
        EMHManager::writeMsg(function, 2103, "ip_liste");
        status = QEL_E_FAIL;
    } else if (!relativeOccurrence) {
        EMHManager::writeMsg(function, 2103, "ip_rel_occ");
        status = QEL_E_FAIL;
    } else {
        const int count = readBlockCount(map, QELElement::Mapping_Inst, pos);
        if (count >= 0) {
            static const CATUnicodeString stopLine(QELElement::closingLine(QELElement::Mapping_Inst));
            static const CATUnicodeString attribut(QELElement::Attribut);
            status = readNameValuePairs(
                function, QELElement::Mapping_Inst, count, pos,
                [&](long long& at, CATUnicodeString& value) {
                    return getTagValueByName(at, stopLine, attribut, at, value);
                },
                [&](const CATUnicodeString& name, const CATUnicodeString& value) {
                    static const CATUnicodeString property("Mapping_Inst_Vt");
                    relativeOccurrence->addDynamicProperty(property, name, value, false);
                });
        }
    }
    JNLManager::endFunction(function, -1);
    return status;
}

void QELXMLToDM::readSecondariesAttributes(QELDocument* document, const QELAnswerEntry* map) {
    const char* const function = "QELXMLToDM::readSecondariesAttributes";
    if (!document || !map) return;
    long long pos = 0;
    const int count = readBlockCount(map, QELElement::secondaries, pos);
    if (count < 1) return;
    // Without secondaries there is nothing the lists could rename.
    std::unique_ptr<TYPVectorPQELLink> links(document->getLinkedSecondaries());
    if (!links || links->empty()) return;
    const SecondaryIndex secondaries(*links);
    forEachList(
        _file, function, QELElement::secondaries, QELElement::secondary, count, pos,
        [this](long long start, const char* name, long long& at) { return getBaliseValueListByName(start, name, at); },
        [&](const TYPVectorCATUnicodeString& list) { applySecondaryList(list, secondaries); });
}

long QELXMLToDM::readAndUpdateItemIdItemRevId(QELComponent* component, QELItem* item, const QELAnswerEntry* map) {
    const char* const function = "QELXMLToDM::readAndUpdateItemIdItemRevId";
    JNLManager::beginFunction(function);
    long status = 0;
    if (!component || !item) {
        JNLManager::writeMsg(component ? "ip_item is NULL" : "ip_component is NULL");
        status = QEL_E_FAIL;
    } else if (component->getIntegerProperty("Modified_Flag") != -1) {
        const CATUnicodeString* itemId = entryValue(map, QELElement::Item_ID);
        const CATUnicodeString* itemRevId = entryValue(map, QELElement::ItemRev_ID);
        if (!itemId) {
            JNLManager::writeMsg("p_item_id is NULL");
            status = QEL_E_FAIL;
        } else {
            item->addStringProperty("Item_ID", *itemId);
            if (!itemRevId) {
                JNLManager::writeMsg("p_itemrev_id is NULL");
                status = QEL_E_FAIL;
            } else {
                item->addStringProperty("ItemRev_ID", *itemRevId);
            }
        }
    }
    JNLManager::endFunction(function, -1);
    return status;
}

long QELXMLToDM::updateDocumentForMaskManagement(CV5CAAQELWorkSpace* workspace, CV5CAAQELDocument* document,
                                                 const QELAnswerEntry* map) {
    const char* const function = "QELXMLToDM::updateDocumentForMaskManagement";
    JNLManager::beginFunction(function);
    long status = 0;
    const CATUnicodeString* address = entryValue(map, QELElement::POINTER_ADDRESS);
    const CATUnicodeString* maskText = entryValue(map, QELElement::Mask);
    QELComponent* component = address ? resolvePointer(address) : nullptr;
    if (!address) {
        JNLManager::writeMsg("Cannot find balise POINTER_ADDRESS");
        status = QEL_E_FAIL;
    } else if (maskText) {
        const int mask = toInt(*maskText);
        if (CV5CAAQELWorkSpace* hostWorkspace = hostWorkSpace(component)) {
            // The entry is a workspace: its mask, then the secondaries of its
            // own default document.
            workspace = hostWorkspace;
            if (workspace->computeAndUpdateMaskProperty(mask) < 0) {
                EMHManager::writeMsg(function, 2102, "computeAndUpdateMaskProperty");
                status = QEL_E_FAIL;
            } else {
                readSecondariesAttributes(workspace->getWorkSpaceDefaultDocument(), map);
            }
        } else {
            // Any other entry stands for a document: the one it designates
            // when it is a host document, else the current document.
            if (CV5CAAQELDocument* designated = hostDocument(component)) document = designated;
            if (!document) {
                JNLManager::writeMsg("ip_document is NULL");
                status = QEL_E_FAIL;
            } else if (document->getBooleanProperty("IsSecondary")) {
                if (document->updateMaskProperty(mask) < 0) status = QEL_E_FAIL;
            } else {
                QELItem* item = document->getDefaultItem();
                CV5CAAQELItem* host = hostItem(item);
                if (!item) {
                    EMHManager::writeMsg(function, 2102, "getDefaultItem");
                    status = QEL_E_FAIL;
                } else if (!host || host->computeAndUpdateMaskProperty(mask) < 0) {
                    // A plain model item cannot compute a mask.
                    EMHManager::writeMsg(function, 2102, "computeAndUpdateMaskProperty");
                    status = QEL_E_FAIL;
                } else {
                    readSecondariesAttributes(document, map);
                }
            }
        }
    }
    JNLManager::endFunction(function, -1);
    return status;
}
