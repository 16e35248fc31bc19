#include "QELDocumentOldNameIndex.h"

#include "QELDocument.h"
#include "QELSession.h"
#include "TYPMapCATUnicodeStringPVoid.h"

namespace {

const char* const kOldName = "Doc_Old_File_Name";

std::string keyOf(const CATUnicodeString& name) {
    const char* text = name.ConvertToChar();
    return text ? std::string(text) : std::string();
}

} // namespace

void QELDocumentOldNameIndex::reset() {
    _session = nullptr;
    _documents.clear();
    _positions.clear();
    _byName.clear();
    _indexedUnder.clear();
}

size_t QELDocumentOldNameIndex::findFrom(QELSession* session, const CATUnicodeString& name,
                                         size_t from) {
    catchUp(session);
    size_t found = _documents.size();
    auto candidates = _byName.find(keyOf(name));
    if (candidates == _byName.end())
        return found;
    for (size_t position : candidates->second) {
        if (position < from || position >= found)
            continue;
        if (_documents[position]->getStringProperty(kOldName) == name)
            found = position;
    }
    return found;
}

void QELDocumentOldNameIndex::note(QELDocument* document) {
    // A document not taken in yet is indexed under its current name when it is.
    auto known = _positions.find(document);
    if (known != _positions.end())
        indexName(document, known->second);
}

void QELDocumentOldNameIndex::catchUp(QELSession* session) {
    TYPMapCATUnicodeStringPVoid* all = session ? session->getDocuments() : nullptr;
    const size_t count = all ? static_cast<size_t>(all->size()) : 0;
    // Documents are only appended while an answer is read; another session,
    // or fewer documents than indexed, means starting over.
    if (session != _session || count < _documents.size()) {
        reset();
        _session = session;
    }
    for (size_t position = _documents.size(); position < count; ++position) {
        auto* document = static_cast<QELDocument*>(all->getObject(static_cast<int>(position)));
        _documents.push_back(document);
        _indexedUnder.push_back(nullptr);
        if (!document)
            continue;
        _positions.emplace(document, position);
        indexName(document, position);
    }
}

void QELDocumentOldNameIndex::indexName(QELDocument* document, size_t position) {
    auto list = _byName.try_emplace(keyOf(document->getStringProperty(kOldName))).first;
    // Occurrence entries of one shared document set its old name again and
    // again; it is listed once under each name it takes.
    if (_indexedUnder[position] == &list->first)
        return;
    _indexedUnder[position] = &list->first;
    list->second.push_back(position);
}
