#include "CV5CAAQELWorkSpace.h"

CV5CAAQELWorkSpace::CV5CAAQELWorkSpace() { set_ClassName("CV5CAAQELWORKSPACE_CLASSNAME"); }

long CV5CAAQELWorkSpace::computeAndUpdateMaskProperty(int mask) {
    if (_maskStatus < 0) return _maskStatus;
    addIntegerProperty("Mask", mask);
    return 0;
}

long CV5CAAQELWorkSpace::addActiveShape(const CATUnicodeString& name, const CATUnicodeString& value) {
    addDynamicProperty("ActiveShapes", name, value, true);
    return 0;
}
