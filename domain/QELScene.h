#ifndef QELScene_H
#define QELScene_H

#include "CATUnicodeString.h"
#include "QELComponent.h"

class QELAbsoluteOccurrence;
class QELItem;

// A named scene of an absolute occurrence in a context item. Its name is its
// signature, the key under which the item (link 25) and the occurrence
// (link 26) file it; the scene's own name is the property "nameOfScene". Link
// 25 to the context item under "LINKNAME_CONTEXT".
class QELScene : public QELComponent {
public:
    QELScene();
    // Files itself under `context` and `occ`; the caller keeps ownership.
    // With a null pointer it prints an error on standard output and builds
    // nothing.
    QELScene(QELAbsoluteOccurrence* occ, QELItem* context, const CATUnicodeString& name);

    void linkItem(QELItem* context);
    // The first context item filed, null when none; owned by its maker (the
    // model heap for the library's factories), valid until freed there.
    QELItem* getContext() const;
    CATUnicodeString getScene() const;
    CATUnicodeString getSignature() const { return get_Name(); }

private:
    void buildScene(QELAbsoluteOccurrence* occ, QELItem* context, const CATUnicodeString& name);
};

#endif
