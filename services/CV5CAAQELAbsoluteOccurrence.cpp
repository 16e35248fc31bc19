#include "CV5CAAQELAbsoluteOccurrence.h"

CV5CAAQELAbsoluteOccurrence::CV5CAAQELAbsoluteOccurrence() {
    set_ClassName("CV5CAAQELABSOLUTEOCCURRENCE_CLASSNAME");
}

CV5CAAQELAbsoluteOccurrence::CV5CAAQELAbsoluteOccurrence(const CATUnicodeString& occUID,
                                                         const CATUnicodeString& instanceName, QELComponent* parent)
    : QELAbsoluteOccurrence(occUID, instanceName, parent) {
    set_ClassName("CV5CAAQELABSOLUTEOCCURRENCE_CLASSNAME");
}
