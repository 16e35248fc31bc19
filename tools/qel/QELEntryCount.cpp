#include "QELEntryCount.h"

#include <algorithm>
#include <map>
#include <unordered_set>

#include "PROCManager.h"
#include "QELAbsoluteOccurrence.h"
#include "QELDMToXMLTraversal.h"
#include "QELDescribedObjects.h"
#include "QELEntryFields.h"
#include "QELEscape.h"
#include "QELFile.h"
#include "QELHandleTable.h"
#include "QELItem.h"
#include "QELLookups.h"
#include "QELSession.h"
#include "QELWorkSpace.h"

using QELDMToXMLTraversal::countsItself;
using QELDMToXMLTraversal::isLeftOut;
using QELDMToXMLTraversal::isVisibleDesignTable;
using QELLookups::firstDocument;
using QELLookups::firstFile;

namespace {

const char* const kLeftOutSubtree = "counted, not written: under an ignored or broken-icon "
                                    "occurrence, whose whole subtree the walk skips";
const char* const kSharedIndex = "siblings that share an IndiceOfAbsolute: the walk describes one "
                                 "of them once per sibling and the others never";
const char* const kDesignTable = "counted, not written: a visible design table without a parent item or a file, or "
                                 "under a command that describes no design table";
const char* const kSecondary = "counted, not written: a secondary document of the state-details factory process";
const char* const kIncomplete = "counted, not written: a component without the item, document, "
                                "file or parent its description needs";
const char* const kHiddenCurrent = "written, not counted: the current workspace and its "
                                   "occurrences, described even when it is not visible or "
                                   "ignored, counted only when it is visible";

bool underLeftOutAncestor(QELAbsoluteOccurrence* occurrence) {
    // The parent chain of a well-formed model is finite; the bound keeps a
    // cycle in a hand-made session from looping.
    size_t steps = 0;
    for (QELAbsoluteOccurrence* up = occurrence->getLinkedParentAbsoluteOccurrence(); up && steps < 100000;
         up = up->getLinkedParentAbsoluteOccurrence(), ++steps)
        if (isLeftOut(up)) return true;
    return false;
}

bool sharesIndexWithSibling(QELAbsoluteOccurrence* occurrence) {
    QELAbsoluteOccurrence* parent = occurrence->getLinkedParentAbsoluteOccurrence();
    TYPMapCATUnicodeStringPVoid* siblings = parent ? parent->getLinkedChildAbsoluteOccurrences() : nullptr;
    if (!siblings) return false;
    const int index = occurrence->getIntegerProperty("IndiceOfAbsolute");
    for (const auto& entry : *siblings) {
        auto* sibling = static_cast<QELComponent*>(entry.object);
        if (sibling && sibling != occurrence && sibling->getIntegerProperty("IndiceOfAbsolute") == index) return true;
    }
    return false;
}

// What the writer needs before it describes a node: without any of it, the
// node is counted and then left out.
bool lacksWhatItsDescriptionNeeds(QELComponent* component) {
    if (component->isWorkSpace()) {
        auto* workspace = static_cast<QELWorkSpace*>(component);
        return !workspace->getItem() || !workspace->getLinkedDocument() || !workspace->getFile();
    }
    if (!component->isAbsolute()) return false;
    auto* occurrence = static_cast<QELAbsoluteOccurrence*>(component);
    QELDocument* document = firstDocument(occurrence->getLinkedItem());
    if (!firstFile(document) || !occurrence->getLinkedRelativeOccurrence()) return true;
    QELDocument* parentDocument = nullptr;
    if (QELAbsoluteOccurrence* parent = occurrence->getLinkedParentAbsoluteOccurrence()) {
        parentDocument = firstDocument(parent->getLinkedItem());
    } else if (QELWorkSpace* workspace = occurrence->getLinkedWorkSpace()) {
        if (!workspace->getItem()) return true;
        parentDocument = workspace->getLinkedDocument();
    }
    return !firstFile(parentDocument);
}

// A design table is described with its parent item and its file, and only
// by the commands and processes that have a design-table description.
bool describable(QELDocument* designTable) {
    const bool save =
        PROCManager::isCommandSave() || PROCManager::isCommandSaveAs() || PROCManager::isCommandSaveSelected();
    const bool variant = (save && (PROCManager::isPhasePhase1() || PROCManager::isPhasePhase2())) ||
                         PROCManager::isCommandCreateSpreadsheet() || PROCManager::isCommandImport() ||
                         PROCManager::isProcessStateDetailsFactory() || PROCManager::isProcessLifeCycleFactory() ||
                         PROCManager::isProcessBRRSave();
    QELDescribedObjects objects;
    return variant && qelDescribedObjects(designTable, objects) && objects.item && objects.file;
}

const char* ruleOfCountedNotWritten(QELComponent* component) {
    if (component->isAbsolute()) {
        auto* occurrence = static_cast<QELAbsoluteOccurrence*>(component);
        if (underLeftOutAncestor(occurrence)) return kLeftOutSubtree;
        if (sharesIndexWithSibling(occurrence)) return kSharedIndex;
    }
    if (component->isAKindOf("QELDOCUMENT_CLASSNAME")) {
        auto* document = static_cast<QELDocument*>(component);
        if (isVisibleDesignTable(document) && !describable(document)) return kDesignTable;
        if (document->getBooleanProperty("IsSecondary")) return kSecondary;
    }
    return lacksWhatItsDescriptionNeeds(component) ? kIncomplete : nullptr;
}

// The current workspace is described whatever it counts, and so are its
// occurrences: those of a workspace that counts nothing.
std::unordered_set<const QELComponent*> uncountedCurrent(QELWorkSpace* active) {
    std::unordered_set<const QELComponent*> described;
    if (!active || countsItself(active)) return described;
    described.insert(active);
    if (TYPMapCATUnicodeStringPVoid* occurrences = active->getLinkedAbsoluteOccurrences())
        for (const auto& entry : *occurrences) described.insert(static_cast<const QELComponent*>(entry.object));
    return described;
}

const char* ruleOfWrittenNotCounted(QELComponent* component, const std::unordered_set<const QELComponent*>& uncounted) {
    if (uncounted.count(component)) return kHiddenCurrent;
    if (component->isAbsolute() && sharesIndexWithSibling(static_cast<QELAbsoluteOccurrence*>(component)))
        return kSharedIndex;
    return nullptr;
}

} // namespace

