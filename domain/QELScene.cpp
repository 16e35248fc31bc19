#include "QELScene.h"

#include <cstdio>

#include "QELAbsoluteOccurrence.h"
#include "QELItem.h"
#include "QELLinkType.h"

namespace {

const char* const kContext = "LINKNAME_CONTEXT";

} // namespace

QELScene::QELScene() { set_ClassName("QELSCENE_CLASSNAME"); }

QELScene::QELScene(QELAbsoluteOccurrence* occ, QELItem* context, const CATUnicodeString& name)
    : QELScene() {
    buildScene(occ, context, name);
}

void QELScene::buildScene(QELAbsoluteOccurrence* occ, QELItem* context,
                          const CATUnicodeString& name) {
    if (!occ || !context) {
        std::fputs("error: absolute occurrence and/or context p_item is NULL!\n", stdout);
        return;
    }
    set_Name(name);
    linkItem(context);
    context->linkScene(this);
    occ->linkScene(this);
}

void QELScene::linkItem(QELItem* context) { addComponent(context, QELLinkType::ITM_SCENE, kContext); }

QELItem* QELScene::getContext() const {
    TYPMapCATUnicodeStringPVoid* contexts = getComponents(QELLinkType::ITM_SCENE, kContext);
    return contexts ? static_cast<QELItem*>(contexts->first()) : nullptr;
}

CATUnicodeString QELScene::getScene() const { return getStringProperty("nameOfScene"); }
