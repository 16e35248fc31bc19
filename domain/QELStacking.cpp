#include "QELStacking.h"

#include <cstdio>

#include "QELDocument.h"
#include "QELLinkType.h"
#include "QELPliesGroup.h"

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
    addComponent(pliesGroup, QELLinkType::STACKING_PLIES_GROUP, "LINKNAME_STACKING_PLIESGROUP");
}
