#ifndef QELLookups_H
#define QELLookups_H

// Look-ups shared by the writer and the reader: the host wrapper behind a
// model object (null when the object is a plain model object, whose host
// answers are then "none"), and the first document and file of the usual
// relations. None of the pointers answered is owned by the caller: they are
// the model's objects, valid while the model is.

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

namespace QELLookups {

inline CV5CAAQELDocument* hostDocument(QELComponent* c) {
    return c && c->instanceOf("CV5CAAQELDOCUMENT_CLASSNAME") ? static_cast<CV5CAAQELDocument*>(c) : nullptr;
}
inline CV5CAAQELItem* hostItem(QELComponent* c) {
    return c && c->instanceOf("CV5CAAQELITEM_CLASSNAME") ? static_cast<CV5CAAQELItem*>(c) : nullptr;
}
inline CV5CAAQELWorkSpace* hostWorkSpace(QELComponent* c) {
    return c && c->instanceOf("CV5CAAQELWORKSPACE_CLASSNAME") ? static_cast<CV5CAAQELWorkSpace*>(c) : nullptr;
}
inline CV5CAAQELAbsoluteOccurrence* hostOccurrence(QELComponent* c) {
    return c && c->instanceOf("CV5CAAQELABSOLUTEOCCURRENCE_CLASSNAME") ? static_cast<CV5CAAQELAbsoluteOccurrence*>(c)
                                                                       : nullptr;
}
inline CV5CAAQELAbsoluteView* hostView(QELComponent* c) {
    return c && c->instanceOf("CV5CAAQELABSOLUTEVIEW_CLASSNAME") ? static_cast<CV5CAAQELAbsoluteView*>(c) : nullptr;
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

// A broken icon: a component whose document the host could not load.
inline bool isBroken(const QELComponent* component) {
    return component && component->getBooleanProperty("IsBrokenIcon");
}

} // namespace QELLookups

#endif
