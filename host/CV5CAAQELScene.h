#ifndef CV5CAAQELScene_H
#define CV5CAAQELScene_H

#include "QELScene.h"

// A scene of the CAD host in which an occurrence appears: its name, whether
// it hides the occurrence ("TRUE" / "FALSE") and its placement as text.
class CV5CAAQELScene : public QELScene {
public:
    CV5CAAQELScene();
    CV5CAAQELScene(const CATUnicodeString& name, const CATUnicodeString& hide, const CATUnicodeString& matrix);

    CATUnicodeString getNameScene() const { return _sceneName; }
    void setNameScene(const CATUnicodeString& name) { _sceneName = name; }
    CATUnicodeString getHideScene() const { return _hide; }
    void setHideScene(const CATUnicodeString& hide) { _hide = hide; }
    CATUnicodeString getMatrixScene() const { return _matrix; }
    void setMatrixScene(const CATUnicodeString& matrix) { _matrix = matrix; }

private:
    CATUnicodeString _sceneName;
    CATUnicodeString _hide;
    CATUnicodeString _matrix;
};

typedef TYPVector<CV5CAAQELScene*> TYPVectorPCV5CAAQELScene;

#endif
