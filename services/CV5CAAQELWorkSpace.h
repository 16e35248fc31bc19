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
    QELDocument* getWorkSpaceDefaultDocument() const { return _defaultDocument; }
    void setWorkSpaceDefaultDocument(QELDocument* document) { _defaultDocument = document; }

private:
    int _type = -1;
    QELDocument* _defaultDocument = nullptr;
};

#endif
