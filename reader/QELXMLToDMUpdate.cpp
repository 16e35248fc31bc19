// Writes one answer entry into the model: the entry's values into the
// properties of its component, item, document and file, then the entry's
// blocks (auxiliary files, shape representations, active shapes, analysis
// files, design table files, component shapes) from their stored positions.

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "CV5CAAQELSession.h"
#include "ENVManager.h"
#include "JNLManager.h"
#include "PROCManager.h"
#include "QELAbsoluteOccurrence.h"
#include "QELElementNames.h"
#include "QELLink.h"
#include "QELModelHeap.h"
#include "QELSession.h"
#include "QELWorkSpace.h"
#include "QELXMLToDM.h"
#include "QELXMLToDMUpdateTools.h"
#include "TYPMapIntPVoid.h"

using namespace QELLookups;
using namespace QELXMLToDMUpdateTools;

namespace {

const char* const kUpdateProperty = "QELXMLToDM::updateProperty";

// ---- the key table ------------------------------------------------------------

enum class Target {
    OccUID, OccCreatedFlag, ComponentString, PartNumber, ItemString, UpdateFlag, CheckAction, DocumentString,
    OldFileName, FileName, FileVersion, Mask, SynchronizeFlag, Type
};

struct KeyRule {
    Target target;
    // Only an instance entry (a workspace or an occurrence) has it; the
    // document entries of catalog components and design tables do not.
    bool instanceOnly;
};

const std::unordered_map<std::string, KeyRule>& keyRules() {
    using namespace QELElement;
    static const std::unordered_map<std::string, KeyRule> rules = {
        {Occ_UID, {Target::OccUID, true}},
        {Occ_CreatedFlag, {Target::OccCreatedFlag, true}},
        {InstanceName, {Target::ComponentString, true}},
        {Inst_Description, {Target::ComponentString, true}},
        {Part_Number, {Target::PartNumber, false}},
        {Parent_ItemRev_UID, {Target::ItemString, true}},
        {Item_ID, {Target::ItemString, false}},
        {ItemRev_ID, {Target::ItemString, false}},
        {ItemRev_UID, {Target::ItemString, true}},
        {Nomenclature, {Target::ItemString, false}},
        {Update_Flag, {Target::UpdateFlag, false}},
        {Check_Action, {Target::CheckAction, true}},
        {DST_UID, {Target::DocumentString, false}},
        {DST_Version, {Target::DocumentString, false}},
        {Date_Last_Modification, {Target::DocumentString, false}},
        {Old_File_Name, {Target::OldFileName, false}},
        {File_Name, {Target::FileName, false}},
        {File_Version, {Target::FileVersion, false}},
        {Mask, {Target::Mask, true}},
        {Synchronize_Flag, {Target::SynchronizeFlag, true}},
        {Type, {Target::Type, false}},
    };
    return rules;
}

// What one entry updates, and the limits on what it may change.
struct EntryTargets {
    QELComponent* component = nullptr; // the workspace or occurrence of an instance entry
    QELItem* item = nullptr;
    QELDocument* document = nullptr;
    QELFile* file = nullptr;
    bool instance = false;
    bool broken = false;
    bool foreignRestricted = false;
    // Told of every old document name the entry sets, so that the Externals
    // search of later entries finds the document under it.
    QELDocumentOldNameIndex* oldNames = nullptr;
};

bool isSaveCommand() {
    return PROCManager::isCommandSave() || PROCManager::isCommandSaveAs() || PROCManager::isCommandSaveSelected();
}

void updateMask(QELComponent* component, int mask) {
    if (!PROCManager::manageCATIAIcons()) return;
    long status = 0;
    if (CV5CAAQELAbsoluteOccurrence* occurrence = hostOccurrence(component)) {
        status = occurrence->computeAndUpdateMaskProperty(mask);
    } else if (CV5CAAQELWorkSpace* workspace = hostWorkSpace(component)) {
        status = workspace->computeAndUpdateMaskProperty(mask);
    }
    if (status < 0) JNLManager::writeMsgFormatted("%s: computeAndUpdateMaskProperty failed (%ld)", kUpdateProperty, status);
}

// The keys every entry may change, broken and foreign ones included.
bool applyUnlimitedKey(const EntryTargets& t, Target target, const CATUnicodeString& value) {
    if (target == Target::OccUID) {
        if (t.broken || t.foreignRestricted) JNLManager::writeMsg("updating occ uid property for foreign file");
        t.component->addStringProperty("Occ_UID", value);
        return true;
    }
    if (target == Target::OccCreatedFlag) {
        t.component->addBooleanProperty("Occ_CreatedFlag", toInt(value) == 1);
        return true;
    }
    return false;
}

void applyKey(const EntryTargets& t, const CATUnicodeString& key, const CATUnicodeString& value) {
    auto rule = keyRules().find(key.ToLatin1());
    if (rule == keyRules().end() || (rule->second.instanceOnly && !t.instance)) return;
    const Target target = rule->second.target;
    if (applyUnlimitedKey(t, target, value) || t.broken || t.foreignRestricted) return;
    QELItem* item = t.item;
    QELDocument* document = t.document;
    QELFile* file = t.file;
    switch (target) {
    case Target::ComponentString:
        t.component->addStringProperty(key, value);
        break;
    case Target::PartNumber:
        if (!item) break;
        if (t.instance) item->addStringProperty("Old_Part_Number", item->getStringProperty("Part_Number"));
        item->addStringProperty("Part_Number", value);
        break;
    case Target::ItemString:
        if (item) item->addStringProperty(key, value);
        break;
    case Target::UpdateFlag:
        // The first entry of a document wins: a document shown by several
        // occurrences is answered once per occurrence.
        if (document && !document->getBooleanProperty("Already_treated")) {
            document->addIntegerProperty("Update_Flag", toInt(value));
            document->addBooleanProperty("Already_treated", true);
        }
        break;
    case Target::CheckAction:
        if (document && isSaveCommand() && document->getIntegerProperty("Check_Action") == -1) {
            document->addIntegerProperty("Check_Action", toInt(value));
        }
        break;
    case Target::DocumentString:
        if (document) document->addStringProperty(key, value);
        break;
    case Target::OldFileName:
        if (file) file->addStringProperty("Old_File_Name", value);
        if (document) {
            document->addStringProperty("Doc_Old_File_Name", value);
            if (t.oldNames) t.oldNames->note(document);
        }
        break;
    case Target::FileName:
        if (file) file->addStringProperty("File_Name", value);
        if (document) document->addStringProperty("ShortFileName", value);
        break;
    case Target::FileVersion:
        if (file) file->addStringProperty("File_Version", value);
        break;
    case Target::Mask:
        updateMask(t.component, toInt(value));
        break;
    case Target::SynchronizeFlag:
        if (document) document->addIntegerProperty("Synchronize_Flag", toInt(value));
        break;
    case Target::Type:
        if (item && startsWith(value, "CatalogComp")) item->addBooleanProperty("CatalogComp", true);
        break;
    default:
        break;
    }
}

// Every key of the entry in the map's own order; block keys hold positions
// and have no rule.
void applyKeys(const EntryTargets& t, const QELAnswerEntry* map) {
    if (t.item) t.item->addBooleanProperty("CatalogComp", false);
    for (const QELAnswerEntry::Value& value : *map) applyKey(t, value.key, value.text);
}

// ---- targets --------------------------------------------------------------------

bool fail(const char* text) {
    JNLManager::writeMsg(text);
    return false;
}

bool findOccurrenceTargets(QELAbsoluteOccurrence* occurrence, EntryTargets& t) {
    if (!(t.item = occurrence->getLinkedItem())) return fail("unable to get absolute item");
    if (!(t.document = firstDocument(t.item))) return fail("unable to get absolute document");
    if (!(t.file = firstFile(t.document))) return fail("unable to get absolute file");
    t.broken = occurrence->getBooleanProperty("IsBrokenIcon");
    return true;
}

bool findWorkSpaceTargets(QELWorkSpace* workspace, EntryTargets& t) {
    if (!(t.item = workspace->getItem())) return fail("unable to get workspace item");
    if (!(t.document = workspace->getLinkedDocument())) return fail("unable to get workspace document");
    if (!(t.file = workspace->getFile())) return fail("unable to get workspace file");
    return true;
}

bool findInstanceTargets(QELComponent* component, EntryTargets& t) {
    t.component = component;
    t.instance = true;
    bool found = false;
    if (component->isAbsolute()) {
        found = findOccurrenceTargets(static_cast<QELAbsoluteOccurrence*>(component), t);
    } else if (component->isWorkSpace()) {
        found = findWorkSpaceTargets(static_cast<QELWorkSpace*>(component), t);
    } else {
        return fail("current component is not a workspace neither an absolute");
    }
    t.foreignRestricted = found && t.document->isAForeignFile() && !ENVManager::manageForeignFilesOnSave();
    return found;
}

// A document entry: the host's default item, or for a plain model document
// (a design table) the item it is filed under as its parent.
void findDocumentTargets(QELDocument* document, EntryTargets& t) {
    t.document = document;
    CV5CAAQELDocument* host = hostDocument(document);
    t.item = host ? host->getDefaultItem() : nullptr;
    if (!t.item) {
        TYPMapCATUnicodeStringPVoid* parents = document->getLinkedItems("LINKNAME_PARENT");
        t.item = parents ? static_cast<QELItem*>(parents->first()) : nullptr;
    }
    t.file = firstFile(document);
}

// A shape representation of a component is described, not updated, unless
// it stands for a foreign file.
bool isUpdatable(QELComponent* component) {
    if (component->getStringProperty("Type") != "COMP") return true;
    JNLManager::writeMsg("current QELComponent is a CATIA component");
    if (!component->getBooleanProperty("IsForeignFile")) {
        JNLManager::writeMsg("Component found is a Shape Representation. Update properties is not necessary. Skip.");
        return false;
    }
    JNLManager::writeMsg("current QELComponent is a foreign file");
    return true;
}

void updateStagingPath(QELWorkSpace* workspace, QELItem* item) {
    if (!PROCManager::isCatalogStagingManaged() || !workspace->isActiveWorkspace()) return;
    // The host knows whether the item is a catalog component; a plain model
    // item goes by what this entry's Type said.
    CV5CAAQELItem* host = hostItem(item);
    const bool catalog = host ? host->isCatalogComp() != 0 : item->getBooleanProperty("CatalogComp");
    CV5CAAQELSession::getCATIASessionInstance()->setStagingPath(catalog ? ENVManager::getCatalogPath()
                                                                        : ENVManager::getFilesDirectory());
}

// ---- blocks -----------------------------------------------------------------------

// The scanner operations the block readers use, bound to one reader.
struct BlockReader {
    UTILLineFile& file;
    std::function<int(const char* block, long long& pos)> count;
    std::function<TYPVectorCATUnicodeString*(long long start, const char* name, long long& pos)> list;
    std::function<bool(long long start, const char* name, long long& pos, std::string& value)> value;
};

// An auxiliary file of the entry's document. A document the session already
// knows under the file name is reused, so that an answer naming the same
// auxiliary twice (two occurrences of one document) links it once.
void addAuxiliary(QELDocument* document, const CATUnicodeString& type, const CATUnicodeString& fileName) {
    if (fileName.IsNull()) {
        JNLManager::writeMsgFormatted("%s: auxiliary of type [%s] without a file name ignored", kUpdateProperty,
                                      type.ConvertToChar());
        return;
    }
    QELSession* session = QELSession::getInstance();
    QELDocument* auxiliary = session->getDocument(fileName);
    if (!auxiliary) {
        auxiliary = QELModelHeap::adopt(new QELDocument(fileName));
        session->addDocument(auxiliary);
    }
    QELFile* file = auxiliary->createFile("auxiliary", fileName);
    const CATUnicodeString dataSetType = QELUtilities::getDocFilRefNameFromDocumentType(document->getType());
    document->addGRMDocumentLink("CATIA_" + dataSetType + "_" + type + "_aux_Link_on_dataset", auxiliary);
    auxiliary->addStringProperty("TypeAuxiliary", type);
    auxiliary->addStringProperty("ShortFileName", fileName);
    session->addFile(file);
}

void readAuxiliaries(BlockReader& r, QELDocument* document) {
    long long pos = 0;
    const int count = r.count(QELElement::Auxiliaries, pos);
    if (count < 1) return;
    forEachList(r.file, kUpdateProperty, QELElement::Auxiliaries, QELElement::Attribut, count, pos, r.list,
                [&](const TYPVectorCATUnicodeString& list) {
                    // The pair slides by one line: (0, 1), (1, 2), ...
                    const int pairs = list.size() / 2;
                    for (int i = 1; i <= pairs; ++i) addAuxiliary(document, list[i - 1], list[i]);
                });
}

// Shape representation links by "ShapeRepName", letter case ignored as
// Compare does.
class ShapeIndex {
public:
    ShapeIndex() = default;
    // Takes the links of a new vector and frees the vector.
    explicit ShapeIndex(TYPVectorPQELLink* links) {
        std::unique_ptr<TYPVectorPQELLink> owned(links);
        if (!links) return;
        for (QELLink* link : *links) {
            if (link) _byName[lowered(link->getStringProperty("ShapeRepName"))].push_back(link);
        }
    }
    const std::vector<QELLink*>* find(const CATUnicodeString& name) const {
        auto it = _byName.find(lowered(name));
        return it == _byName.end() ? nullptr : &it->second;
    }

private:
    std::unordered_map<CATUnicodeString, std::vector<QELLink*>, CATUnicodeStringHash> _byName;
};

// The groups of six lines of one SR list: a blank line, the file name, the
// representation's name, its dataset UID, ... Groups start at every line (g
// advances by one), so consecutive groups overlap; a link takes the first
// group that names it.
void applyShapeList(const TYPVectorCATUnicodeString& list, const ShapeIndex& shapes) {
    const int groups = list.size() / 6;
    for (int g = 0; g < groups; ++g) {
        JNLManager::writeMsgFormatted("shape_name=[%s]", list[g + 2].ConvertToChar());
        const std::vector<QELLink*>* links = shapes.find(list[g + 2]);
        if (!links) continue;
        for (QELLink* link : *links) {
            JNLManager::writeMsgFormatted("new_shape_file=[%s]", list[g + 1].ConvertToChar());
            JNLManager::writeMsgFormatted("sr_dst_uid=[%s]", list[g + 3].ConvertToChar());
            if (link->getBooleanProperty("LinkAlreadyTreated")) continue;
            link->addStringProperty("ShortFileName", list[g + 1]);
            if (QELComponent* representation = link->get_Secondary()) {
                representation->addStringProperty("DST_UID", list[g + 3]);
            }
            link->addBooleanProperty("LinkAlreadyTreated", true);
        }
    }
}

void readShapes(BlockReader& r, QELDocument* document) {
    long long pos = 0;
    const int count = r.count(QELElement::Shapes, pos);
    if (count < 1) return;
    const ShapeIndex shapes(document->getLinkedAlternateShapeRepresentations());
    forEachList(r.file, kUpdateProperty, QELElement::Shapes, QELElement::SR, count, pos, r.list,
                [&](const TYPVectorCATUnicodeString& list) { applyShapeList(list, shapes); });
}

void readActiveShapes(BlockReader& r, QELComponent* component) {
    const int maj = component->getIntegerProperty("MAJ");
    JNLManager::writeMsgFormatted("ip_component->getIntegerProperty(CteQEL_PROPERTY_MAJ)=%d", maj);
    if (maj != 2) return;
    long long pos = 0;
    const int count = r.count(QELElement::ActivateShapes, pos);
    if (count < 2) return;
    CV5CAAQELAbsoluteOccurrence* occurrence = hostOccurrence(component);
    CV5CAAQELWorkSpace* workspace = hostWorkSpace(component);
    if (!occurrence && !workspace) {
        JNLManager::writeMsgFormatted("%s: no host object to activate shapes on", kUpdateProperty);
        return;
    }
    forEachValuePair(r.file, kUpdateProperty, QELElement::ActivateShapes, QELElement::Attribut, count / 2, pos,
                     r.value,
                     [&](const CATUnicodeString& name, const CATUnicodeString& value) {
                         if (occurrence) {
                             occurrence->addActiveShape(name, value);
                         } else {
                             workspace->addActiveShape(name, value);
                         }
                     });
}

// Pairs the new names of one analysis list with the component's files. The
// source property holds two values per file (the file's full path first);
// the i-th new name belongs to the i-th file. The result maps each full path
// to its new name, and is stored only when every file has exactly one new
// name: a partial answer would rename the wrong files.
void storeAnalysisFiles(QELComponent* component, const char* source, const char* target,
                        const TYPVectorCATUnicodeString& newNames) {
    const TYPVectorCATUnicodeString* files = component->getDynamicProperty(source);
    const int fileCount = files ? files->size() / 2 : 0;
    if (fileCount == 0 && newNames.empty()) return;
    if (fileCount != newNames.size()) {
        JNLManager::writeMsgFormatted("%s: %d files in %s for %d new names, %s not stored", kUpdateProperty, fileCount,
                                      source, newNames.size(), target);
        return;
    }
    for (int i = 0; i < fileCount; ++i) component->addDynamicProperty(target, (*files)[2 * i], newNames[i], true);
}

// DesignTable_File: one new file name per design table of the document, in
// the order DT_Files listed them (the document's "catdesigntable" links).
void readDesignTableFiles(BlockReader& r, QELDocument* document) {
    long long pos = 0;
    const int count = r.count(QELElement::DesignTable_File, pos);
    if (count < 1) return;
    std::unique_ptr<TYPVectorPQELLink> links(document->getGRMDocumentLinksWhereUsedAsPrimary("catdesigntable"));
    forEachValue(r.file, kUpdateProperty, QELElement::DesignTable_File, QELElement::Attribut, count, pos, r.value,
                 [&](int index, const CATUnicodeString& fileName) {
                     QELLink* link = links && index < links->size() ? (*links)[index] : nullptr;
                     QELComponent* table = link ? link->get_Secondary() : nullptr;
                     if (!table || !table->isAKindOf("QELDOCUMENT_CLASSNAME")) {
                         JNLManager::writeMsgFormatted("%s: no design table for the file [%s]", kUpdateProperty,
                                                       fileName.ConvertToChar());
                         return;
                     }
                     auto* designTable = static_cast<QELDocument*>(table);
                     designTable->addStringProperty("ShortFileName", fileName);
                     if (QELFile* file = firstFile(designTable)) file->addStringProperty("File_Name", fileName);
                 });
}

// The shape lists of a Components block (running index -> component name ->
// SR list) applied to the component shape representations of the
// document's component occurrences, found by their "ComponentName".
void applyComponentShapes(QELDocument* document, const TYPMapIntPVoid& components) {
    std::unordered_map<CATUnicodeString, QELAbsoluteOccurrence*, CATUnicodeStringHash> byName;
    if (TYPMapCATUnicodeStringPVoid* occurrences = document->getLinkedComponentAbsoluteOccurrences()) {
        for (const auto& entry : *occurrences) {
            auto* occurrence = static_cast<QELAbsoluteOccurrence*>(entry.object);
            if (occurrence) byName.emplace(occurrence->getStringProperty("ComponentName"), occurrence);
        }
    }
    std::unordered_map<const QELAbsoluteOccurrence*, ShapeIndex> shapes;
    for (const auto& entry : components) {
        const auto* perComponent = static_cast<const TYPMapCATUnicodeStringPVoid*>(entry.object);
        if (!perComponent) continue;
        for (const auto& component : *perComponent) {
            const auto* list = static_cast<const TYPVectorCATUnicodeString*>(component.object);
            auto found = byName.find(component.key);
            if (found == byName.end()) {
                JNLManager::writeMsgFormatted("%s: component [%s] not found", kUpdateProperty,
                                              component.key.ConvertToChar());
                continue;
            }
            QELAbsoluteOccurrence* occurrence = found->second;
            auto index = shapes.find(occurrence);
            if (index == shapes.end()) {
                index = shapes.emplace(occurrence, ShapeIndex(occurrence->getLinkedComponentShapeRepresentations()))
                            .first;
            }
            if (list) applyShapeList(*list, index->second);
        }
    }
}

} // namespace

