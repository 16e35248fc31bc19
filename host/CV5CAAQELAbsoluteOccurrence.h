#ifndef CV5CAAQELAbsoluteOccurrence_H
#define CV5CAAQELAbsoluteOccurrence_H

#include "CV5CAAQELScene.h"
#include "QELAbsoluteOccurrence.h"

// An absolute occurrence of the CAD host's assembly, with the scenes that
// override its placement or visibility.
class CV5CAAQELAbsoluteOccurrence : public QELAbsoluteOccurrence {
public:
    CV5CAAQELAbsoluteOccurrence();
    CV5CAAQELAbsoluteOccurrence(const CATUnicodeString& occUID, const CATUnicodeString& instanceName,
                                QELComponent* parent);

    const TYPVectorPCV5CAAQELScene& getScenesContexts() const { return _scenes; }
    void addSceneContext(CV5CAAQELScene* scene) { _scenes.push_back(scene); }

    // The host recomputes the icon mask from the PDM's answer and stores it as
    // the integer property "Mask"; a status set negative makes it fail.
    long computeAndUpdateMaskProperty(int mask);
    void setMaskStatus(long status) { _maskStatus = status; }
    // Records a shape to activate: the pair (name, value) in the dynamic
    // property "ActiveShapes".
    long addActiveShape(const CATUnicodeString& name, const CATUnicodeString& value);

private:
    TYPVectorPCV5CAAQELScene _scenes;
    long _maskStatus = 0;
};

#endif
