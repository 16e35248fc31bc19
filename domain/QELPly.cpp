#include "QELPly.h"

#include <cstdio>

#include "QELSequence.h"

QELPly::QELPly() { set_ClassName("QELPLY_CLASSNAME"); }

QELPly::QELPly(QELSequence* owner, const CATUnicodeString& name) : QELPly() {
    buildPly(owner, name);
}

void QELPly::buildPly(QELSequence* owner, const CATUnicodeString& name) {
    if (!owner) {
        std::fputs("error: ip_sequence is NULL!\n", stdout);
        return;
    }
    set_Name(name);
    owner->linkPly(this);
}

CATUnicodeString QELPly::getPly() const { return getStringProperty("ply_name"); }
