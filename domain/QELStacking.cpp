#include "QELStacking.h"

#include <cstdio>

#include "QELDocument.h"
#include "QELPliesGroup.h"

namespace {

const int kLinkStackingPliesGroup = 30;

} // namespace

QELStacking::QELStacking() { set_ClassName("QELSTACKING_CLASSNAME"); }

QELStacking::QELStacking(QELDocument* owner, const CATUnicodeString& name) : QELStacking() {
    buildStacking(owner, name);
}

void QELStacking::buildStacking(QELDocument* owner, const CATUnicodeString& name) {
    if (!owner) {
        std::fputs("error: ip_document is NULL!\n", stdout);
        return;
    }
    set_Name(name);
    owner->linkStacking(this);
}

CATUnicodeString QELStacking::getStacking() const { return getStringProperty("stacking_name"); }

void QELStacking::linkPliesGroup(QELPliesGroup* pliesGroup) {
    addComponent(pliesGroup, kLinkStackingPliesGroup, "LINKNAME_STACKING_PLIESGROUP");
}
