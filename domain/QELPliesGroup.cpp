#include "QELPliesGroup.h"

#include <cstdio>

#include "QELLinkType.h"
#include "QELSequence.h"
#include "QELStacking.h"

QELPliesGroup::QELPliesGroup() { set_ClassName("QELPLIES_GROUP_CLASSNAME"); }

QELPliesGroup::QELPliesGroup(QELStacking* owner, const CATUnicodeString& name) : QELPliesGroup() {
    buildPliesGroup(owner, name);
}

void QELPliesGroup::buildPliesGroup(QELStacking* owner, const CATUnicodeString& name) {
    if (!owner) {
        std::fputs("error: ip_staking is NULL!\n", stdout);
        return;
    }
    set_Name(name);
    owner->linkPliesGroup(this);
}

CATUnicodeString QELPliesGroup::getPliesGroup() const {
    return getStringProperty("plies_group_name");
}

void QELPliesGroup::linkSequence(QELSequence* sequence) {
    addComponent(sequence, QELLinkType::PLIES_GROUP_SEQUENCE, "LINKNAME_PLIESGROUP_SEQUENCE");
}