void QELXMLToDM::updateProperty(QELComponent* component, const QELAnswerEntry* map) {
    JNLManager::beginFunction(kUpdateProperty);
    EntryTargets targets;
    targets.oldNames = &_oldNames;
    if (!component || !map) {
        JNLManager::writeMsg(component ? "ip_liste is NULL" : "ip_component is NULL");
    } else if (isUpdatable(component) && findInstanceTargets(component, targets)) {
        applyKeys(targets, map);
        if (component->isWorkSpace()) updateStagingPath(static_cast<QELWorkSpace*>(component), targets.item);
        if (targets.foreignRestricted) {
            JNLManager::writeMsg("current object is a foreign file, stop here update of properties");
        } else {
            BlockReader blocks{
                _file,
                [this, map](const char* block, long long& pos) { return readBlockCount(map, block, pos); },
                [this](long long start, const char* name, long long& pos) {
                    return getBaliseValueListByName(start, name, pos);
                },
                [this](long long start, const char* name, long long& pos, std::string& value) {
                    return getBaliseValueByName(start, name, pos, value);
                }};
            long long pos = 0;
            QELDocument* document = targets.document;
            updateMappingAttributs(map, document, pos);
            if (component->getIntegerProperty("Modified_Flag") != -1) readAuxiliaries(blocks, document);
            readSecondariesAttributes(document, map);
            readShapes(blocks, document);
            if (PROCManager::isCommandSynchronizeActiveShapes()) readActiveShapes(blocks, component);
            if (const long long start = blockPosition(map, QELElement::AnalysisFiles)) {
                TYPVectorCATUnicodeString* results = nullptr;
                TYPVectorCATUnicodeString* computations = nullptr;
                getValuesAndStoreAnalysisFiles(start, pos, results, computations);
                storeAnalysisFiles(component, "AnalysisResult", "FinalAnalysisResultsFiles", *results);
                storeAnalysisFiles(component, "AnalysisComputation", "FinalAnalysisComputeFiles", *computations);
                delete results;
                delete computations;
            }
            readDesignTableFiles(blocks, document);
            if (const long long start = blockPosition(map, QELElement::Components)) {
                auto* components = new TYPMapIntPVoid("p_list_component");
                getValuesAndStoreForComponents(start, pos, components);
                if (components) applyComponentShapes(document, *components);
                freeComponentsMap(components);
            }
        }
    }
    JNLManager::endFunction(kUpdateProperty, -1);
}

