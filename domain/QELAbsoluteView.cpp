#include "QELAbsoluteView.h"

#include "QELItem.h"
#include "QELLinkType.h"

namespace {

const char* const kContext = "LINKNAME_CONTEXT";

} // namespace

QELAbsoluteView::QELAbsoluteView() { set_ClassName("QELABSOLUTEVIEW_CLASSNAME"); }

QELAbsoluteView::QELAbsoluteView(const CATUnicodeString& signature) : QELAbsoluteView() {
    set_Name(signature);
}

void QELAbsoluteView::linkItem(QELItem* context) { addComponent(context, QELLinkType::ABV_ITM, kContext); }

QELItem* QELAbsoluteView::getContext() const {
    TYPMapCATUnicodeStringPVoid* contexts = getComponents(QELLinkType::ABV_ITM, kContext);
    return contexts ? static_cast<QELItem*>(contexts->first()) : nullptr;
}
