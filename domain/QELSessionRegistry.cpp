// The session's typed registry: one class-name key per kind.
#include "QELDocument.h"
#include "QELFile.h"
#include "QELItem.h"
#include "QELSession.h"
#include "QELWorkSpace.h"

namespace {
const char* const kDocumentClass = "QELDOCUMENT_CLASSNAME";
const char* const kItemClass = "QELITEM_CLASSNAME";
const char* const kFileClass = "QELFILE_CLASSNAME";
const char* const kWorkSpaceClass = "QELWORKSPACE_CLASSNAME";
} // namespace

void QELSession::addDocument(QELDocument* document) { addComponent(document, kDocumentClass); }
void QELSession::addItem(QELItem* item) { addComponent(item, kItemClass); }
void QELSession::addFile(QELFile* file) { addComponent(file, kFileClass); }
void QELSession::addWorkSpace(QELWorkSpace* workSpace) { addComponent(workSpace, kWorkSpaceClass); }

QELDocument* QELSession::getDocument(const CATUnicodeString& name) const {
    return static_cast<QELDocument*>(getComponent(kDocumentClass, name));
}

QELItem* QELSession::getItem(const CATUnicodeString& name) const {
    return static_cast<QELItem*>(getComponent(kItemClass, name));
}

QELFile* QELSession::getFile(const CATUnicodeString& name) const {
    return static_cast<QELFile*>(getComponent(kFileClass, name));
}

QELWorkSpace* QELSession::getWorkSpace(const CATUnicodeString& name) const {
    return static_cast<QELWorkSpace*>(getComponent(kWorkSpaceClass, name));
}

TYPMapCATUnicodeStringPVoid* QELSession::getDocuments() const { return getComponents(kDocumentClass); }
TYPMapCATUnicodeStringPVoid* QELSession::getItems() const { return getComponents(kItemClass); }
TYPMapCATUnicodeStringPVoid* QELSession::getFiles() const { return getComponents(kFileClass); }
TYPMapCATUnicodeStringPVoid* QELSession::getWorkSpaces() const { return getComponents(kWorkSpaceClass); }

namespace {
int countOf(const TYPMapCATUnicodeStringPVoid* components) { return components ? components->size() : 0; }
} // namespace

int QELSession::getDocumentCount() const { return countOf(getDocuments()); }
int QELSession::getItemCount() const { return countOf(getItems()); }
int QELSession::getFileCount() const { return countOf(getFiles()); }
int QELSession::getWorkSpaceCount() const { return countOf(getWorkSpaces()); }
