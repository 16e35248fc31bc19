#include "CV5CAAQELScene.h"

CV5CAAQELScene::CV5CAAQELScene() { set_ClassName("CV5CAAQELSCENE_CLASSNAME"); }

CV5CAAQELScene::CV5CAAQELScene(const CATUnicodeString& name, const CATUnicodeString& hide,
                               const CATUnicodeString& matrix)
    : _sceneName(name), _hide(hide), _matrix(matrix) {
    set_ClassName("CV5CAAQELSCENE_CLASSNAME");
    set_Name(name);
}
