#include "QELFile.h"

#include "QELDocument.h"
#include "QELLinkType.h"
#include "QELUtilities.h"

namespace {
const char* const kFileClass = "QELFILE_CLASSNAME";
} // namespace

QELFile::QELFile() { set_ClassName(kFileClass); }

QELFile::QELFile(const CATUnicodeString& fileName) {
    set_ClassName(kFileClass);
    set_Name(fileName);
    addStringProperty("File_Version", QELUtilities::getFileExtension(fileName));
}

void QELFile::linkDocument(QELDocument* document) { addParentComponent(document, QELLinkType::FIL_DOC); }

QELDocument* QELFile::getLinkedDocument() const {
    return static_cast<QELDocument*>(getParentComponent(QELLinkType::FIL_DOC, 0));
}
