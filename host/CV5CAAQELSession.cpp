#include "CV5CAAQELSession.h"

#include "CV5CAAQELWorkSpace.h"
#include "QELDocument.h"
#include "QELModelHeap.h"
#include "QELSession.h"

namespace {
CV5CAAQELSession gHostSession;
}

CV5CAAQELSession* CV5CAAQELSession::getCATIASessionInstance() { return &gHostSession; }

void CV5CAAQELSession::reset() { gHostSession = CV5CAAQELSession(); }

long CV5CAAQELSession::getSessionDocument(const CATUnicodeString& fileName, QELDocument*& document) const {
    document = QELSession::getInstance()->getDocument(fileName);
    return document ? 0 : -1;
}

long CV5CAAQELSession::createEmptyWorkSpace(EnumDocumentType type, const CATUnicodeString& a,
                                            const CATUnicodeString& b, const CATUnicodeString& c,
                                            CV5CAAQELWorkSpace*& workspace) {
    auto* created = QELModelHeap::adopt(new CV5CAAQELWorkSpace());
    created->set_Name(a + "+++" + b + "+++" + c);
    created->setWorkSpaceType(type);
    QELSession::getInstance()->addWorkSpace(created);
    workspace = created;
    return 0;
}
