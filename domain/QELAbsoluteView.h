#ifndef QELAbsoluteView_H
#define QELAbsoluteView_H

#include "CATUnicodeString.h"
#include "QELComponent.h"

class QELItem;

// The PDM's view of an absolute occurrence as seen from one context item. Its
// name is its signature (QELAbsoluteOccurrence::buildAbsoluteViewSignature),
// the key under which items and occurrences file it. Link 18 to the context
// item under "LINKNAME_CONTEXT".
class QELAbsoluteView : public QELComponent {
public:
    QELAbsoluteView();
    explicit QELAbsoluteView(const CATUnicodeString& signature);

    void linkItem(QELItem* context);
    // The first context item filed, null when none; owned by its maker (the
    // model heap for the library's factories), valid until freed there.
    QELItem* getContext() const;
    CATUnicodeString getSignature() const { return get_Name(); }
};

#endif
