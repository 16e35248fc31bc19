#ifndef QELFile_H
#define QELFile_H

#include "CATUnicodeString.h"
#include "QELComponent.h"

class QELDocument;

// One file on disk, a named reference of one or more documents (link 14,
// FIL_DOC). "File_Version" holds the file name's extension, not a version.
class QELFile : public QELComponent {
public:
    QELFile();
    explicit QELFile(const CATUnicodeString& fileName);

    void linkDocument(QELDocument* document);
    // The first document in store order when several share the file; owned by
    // its maker (the model heap for the library's factories), valid until freed
    // there.
    QELDocument* getLinkedDocument() const;
};

#endif
