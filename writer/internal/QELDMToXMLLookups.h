#ifndef QELDMToXMLLookups_H
#define QELDMToXMLLookups_H

// Look-ups shared by the writer's sources: the host wrapper behind a model
// object (null when the object is a plain model object, whose host answers
// are then "none"), and the first document, file and item of the usual
// relations.

#include "CV5CAAQELAbsoluteOccurrence.h"
#include "CV5CAAQELAbsoluteView.h"
#include "CV5CAAQELDocument.h"
#include "CV5CAAQELItem.h"
#include "CV5CAAQELWorkSpace.h"
#include "QELDocument.h"
#include "QELFile.h"
#include "QELItem.h"
#include "QELLinkType.h"
#include "QELUtilities.h"

namespace QELDMToXMLLookups {

inline CV5CAAQELDocument* hostDocument(QELDocument* d) {
    return d && d->instanceOf("CV5CAAQELDOCUMENT_CLASSNAME") ? static_cast<CV5CAAQELDocument*>(d) : nullptr;
}
inline CV5CAAQELItem* hostItem(QELItem* i) {
    return i && i->instanceOf("CV5CAAQELITEM_CLASSNAME") ? static_cast<CV5CAAQELItem*>(i) : nullptr;
}
inline CV5CAAQELWorkSpace* hostWorkSpace(QELWorkSpace* w) {
    return w && w->instanceOf("CV5CAAQELWORKSPACE_CLASSNAME") ? static_cast<CV5CAAQELWorkSpace*>(w) : nullptr;
}
inline CV5CAAQELAbsoluteOccurrence* hostOccurrence(QELAbsoluteOccurrence* o) {
    return o && o->instanceOf("CV5CAAQELABSOLUTEOCCURRENCE_CLASSNAME") ? static_cast<CV5CAAQELAbsoluteOccurrence*>(o)
                                                                     : nullptr;
}
inline CV5CAAQELAbsoluteView* hostView(QELComponent* v) {
    return v && v->instanceOf("CV5CAAQELABSOLUTEVIEW_CLASSNAME") ? static_cast<CV5CAAQELAbsoluteView*>(v) : nullptr;
}

// The first document an item holds under ITM_DOC, if it is one.
inline QELDocument* firstDocument(const QELComponent* item) {
    TYPMapCATUnicodeStringPVoid* documents = item ? item->getChildrenComponents(QELLinkType::ITM_DOC) : nullptr;
    auto* c = documents ? static_cast<QELComponent*>(documents->first()) : nullptr;
    return c && c->isAKindOf("QELDOCUMENT_CLASSNAME") ? static_cast<QELDocument*>(c) : nullptr;
}

// A document's first file under the reference name of its own type.
inline QELFile* firstFile(const QELDocument* document) {
    if (!document) return nullptr;
    TYPMapCATUnicodeStringPVoid* files =
        document->getLinkedFiles(QELUtilities::getDocFilRefNameFromDocumentType(document->getType()));
    return files ? static_cast<QELFile*>(files->first()) : nullptr;
}

inline bool isBroken(const QELComponent* component) {
    return component && component->getBooleanProperty("IsBrokenIcon");
}

} // namespace QELDMToXMLLookups

#endif
