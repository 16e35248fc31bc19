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

private:
    TYPVectorPCV5CAAQELScene _scenes;
};

#endif
