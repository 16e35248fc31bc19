#include "QELDescribedObjects.h"

#include "QELAbsoluteOccurrence.h"
#include "QELDocument.h"
#include "QELFile.h"
#include "QELItem.h"
#include "QELLinkType.h"
#include "QELLookups.h"
#include "QELWorkSpace.h"

using QELLookups::firstDocument;
using QELLookups::firstFile;

bool qelDescribedObjects(QELComponent* component, QELDescribedObjects& out) {
    if (component->isAbsolute()) {
        auto* occurrence = static_cast<QELAbsoluteOccurrence*>(component);
        out.kind = "occurrence";
        out.item = occurrence->getLinkedItem();
        out.document = firstDocument(out.item);
        out.file = firstFile(out.document);
    } else if (component->isWorkSpace()) {
        auto* workspace = static_cast<QELWorkSpace*>(component);
        out.kind = "workspace";
        out.item = workspace->getItem();
        out.document = workspace->getLinkedDocument();
        out.file = workspace->getFile();
    } else if (component->isAKindOf("QELDOCUMENT_CLASSNAME")) {
        out.kind = "document";
        out.document = static_cast<QELDocument*>(component);
        TYPMapCATUnicodeStringPVoid* items = out.document->getLinkedItems(QELLinkType::LINKNAME_PARENT);
        out.item = items ? static_cast<QELItem*>(items->first()) : nullptr;
        out.file = firstFile(out.document);
    } else {
        return false;
    }
    return true;
}
