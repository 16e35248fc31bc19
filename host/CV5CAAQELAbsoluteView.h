#ifndef CV5CAAQELAbsoluteView_H
#define CV5CAAQELAbsoluteView_H

#include "QELAbsoluteView.h"

// An absolute view of the CAD host: whether the occurrence is visible and
// hidden in the view's context, and whether the context has a parent
// component that carries the override.
class CV5CAAQELAbsoluteView : public QELAbsoluteView {
public:
    CV5CAAQELAbsoluteView();
    explicit CV5CAAQELAbsoluteView(const CATUnicodeString& signature);

    unsigned char getVisible() const { return _visible; }
    void setVisible(unsigned char visible) { _visible = visible; }
    unsigned char getHide() const { return _hide; }
    void setHide(unsigned char hide) { _hide = hide; }
    unsigned char getHasParentComponent() const { return _hasParentComponent; }
    void setHasParentComponent(unsigned char has) { _hasParentComponent = has; }

private:
    unsigned char _visible = 1;
    unsigned char _hide = 0;
    unsigned char _hasParentComponent = 0;
};

#endif
