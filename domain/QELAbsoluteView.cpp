#include "QELAbsoluteView.h"

#include "QELItem.h"

namespace {

const char* const kContext = "LINKNAME_CONTEXT";
const int kLinkAbvItm = 18;

} // namespace

QELAbsoluteView::QELAbsoluteView() { set_ClassName("QELABSOLUTEVIEW_CLASSNAME"); }

QELAbsoluteView::QELAbsoluteView(const CATUnicodeString& signature) : QELAbsoluteView() {
    set_Name(signature);
}

void QELAbsoluteView::linkItem(QELItem* context) { addComponent(context, kLinkAbvItm, kContext); }

QELItem* QELAbsoluteView::getContext() const {
    TYPMapCATUnicodeStringPVoid* contexts = getComponents(kLinkAbvItm, kContext);
    return contexts ? static_cast<QELItem*>(contexts->first()) : nullptr;
}