namespace {

// The update of a catalog component or design table entry: the document's own
// keys, then, when `withMapping`, its mapping attributes as (name, value)
// pairs of Attribut values.
template <typename Count, typename ReadValue>
void updateDocumentEntry(const char* function, QELDocument* document, const QELAnswerEntry* map, bool withMapping,
                         UTILLineFile& file, QELDocumentOldNameIndex& oldNames, Count count, ReadValue readValue) {
    JNLManager::beginFunction(function);
    if (!document || !map) {
        JNLManager::writeMsg(document ? "ip_liste is NULL" : "ip_document is NULL");
        JNLManager::endFunction(function, -1);
        return;
    }
    EntryTargets targets;
    targets.oldNames = &oldNames;
    findDocumentTargets(document, targets);
    if (!targets.item) JNLManager::writeMsgFormatted("%s: the document has no item", function);
    applyKeys(targets, map);
    long long pos = 0;
    const int attributes = withMapping && entryValue(map, QELElement::Mapping_Attribut) ? count(pos) : -1;
    if (attributes >= 2) {
        forEachValuePair(file, function, QELElement::Mapping_Attribut, QELElement::Attribut, attributes / 2, pos,
                         readValue,
                         [&](const CATUnicodeString& name, const CATUnicodeString& value) {
                             document->addDynamicProperty(QELDocument::kMappingAttributes, name, value, false);
                         });
    }
    JNLManager::endFunction(function, -1);
}

} // namespace

void QELXMLToDM::updatePropertyCompCatalogSpecific(QELDocument* document, const QELAnswerEntry* map) {
    // A catalog component's mapping is only answered for a foreign file.
    updateDocumentEntry(
        "QELXMLToDM::updatePropertyCompCatalogSpecific", document, map, document && document->isAForeignFile(), _file,
        _oldNames,
        [this, map](long long& pos) { return readBlockCount(map, QELElement::Mapping_Attribut, pos); },
        [this](long long start, const char* name, long long& pos, std::string& value) {
            return getBaliseValueByName(start, name, pos, value);
        });
}

void QELXMLToDM::updatePropertyDT(QELDocument* document, const QELAnswerEntry* map) {
    updateDocumentEntry(
        "QELXMLToDM::updatePropertyDT", document, map, true, _file, _oldNames,
        [this, map](long long& pos) { return readBlockCount(map, QELElement::Mapping_Attribut, pos); },
        [this](long long start, const char* name, long long& pos, std::string& value) {
            return getBaliseValueByName(start, name, pos, value);
        });
}
