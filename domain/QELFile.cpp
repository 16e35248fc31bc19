#include "QELFile.h"

#include "QELDocument.h"
#include "QELUtilities.h"

namespace {
const int kFileDocument = 14; // FIL_DOC
const char* const kFileClass = "QELFILE_CLASSNAME";
} // namespace

QELFile::QELFile() { set_ClassName(kFileClass); }

QELFile::QELFile(const CATUnicodeString& fileName) {
    set_ClassName(kFileClass);
    set_Name(fileName);
    addStringProperty("File_Version", QELUtilities::getFileExtension(fileName));
}

void QELFile::linkDocument(QELDocument* document) { addParentComponent(document, kFileDocument); }

QELDocument* QELFile::getLinkedDocument() const {
    return static_cast<QELDocument*>(getParentComponent(kFileDocument, 0));
}
