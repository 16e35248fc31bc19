#include "QELDescribedObjects.h"

#include "QELAbsoluteOccurrence.h"
#include "QELDocument.h"
#include "QELFile.h"
#include "QELItem.h"
#include "QELUtilities.h"
#include "QELWorkSpace.h"

namespace {

template <typename T> T* firstOf(TYPMapCATUnicodeStringPVoid* map) {
    return map ? static_cast<T*>(map->first()) : nullptr;
}

} // namespace

QELDocument* qelFirstDocument(const QELItem* item) {
    auto* component = item ? firstOf<QELComponent>(item->getChildrenComponents(11)) : nullptr;
    return component && component->isAKindOf("QELDOCUMENT_CLASSNAME") ? static_cast<QELDocument*>(component) : nullptr;
}

QELFile* qelFirstFile(const QELDocument* document) {
    return document ? firstOf<QELFile>(
                          document->getLinkedFiles(QELUtilities::getDocFilRefNameFromDocumentType(document->getType())))
                    : nullptr;
}

bool qelDescribedObjects(QELComponent* component, QELDescribedObjects& out) {
    if (component->isAbsolute()) {
        auto* occurrence = static_cast<QELAbsoluteOccurrence*>(component);
        out.kind = "occurrence";
        out.item = occurrence->getLinkedItem();
        out.document = qelFirstDocument(out.item);
        out.file = qelFirstFile(out.document);
    } else if (component->isWorkSpace()) {
        auto* workspace = static_cast<QELWorkSpace*>(component);
        out.kind = "workspace";
        out.item = workspace->getItem();
        out.document = workspace->getLinkedDocument();
        out.file = workspace->getFile();
    } else if (component->isAKindOf("QELDOCUMENT_CLASSNAME")) {
        out.kind = "document";
        out.document = static_cast<QELDocument*>(component);
        out.item = firstOf<QELItem>(out.document->getLinkedItems("LINKNAME_PARENT"));
        out.file = qelFirstFile(out.document);
    } else {
        return false;
    }
    return true;
}
