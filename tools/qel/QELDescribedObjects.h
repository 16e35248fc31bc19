#ifndef QELDescribedObjects_H
#define QELDescribedObjects_H

class QELComponent;
class QELDocument;
class QELFile;
class QELItem;

// The objects whose fields the writer puts into a component's entry, found
// with the writer's own look-ups (QELLookups), so that what qel calls
// "described" is what the description holds: an item's first document and a
// document's first file under its own type's reference.
struct QELDescribedObjects {
    QELItem* item = nullptr;
    QELDocument* document = nullptr;
    QELFile* file = nullptr;
    const char* kind = "component"; // "workspace", "occurrence", "document"
};

// False for a component no entry describes (neither a workspace, nor an
// occurrence, nor a document).
bool qelDescribedObjects(QELComponent* component, QELDescribedObjects& out);

#endif
