#include "CV5CAAQELItem.h"

CV5CAAQELItem::CV5CAAQELItem() { set_ClassName("CV5CAAQELITEM_CLASSNAME"); }

CV5CAAQELItem::CV5CAAQELItem(const CATUnicodeString& name) : QELItem(name) {
    set_ClassName("CV5CAAQELITEM_CLASSNAME");
}

long CV5CAAQELItem::computeAndUpdateMaskProperty(int mask) {
    if (_maskStatus < 0) return _maskStatus;
    addIntegerProperty("Mask", mask);
    return 0;
}