QELCountExplanation qelExplainEntryCount(const std::unordered_map<uint64_t, long>& written) {
    QELCountExplanation explanation;
    QELSession* session = QELSession::getInstance();
    QELWorkSpace* active = session->getActiveWorkSpace();
    CV5CAAQELWorkSpace* hostActive = QELLookups::hostWorkSpace(active);
    if (hostActive && hostActive->getWorkSpaceType() == EnumDocumentType_Catalog) {
        explanation.catalog = true;
        return explanation;
    }

    std::unordered_map<uint64_t, long> countedTimes;
    QELDMToXMLTraversal::forEachCounted(session, [&](QELComponent* component) {
        ++countedTimes[component->get_Handle()];
        ++explanation.counted;
    });

    // Rules in a fixed order, so that the note reads the same every run.
    std::map<std::string, QELCountReason> reasons;
    auto account = [&](const char* rule, long entries, QELComponent* component) {
        if (!rule) {
            explanation.unexplained += entries;
            return;
        }
        QELCountReason& reason = reasons[rule];
        reason.rule = rule;
        if (reason.example.empty()) reason.example = component->get_Name().ConvertToChar();
        reason.entries += entries;
    };
    // In handle order, so that the example of each rule is the same every run.
    std::vector<std::pair<uint64_t, long>> counted(countedTimes.begin(), countedTimes.end());
    std::vector<std::pair<uint64_t, long>> described(written.begin(), written.end());
    std::sort(counted.begin(), counted.end());
    std::sort(described.begin(), described.end());
    for (const auto& [handle, times] : counted) {
        const auto found = written.find(handle);
        const long writtenTimes = found == written.end() ? 0 : found->second;
        if (times > writtenTimes) {
            QELComponent* component = QELHandleTable::resolve(handle);
            account(ruleOfCountedNotWritten(component), times - writtenTimes, component);
        }
    }
    const std::unordered_set<const QELComponent*> uncounted = uncountedCurrent(active);
    for (const auto& [handle, times] : described) {
        const auto found = countedTimes.find(handle);
        const long timesCounted = found == countedTimes.end() ? 0 : found->second;
        if (times <= timesCounted) continue;
        QELComponent* component = QELHandleTable::resolve(handle);
        if (!component) {
            explanation.unexplained += times - timesCounted;
            continue;
        }
        account(ruleOfWrittenNotCounted(component, uncounted), times - timesCounted, component);
    }
    for (auto& [rule, reason] : reasons) explanation.reasons.push_back(std::move(reason));
    return explanation;
}

bool qelWrittenTokens(const std::string& descriptionPath, std::unordered_map<uint64_t, long>& written,
                      std::string& error) {
    return qelCollectEntryFields(
        descriptionPath,
        [&written](const QELEntryFields& entry) {
            uint64_t handle = 0;
            if (entry.has(QELEntryField::Token) && QELHandleTable::parse(entry.value(QELEntryField::Token), handle))
                ++written[handle];
        },
        error);
}

std::string qelCountNote(long announced, long written, const QELCountExplanation& explanation) {
    std::string note = "NBElements announces " + std::to_string(announced) + " entries and " + std::to_string(written) +
                       " are written, by the writer's counting rules";
    for (const QELCountReason& reason : explanation.reasons)
        note += "; " + std::to_string(reason.entries) + " " + reason.rule + " (e.g. " + qelShown(reason.example) + ")";
    return note;
}
