#ifndef QELDocumentOldNameIndex_H
#define QELDocumentOldNameIndex_H

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "CATUnicodeString.h"

class QELDocument;
class QELSession;

// The session's documents by their "Doc_Old_File_Name", in session order,
// for the renaming of external files. Every entry of an answer may carry an
// Externals block that searches the documents from a cursor; walking the
// session for each of them would make a reading quadratic. The index is built
// at its first use and then follows the session for the rest of one reading:
// documents added since are taken in, and an old name set while reading is
// announced with note(). A candidate is always checked against the
// document's current name, so an index entry left behind by a renaming
// costs a comparison, never a wrong match.
class QELDocumentOldNameIndex {
public:
    // Forgets everything; the next search rebuilds from the session.
    void reset();

    // The session order position of the first document at or after `from`
    // whose old name is `name`; size() if none.
    size_t findFrom(QELSession* session, const CATUnicodeString& name, size_t from);
    // Takes in the documents added to `session` since the last call.
    void follow(QELSession* session) { catchUp(session); }
    // Owned by its maker (the model heap for the library's factories), valid
    // until freed there.
    QELDocument* at(size_t position) const { return _documents[position]; }
    size_t size() const { return _documents.size(); }

    // `document`'s old name was just set.
    void note(QELDocument* document);

private:
    void catchUp(QELSession* session);
    void indexName(QELDocument* document, size_t position);

    QELSession* _session = nullptr;
    std::vector<QELDocument*> _documents;
    std::unordered_map<const QELDocument*, size_t> _positions;
    std::unordered_map<std::string, std::vector<size_t>> _byName;
    // The name each document was last listed under (a key of _byName, whose
    // nodes do not move), so that setting the same name again adds nothing.
    std::vector<const std::string*> _indexedUnder;
};

#endif
