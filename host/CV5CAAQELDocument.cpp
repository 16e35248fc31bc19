#include "CV5CAAQELDocument.h"

namespace {
const char* const kClassName = "CV5CAAQELDOCUMENT_CLASSNAME";
}

CV5CAAQELDocument::CV5CAAQELDocument() { set_ClassName(kClassName); }

CV5CAAQELDocument::CV5CAAQELDocument(const CATUnicodeString& name) : QELDocument(name) { set_ClassName(kClassName); }

CV5CAAQELDocument::CV5CAAQELDocument(const CATUnicodeString& name, EnumDocumentType type) : QELDocument(name, type) {
    set_ClassName(kClassName);
}

long CV5CAAQELDocument::getNamedRefUID(CATUnicodeString& uid) const {
    uid = _namedRefUID;
    return _namedRefUID.IsNull() ? -1 : 0;
}

void CV5CAAQELDocument::addSheetName(const CATUnicodeString& name) {
    _hasSheets = true;
    _sheets.push_back(name);
}

long CV5CAAQELDocument::getAllStackings(TYPVector<CV5CAAQELStacking*>& stackings) const {
    stackings = _stackings;
    return _stackingsStatus;
}

long CV5CAAQELDocument::getExternalFileDocuments(TYPVectorPQELLink*& links) const {
    links = _externalFiles.empty() ? nullptr : const_cast<TYPVectorPQELLink*>(&_externalFiles);
    return 0;
}

long CV5CAAQELDocument::getFileName(CATUnicodeString& name) const {
    name = _fileName.IsNull() ? get_Name() : _fileName;
    return name.IsNull() ? -1 : 0;
}

long CV5CAAQELDocument::updateMaskProperty(int mask) {
    if (_maskStatus < 0) return _maskStatus;
    addIntegerProperty("Mask", mask);
    return 0;
}
