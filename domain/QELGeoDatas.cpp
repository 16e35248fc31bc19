#include "QELGeoDatas.h"

#include <cstdio>

#include "QELDocument.h"

QELGeoDatas::QELGeoDatas() { set_ClassName("QELGEODATAS_CLASSNAME"); }

QELGeoDatas::QELGeoDatas(QELDocument* owner, const CATUnicodeString& name) : QELGeoDatas() {
    buildBody(owner, name);
}

void QELGeoDatas::buildBody(QELDocument* owner, const CATUnicodeString& name) {
    if (!owner) {
        std::fputs("error: doc is NULL!\n", stdout);
        return;
    }
    set_Name(name);
    owner->linkBody(this);
}

CATUnicodeString QELGeoDatas::getBody() const { return getStringProperty("display_name"); }
