#ifndef CV5CAAQELWorkSpace_H
#define CV5CAAQELWorkSpace_H

#include "QELWorkSpace.h"

class QELDocument;

// A workspace of the CAD host. Its type is a document type; 8 marks a
// catalog workspace, which the writer walks its own way.
class CV5CAAQELWorkSpace : public QELWorkSpace {
public:
    CV5CAAQELWorkSpace();

    int getWorkSpaceType() const { return _type; }
    void setWorkSpaceType(int type) { _type = type; }
    // The default document as set: owned by whoever set it (the model heap
    // for the library's factories), valid until freed there.
    QELDocument* getWorkSpaceDefaultDocument() const { return _defaultDocument; }
    // Negative when the workspace has no default document; owned as above.
    long getWorkSpaceDefaultDocument(QELDocument*& document) const {
        document = _defaultDocument;
        return document ? 0 : -1;
    }
    void setWorkSpaceDefaultDocument(QELDocument* document) { _defaultDocument = document; }

    // As for an absolute occurrence: "Mask" on the workspace, "ActiveShapes" pairs.
    long computeAndUpdateMaskProperty(int mask);
    void setMaskStatus(long status) { _maskStatus = status; }
    long addActiveShape(const CATUnicodeString& name, const CATUnicodeString& value);

private:
    long _maskStatus = 0;
    int _type = -1;
    QELDocument* _defaultDocument = nullptr;
};

#endif
