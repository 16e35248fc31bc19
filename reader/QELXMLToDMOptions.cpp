// Options of the answer: the Options block that becomes session properties,
// and the light pass that reads only the entry flags and item identifiers.

#include "QELXMLToDM.h"

#include <string>

#include "CV5CAAToolsDesc.h"
#include "EMHManager.h"
#include "JNLManager.h"
#include "QELAnswerEntry.h"
#include "QELAbsoluteOccurrence.h"
#include "QELDocument.h"
#include "QELElementNames.h"
#include "QELItem.h"
#include "QELLookups.h"
#include "QELSession.h"
#include "QELStatus.h"
#include "QELWorkSpace.h"
#include "QELXMLToDMUpdateTools.h"

using QELXMLToDMUpdateTools::entryValue;
using QELXMLToDMUpdateTools::toInt;

namespace {

const char* const kReadOptions = "QELXMLToDM::readOptions";
const long kNullObject = 2103;

// The item and document of an entry's component; false when the entry is
// skipped (a "COMP" component, a kind without items, a missing item).
bool findTargets(QELComponent* component, QELItem*& item, QELDocument*& document) {
    if (component->getStringProperty("Type") == "COMP") return false;
    if (component->isAbsolute()) {
        item = static_cast<QELAbsoluteOccurrence*>(component)->getLinkedItem();
        // The item's first document is the one the entry's flags are for.
        if (item) document = QELLookups::firstDocument(item);
    } else if (component->isWorkSpace()) {
        auto* workspace = static_cast<QELWorkSpace*>(component);
        document = workspace->getLinkedDocument();
        if (!document) return false;
        item = workspace->getItem();
    } else {
        return false;
    }
    if (!item) EMHManager::writeMsg(kReadOptions, kNullObject, "p_item");
    return item != nullptr;
}

void applyEntryFlags(QELSession* session, QELComponent* component, QELDocument* document, const QELAnswerEntry* map) {
    if (const CATUnicodeString* value = entryValue(map, QELElement::Read_ActiveShapes))
        component->addBooleanProperty("Read_ActiveShapes", toInt(*value) != 0);
    if (const CATUnicodeString* value = entryValue(map, QELElement::Update_Flag))
        document->addIntegerProperty("Update_Flag", toInt(*value));
    // One number for both: the last entry that carries it decides the
    // session's status.
    if (const CATUnicodeString* value = entryValue(map, QELElement::Calcul_Flag)) {
        const int status = toInt(*value);
        session->setCalculGeometricStatus(status != 0);
        document->setCalculGeometricStatus(status != 0 ? 1 : 0);
    }
    if (const CATUnicodeString* value = entryValue(map, QELElement::ComputeGeo)) {
        if (document->getType() == EnumDocumentType_Part) document->setComputeGeo(*value == "1" ? 1 : 0);
    }
}

} // namespace

bool QELXMLToDM::getOptions(QELSession* session, long long start, long long& pos) {
    moveTo(start);
    std::string line;
    if (!readLine(line) || line != QELElement::openingLine(QELElement::Options)) return false;
    pos = _file.tell();
    QELAnswerEntry options;
    getValuesAndStore(pos, pos, options, QELElement::closingLine(QELElement::Options));
    // Every option is a switch: exactly 1 turns it on.
    for (const QELAnswerEntry::Value& option : options) {
        CATUnicodeString name = option.key;
        name.ReplaceAll("</", "");
        name.ReplaceAll("<", "");
        name.ReplaceAll(">", "");
        if (session) session->addBooleanProperty(name, toInt(option.text) == 1);
    }
    return true;
}

int QELXMLToDM::readOptionsAndCount(QELSession* session, long long& start) {
    long long pos = start;
    // The options may stand before or after the count.
    const bool optionsFound = getOptions(session, start, pos);
    if (optionsFound) start = pos;
    // The count is looked for among the root's children only: an entry's
    // own block counts are no entry count.
    long long countEnd = 0;
    const int count = readCount(start, countEnd);
    if (countEnd > 0) start = countEnd;
    if (!optionsFound && getOptions(session, start, pos)) start = pos;
    return count;
}

void QELXMLToDM::readOptions(QELSession* session) {
    JNLManager::beginFunction(kReadOptions);
    std::string line;
    if (!beginReading(kReadOptions, session, line)) return;
    const std::string root = QELElement::openingLine(QELElement::DESCFILE);
    if (line != root) {
        JNLManager::writeMsgFormatted("Cannot found balise %s", root.c_str());
        closeFile();
        JNLManager::endFunction(kReadOptions, -1);
        return;
    }
    long long start = _file.tell();
    const int count = readOptionsAndCount(session, start);

    QELAnswerEntry values;
    Entry entry;
    long long pos = start;
    for (int i = 0; i < count; ++i) {
        start = pos;
        if (!entryBegins(start, i, count)) break;
        if (!readEntry(start, pos, entry, values)) {
            JNLManager::writeMsg("Error while reading file");
            break;
        }
        QELComponent* component =
            entry.complete ? resolvePointer(entryValue(&values, QELElement::POINTER_ADDRESS)) : nullptr;
        QELItem* item = nullptr;
        QELDocument* document = nullptr;
        if (component && findTargets(component, item, document)) {
            if (QELFailed(readAndUpdateItemIdItemRevId(component, item, &values)))
                JNLManager::writeMsg("Impossible to read and update the Item/ItemRev");
            if (document) applyEntryFlags(session, component, document, &values);
        }
        CV5CAAToolsDesc::searchClosingNode(_file, entry.typeName, entry.end, pos);
    }

    closeFile();
    JNLManager::endFunction(kReadOptions, 0);
}
