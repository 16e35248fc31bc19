#ifndef QELSessionFileBuilder_H
#define QELSessionFileBuilder_H

// The loader's own seams, shared by the QELSessionFile*.cpp sources: where a
// value sits in the file, the error that names it, the checks every object
// goes through, typed properties, and the name tables that references go
// through. Not part of the program's interface (see QELSessionFile.h).

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>

#include <nlohmann/json.hpp>

#include "CATUnicodeString.h"
#include "EnumDocumentType.h"
#include "QELPropertyHolder.h"

class CV5CAAQELDocument;
class CV5CAAQELItem;
class CV5CAAQELWorkSpace;
class QELComponent;
class QELDocument;
class QELLink;

// Keys keep the order of the file: properties are answered by index in the
// order they were added.
using QELJson = nlohmann::ordered_json;

// A JSON pointer ("/documents/3/type") to the value being read. Built on the
// stack while the loader walks down and turned into text only when an error
// names it, so that a million occurrences cost no string work.
class QELJsonPath {
public:
    QELJsonPath() = default;
    QELJsonPath(const QELJsonPath& parent, std::string_view key) : _parent(&parent), _key(key), _isKey(true) {}
    QELJsonPath(const QELJsonPath& parent, size_t index) : _parent(&parent), _index(index) {}
    QELJsonPath operator/(std::string_view key) const { return QELJsonPath(*this, key); }
    QELJsonPath operator/(size_t index) const { return QELJsonPath(*this, index); }
    std::string text() const;

private:
    const QELJsonPath* _parent = nullptr;
    std::string_view _key;
    size_t _index = 0;
    bool _isKey = false;
};

// A value that does not describe a session: where, and what was expected.
struct QELSessionFileFault {
    std::string path;
    std::string message;
};

[[noreturn]] void qelSessionFault(const QELJsonPath& path, const std::string& message);

// ---- checks of one value ------------------------------------------------------

// The object itself; any other kind of value is an error naming `what`.
const QELJson& qelExpectObject(const QELJson& value, const QELJsonPath& path, const char* what);
const QELJson& qelExpectArray(const QELJson& value, const QELJsonPath& path, const char* what);
// Every key of `object` must be one of `known`: a misspelt key is an error,
// never a silently ignored value.
void qelCheckKeys(const QELJson& object, const QELJsonPath& path, std::initializer_list<const char*> known);

// Members of an object that has passed qelCheckKeys. Absent members answer
// the default; a member of the wrong kind is an error.
const QELJson* qelMember(const QELJson& object, const char* key);
std::string qelRequiredName(const QELJson& object, const QELJsonPath& path, const char* key);
std::string qelString(const QELJson& object, const QELJsonPath& path, const char* key, const std::string& absent = "");
bool qelBool(const QELJson& object, const QELJsonPath& path, const char* key, bool absent);
int qelInt(const QELJson& object, const QELJsonPath& path, const char* key, int absent);
// A member that must be a string when present; null when absent.
const std::string* qelOptionalString(const QELJson& object, const QELJsonPath& path, const char* key);

std::string qelExpectString(const QELJson& value, const QELJsonPath& path);
int qelExpectInt(const QELJson& value, const QELJsonPath& path);
// Exactly 16 numbers, row after row as the model keeps them.
void qelExpectMatrix(const QELJson& value, const QELJsonPath& path, double matrix[16]);
EnumDocumentType qelExpectDocumentType(const QELJson& value, const QELJsonPath& path);

// JSON text is UTF-8; the model's strings keep ISO-8859-1.
CATUnicodeString qelText(const std::string& utf8);

// ---- typed properties ---------------------------------------------------------

// One "properties" object onto a component, the session, a form or a link.
// Scalars take their JSON kind (string, integer, boolean); the other kinds
// are objects of one member: "matrix", "pairs", "strings", "integers",
// "booleans", "list". A link holds scalars and matrices only.
void qelApplyProperties(QELPropertyHolder& holder, const QELJson& properties, const QELJsonPath& path);
void qelApplyProperties(QELLink& link, const QELJson& properties, const QELJsonPath& path);
// The "properties" member of `object`, when it has one.
template <typename Holder>
void qelApplyPropertiesOf(Holder& holder, const QELJson& object, const QELJsonPath& path) {
    if (const QELJson* properties = qelMember(object, "properties"))
        qelApplyProperties(holder, *properties, path / "properties");
}

// ---- names ----------------------------------------------------------------------

// Items, documents and workspaces by the name the file gives them, so that
// every reference costs one hash look-up.
template <typename T>
class QELNameTable {
public:
    // False when the name is taken already.
    bool add(const std::string& name, T* object) { return _byName.emplace(name, object).second; }
    T* find(const std::string& name) const {
        auto found = _byName.find(name);
        return found == _byName.end() ? nullptr : found->second;
    }
    void reserve(size_t count) { _byName.reserve(count); }

private:
    std::unordered_map<std::string, T*> _byName;
};

// What the stages of a load share: the components made so far, by name.
struct QELSessionFileBuild {
    // Each occurrence's JSON is freed once built, which keeps a large file's
    // parse from doubling the peak; not when the parse is built again.
    bool consume = true;
    QELNameTable<CV5CAAQELItem> items;
    QELNameTable<QELDocument> documents;
    QELNameTable<CV5CAAQELWorkSpace> workspaces;

    // The named member of `object` (a reference by name), resolved; an
    // unknown name is an error that says what kind of thing was expected.
    CV5CAAQELItem* item(const QELJson& object, const QELJsonPath& path, const char* key) const;
    QELDocument* document(const QELJson& object, const QELJsonPath& path, const char* key) const;
    CV5CAAQELItem* itemNamed(const QELJson& value, const QELJsonPath& path) const;
    QELDocument* documentNamed(const QELJson& value, const QELJsonPath& path) const;
    CV5CAAQELWorkSpace* workspaceNamed(const QELJson& value, const QELJsonPath& path) const;
};

// ---- stages, in the order a load runs them --------------------------------------

void qelBuildSettings(const QELJson& settings, const QELJsonPath& path);
void qelBuildItems(const QELJson& items, const QELJsonPath& path, QELSessionFileBuild& build);
// Documents first, then what they refer to, so that any document may name
// any other whatever their order in the file.
void qelBuildDocuments(const QELJson& documents, const QELJsonPath& path, QELSessionFileBuild& build);
void qelBuildDocumentRelations(const QELJson& documents, const QELJsonPath& path, QELSessionFileBuild& build);
void qelBuildItemRelations(const QELJson& items, const QELJsonPath& path, QELSessionFileBuild& build);
// Workspaces themselves (root document and item, flags, configuration)
// before the relations, which may link to them.
void qelBuildWorkspaces(const QELJson& workspaces, const QELJsonPath& path, QELSessionFileBuild& build);
// Their links and assembly trees, last. Takes the trees by non-const
// reference: each occurrence's JSON is released as soon as it is built,
// which keeps the peak of a large load near the size of the model rather
// than the model plus the whole parsed text.
void qelBuildAssemblies(QELJson& workspaces, const QELJsonPath& path, QELSessionFileBuild& build);

// GRM links of a component: [{"name", "document" | "item" | "workspace", "properties"}].
void qelBuildLinks(QELComponent& primary, const QELJson& links, const QELJsonPath& path,
                   const QELSessionFileBuild& build);

#endif
