#include "CV5CAAQELAbsoluteView.h"

CV5CAAQELAbsoluteView::CV5CAAQELAbsoluteView() { set_ClassName("CV5CAAQELABSOLUTEVIEW_CLASSNAME"); }

CV5CAAQELAbsoluteView::CV5CAAQELAbsoluteView(const CATUnicodeString& signature) : QELAbsoluteView(signature) {
    set_ClassName("CV5CAAQELABSOLUTEVIEW_CLASSNAME");
}
