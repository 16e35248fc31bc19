#include "QELFuzzKeptSession.h"

#include <cstring>
#include <utility>

#include "CATDocument.h"
#include "CV5CAAQELDocument.h"
#include "CV5CAAQELSession.h"
#include "CV5CAAToolsCommon.h"
#include "QELComponent.h"
#include "QELHandleTable.h"
#include "QELLink.h"
#include "QELModelHeap.h"
#include "QELProperty.h"
#include "QELPropertySet.h"
#include "QELSession.h"
#include "QELWorkSpace.h"

namespace qelfuzz {
namespace {

// The session, every live component and every GRM link: all that holds
// properties, each with its set (null before its first property).
std::vector<std::pair<const void*, QELPropertySet*>> propertyOwners() {
    std::vector<std::pair<const void*, QELPropertySet*>> owners;
    QELSession* session = QELSession::getInstance();
    owners.emplace_back(session, session->getPropertySet());
    TYPVectorPQELLink links;
    for (QELComponent* component : QELHandleTable::liveComponents()) {
        owners.emplace_back(component, component->getPropertySet());
        component->getAllLinks(links);
        for (QELLink* link : links) owners.emplace_back(link, link->getPropertySet());
    }
    return owners;
}

template <typename T>
bool sameItems(const std::vector<T>& kept, const TYPVector<T>* now) {
    return now && kept == now->items();
}

} // namespace

void KeptSession::record() {
    _stagingPath = CV5CAAQELSession::getCATIASessionInstance()->getStagingPath().ToLatin1();
    _heapSize = QELModelHeap::size();
    const auto owners = propertyOwners();
    _holders.assign(owners.size(), Holder());
    for (size_t i = 0; i < owners.size(); ++i) {
        _holders[i].owner = owners[i].first;
        _holders[i].set = owners[i].second;
        capture(_holders[i]);
    }
}

void KeptSession::capture(Holder& holder) const {
    const QELPropertySet* set = holder.set;
    const int count = set ? set->getPropertiesCount() : 0;
    holder.properties.resize(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
        const QELProperty* from = set->getProperty(i);
        Property& to = holder.properties[static_cast<size_t>(i)];
        to.name = from->get_Name();
        to.type = from->get_Type();
        const void* value = from->get_Value();
        if (!value) {
            holder.restorable = false;
            continue;
        }
        switch (to.type) {
        case QELPROPERTY_STRING: to.text = *static_cast<const CATUnicodeString*>(value); break;
        case QELPROPERTY_INTEGER: to.number = *static_cast<const int*>(value); break;
        case QELPROPERTY_BOOLEAN: to.number = *static_cast<const unsigned char*>(value); break;
        case QELPROPERTY_MATRIX: std::memcpy(to.matrix.data(), value, sizeof to.matrix); break;
        case QELPROPERTY_DYNAMIC:
        case QELPROPERTY_STRING_ARRAY: to.texts = static_cast<const TYPVectorCATUnicodeString*>(value)->items(); break;
        case QELPROPERTY_INTEGER_ARRAY:
        case QELPROPERTY_BOOLEAN_ARRAY: to.numbers = static_cast<const TYPVectorInt*>(value)->items(); break;
        default: holder.restorable = false; // products and string lists
        }
    }
}

bool KeptSession::same(const Holder& holder) {
    const QELPropertySet* set = holder.set;
    const int count = set ? set->getPropertiesCount() : 0;
    if (static_cast<size_t>(count) != holder.properties.size())
        return false;
    for (int i = 0; i < count; ++i) {
        const QELProperty* now = set->getProperty(i);
        const Property& kept = holder.properties[static_cast<size_t>(i)];
        const void* value = now->get_Value();
        if (now->get_Type() != kept.type || !value || now->get_Name() != kept.name)
            return false;
        bool equal = false;
        switch (kept.type) {
        case QELPROPERTY_STRING: equal = *static_cast<const CATUnicodeString*>(value) == kept.text; break;
        case QELPROPERTY_INTEGER: equal = *static_cast<const int*>(value) == kept.number; break;
        case QELPROPERTY_BOOLEAN: equal = *static_cast<const unsigned char*>(value) == kept.number; break;
        case QELPROPERTY_MATRIX: equal = std::memcmp(value, kept.matrix.data(), sizeof kept.matrix) == 0; break;
        case QELPROPERTY_DYNAMIC:
        case QELPROPERTY_STRING_ARRAY:
            equal = sameItems(kept.texts, static_cast<const TYPVectorCATUnicodeString*>(value));
            break;
        case QELPROPERTY_INTEGER_ARRAY:
        case QELPROPERTY_BOOLEAN_ARRAY: equal = sameItems(kept.numbers, static_cast<const TYPVectorInt*>(value)); break;
        default: equal = false; // not recorded by value: never taken as unchanged
        }
        if (!equal)
            return false;
    }
    return true;
}

// Every property again, in the recorded order: the order is part of what the
// writer and the reader see (a replaced property moves to the end).
void KeptSession::putBack(const Holder& holder) {
    QELPropertySet& to = *holder.set;
    to.release();
    for (const Property& property : holder.properties) {
        switch (property.type) {
        case QELPROPERTY_STRING: to.addStringProperty(property.name, property.text); break;
        case QELPROPERTY_INTEGER: to.addIntegerProperty(property.name, property.number); break;
        case QELPROPERTY_BOOLEAN: to.addBooleanProperty(property.name, property.number != 0); break;
        case QELPROPERTY_MATRIX: to.addMatrixProperty(property.name, property.matrix.data()); break;
        case QELPROPERTY_DYNAMIC:
            for (size_t i = 0; i + 1 < property.texts.size(); i += 2)
                to.addDynamicProperty(property.name, property.texts[i], property.texts[i + 1], false);
            break;
        case QELPROPERTY_STRING_ARRAY:
            for (const CATUnicodeString& text : property.texts) to.addStringArrayProperty(property.name, text);
            break;
        case QELPROPERTY_INTEGER_ARRAY:
            for (int number : property.numbers) to.addIntegerArrayProperty(property.name, number);
            break;
        case QELPROPERTY_BOOLEAN_ARRAY:
            for (int number : property.numbers) to.addBooleanArrayProperty(property.name, number != 0);
            break;
        default: break;
        }
    }
}

bool KeptSession::restore() {
    if (QELModelHeap::size() != _heapSize ||
        CV5CAAQELSession::getCATIASessionInstance()->getStagingPath().ToLatin1() != _stagingPath)
        return false;
    const auto owners = propertyOwners();
    if (owners.size() != _holders.size())
        return false;
    for (size_t i = 0; i < owners.size(); ++i) {
        const Holder& holder = _holders[i];
        // A set made by the reading (the owner had no property) cannot be
        // taken back: its owner would still answer it.
        if (owners[i].first != holder.owner || owners[i].second != holder.set)
            return false;
        if (same(holder))
            continue;
        // A value put back wrongly (an array emptied, a pair repeated) shows
        // in the comparison that follows: the session is built again then.
        if (!holder.restorable || !holder.set)
            return false;
        putBack(holder);
        if (!same(holder))
            return false;
    }
    return true;
}

std::string observableState() {
    std::string state = "staging " + CV5CAAQELSession::getCATIASessionInstance()->getStagingPath().ToLatin1() + "\n";
    const CATDocument* active = CV5CAAToolsCommon::getActiveCATDocument();
    state += "active " + (active ? active->StorageName().ToLatin1() : std::string("(none)")) + "\n";
    const QELPropertySet* session = QELSession::getInstance()->getPropertySet();
    state += "session\n" + (session ? session->print(0).ToLatin1() : std::string()) + "\n";
    for (QELComponent* component : QELHandleTable::liveComponents()) {
        state += QELHandleTable::format(component->get_Handle()) + " " + component->get_ClassName().ToLatin1() + " " +
                 component->print(0).ToLatin1();
        if (component->isWorkSpace())
            state += static_cast<QELWorkSpace*>(component)->isActiveWorkspace() ? "active workspace\n" : "\n";
        if (component->isAKindOf("CV5CAAQELDOCUMENT_CLASSNAME")) {
            const auto* host = static_cast<const CV5CAAQELDocument*>(component);
            CATUnicodeString fileName;
            host->getFileName(fileName);
            state += "host " + fileName.ToLatin1() + " " + host->getDocumentUID().ToLatin1() + " " +
                     std::to_string(host->isCatalogComp()) + std::to_string(host->isPrimaryDocument()) +
                     std::to_string(host->isABrokenIcon()) + std::to_string(host->getDesignTableVisibility()) +
                     std::to_string(host->isPointedDocOfActiveSheet()) + " " + host->getDWActiveSheet().ToLatin1() +
                     " scenes " + std::to_string(host->getScenesNames().size()) + "\n";
        }
    }
    return state;
}

} // namespace qelfuzz
