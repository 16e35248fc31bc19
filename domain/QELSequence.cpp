#include "QELSequence.h"

#include <cstdio>

#include "QELLinkType.h"
#include "QELPliesGroup.h"
#include "QELPly.h"

QELSequence::QELSequence() { set_ClassName("QELSEQUENCE_CLASSNAME"); }

QELSequence::QELSequence(QELPliesGroup* owner, const CATUnicodeString& name) : QELSequence() {
    buildSequence(owner, name);
}

void QELSequence::buildSequence(QELPliesGroup* owner, const CATUnicodeString& name) {
    if (!owner) {
        std::fputs("error: ip_plies_group is NULL!\n", stdout);
        return;
    }
    set_Name(name);
    owner->linkSequence(this);
}

CATUnicodeString QELSequence::getSequence() const { return getStringProperty("sequence_name"); }

void QELSequence::linkPly(QELPly* ply) {
    addComponent(ply, QELLinkType::SEQUENCE_PLY, "LINKNAME_SEQUENCE_PLY");
}
