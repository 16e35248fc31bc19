#include "QELRelativeOccurrence.h"

#include <cstdio>

#include "QELAbsoluteOccurrence.h"
#include "QELItem.h"
#include "QELLinkType.h"

namespace {

const char* const kDefinition = "LINKNAME_DEFINITION";

} // namespace

QELRelativeOccurrence::QELRelativeOccurrence() { set_ClassName("QELRELATIVEOCCURRENCE_CLASSNAME"); }

QELRelativeOccurrence::QELRelativeOccurrence(const CATUnicodeString& first,
                                             const CATUnicodeString& second) {
    set_ClassName("QELRELATIVEOCCURRENCE_CLASSNAME");
    if (!first.IsNull()) {
        set_Name(first);
    } else if (!second.IsNull()) {
        set_Name(second);
    } else {
        std::fputs("Erreur : relative UID cannot be defined\n", stdout);
    }
}

void QELRelativeOccurrence::setOCCID(const CATUnicodeString& occid) { set_Name(occid); }

void QELRelativeOccurrence::addAbsoluteOccurrence(QELAbsoluteOccurrence* occurrence) {
    addAbsolute(occurrence, QELLinkType::ABS_REL, kDefinition);
}

void QELRelativeOccurrence::linkItem(QELItem* item) {
    addComponent(item, QELLinkType::REL_ITM, kDefinition);
}

QELItem* QELRelativeOccurrence::getLinkedItem() const {
    TYPMapCATUnicodeStringPVoid* items = getComponents(QELLinkType::REL_ITM, kDefinition);
    return items ? static_cast<QELItem*>(items->first()) : nullptr;
}
