#include "CV5CAAQELAbsoluteOccurrence.h"

CV5CAAQELAbsoluteOccurrence::CV5CAAQELAbsoluteOccurrence() {
    set_ClassName("CV5CAAQELABSOLUTEOCCURRENCE_CLASSNAME");
}

CV5CAAQELAbsoluteOccurrence::CV5CAAQELAbsoluteOccurrence(const CATUnicodeString& occUID,
                                                         const CATUnicodeString& instanceName, QELComponent* parent)
    : QELAbsoluteOccurrence(occUID, instanceName, parent) {
    set_ClassName("CV5CAAQELABSOLUTEOCCURRENCE_CLASSNAME");
}

long CV5CAAQELAbsoluteOccurrence::computeAndUpdateMaskProperty(int mask) {
    if (_maskStatus < 0) return _maskStatus;
    addIntegerProperty("Mask", mask);
    return 0;
}

long CV5CAAQELAbsoluteOccurrence::addActiveShape(const CATUnicodeString& name, const CATUnicodeString& value) {
    addDynamicProperty("ActiveShapes", name, value, true);
    return 0;
}
