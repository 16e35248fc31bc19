// Checks of single values, typed properties and name references: everything
// that turns one JSON value into one model value or one error.

#include <climits>
#include <unordered_set>

#include "CATListValCATUnicodeString.h"
#include "CV5CAAQELItem.h"
#include "CV5CAAQELWorkSpace.h"
#include "QELDocument.h"
#include "QELLink.h"
#include "QELSessionFileBuilder.h"

namespace {

const char* kindOf(const QELJson& value) {
    switch (value.type()) {
    case QELJson::value_t::null: return "null";
    case QELJson::value_t::object: return "an object";
    case QELJson::value_t::array: return "an array";
    case QELJson::value_t::string: return "a string";
    case QELJson::value_t::boolean: return "a boolean";
    case QELJson::value_t::number_integer:
    case QELJson::value_t::number_unsigned: return "an integer";
    case QELJson::value_t::number_float: return "a number with a fraction";
    default: return "an unusable value";
    }
}

[[noreturn]] void wrongKind(const QELJson& value, const QELJsonPath& path, const std::string& expected) {
    qelSessionFault(path, "expected " + expected + ", got " + kindOf(value));
}

void appendPointerToken(std::string& out, std::string_view key) {
    // RFC 6901: "~" and "/" inside a key are escaped.
    for (char c : key) {
        if (c == '~')
            out += "~0";
        else if (c == '/')
            out += "~1";
        else
            out += c;
    }
}

struct DocumentTypeName {
    const char* name;
    EnumDocumentType type;
};

const DocumentTypeName kDocumentTypes[] = {
    {"product", EnumDocumentType_Product},         {"part", EnumDocumentType_Part},
    {"drawing", EnumDocumentType_Drawing},         {"process", EnumDocumentType_Process},
    {"analysis", EnumDocumentType_Analysis},       {"model", EnumDocumentType_Model},
    {"design-table", EnumDocumentType_DesignTable}, {"catalog", EnumDocumentType_Catalog},
    {"unset", EnumDocumentType_Unset},
};

// The kinds of property value that are written as an object of one member.
const char* const kTypedKinds = "matrix, pairs, strings, integers, booleans or list";

// ---- one property ---------------------------------------------------------------

template <typename Holder>
void applyMatrix(Holder& holder, const CATUnicodeString& name, const QELJson& value, const QELJsonPath& path) {
    double matrix[16];
    qelExpectMatrix(value, path, matrix);
    holder.addMatrixProperty(name, matrix);
}

void applyCollection(QELPropertyHolder& holder, const CATUnicodeString& name, const std::string& kind,
                     const QELJson& value, const QELJsonPath& path) {
    if (kind == "pairs") {
        qelExpectArray(value, path, "an array of [key, value] pairs");
        std::unordered_set<std::string> keys;
        size_t index = 0;
        for (const QELJson& pair : value) {
            const QELJsonPath at = path / index++;
            if (!pair.is_array() || pair.size() != 2 || !pair[0].is_string() || !pair[1].is_string())
                qelSessionFault(at, "expected a pair [key, value] of two strings");
            const std::string& key = pair[0].get_ref<const std::string&>();
            // The model merges pairs by key: a repeated key would vanish.
            if (!keys.insert(key).second) qelSessionFault(at, "the key \"" + key + "\" is given twice");
            holder.addDynamicProperty(name, qelText(key), qelText(pair[1].get_ref<const std::string&>()), false);
        }
        return;
    }
    if (kind == "strings") {
        qelExpectArray(value, path, "an array of strings");
        size_t index = 0;
        for (const QELJson& element : value) holder.addStringArrayProperty(name, qelText(qelExpectString(element, path / index++)));
        // An empty array still exists as a property.
        if (value.empty()) {
            holder.addStringArrayProperty(name, CATUnicodeString());
            holder.clearStringArrayProperty(name);
        }
        return;
    }
    if (kind == "integers" || kind == "booleans") {
        const bool integers = kind == "integers";
        qelExpectArray(value, path, integers ? "an array of integers" : "an array of booleans");
        // The model has no empty integer or boolean array: its first element creates it.
        if (value.empty()) qelSessionFault(path, "expected at least one element");
        size_t index = 0;
        for (const QELJson& element : value) {
            const QELJsonPath at = path / index++;
            if (integers) {
                holder.addIntegerArrayProperty(name, qelExpectInt(element, at));
            } else {
                if (!element.is_boolean()) wrongKind(element, at, "a boolean");
                holder.addBooleanArrayProperty(name, element.get<bool>());
            }
        }
        return;
    }
    // "list"
    qelExpectArray(value, path, "an array of strings");
    CATListValCATUnicodeString list;
    size_t index = 0;
    for (const QELJson& element : value) list.Append(qelText(qelExpectString(element, path / index++)));
    holder.addStringListProperty(name, list);
}

template <typename Holder>
void applyProperty(Holder& holder, const std::string& key, const QELJson& value, const QELJsonPath& path) {
    const CATUnicodeString name = qelText(key);
    if (value.is_string()) {
        holder.addStringProperty(name, qelText(value.get_ref<const std::string&>()));
        return;
    }
    if (value.is_boolean()) {
        holder.addBooleanProperty(name, value.get<bool>());
        return;
    }
    if (value.is_number_integer()) {
        holder.addIntegerProperty(name, qelExpectInt(value, path));
        return;
    }
    if (!value.is_object() || value.size() != 1)
        wrongKind(value, path,
                  std::string("a string, an integer, a boolean or an object of one member (") + kTypedKinds + ")");
    const std::string& kind = value.begin().key();
    const QELJson& content = value.begin().value();
    const QELJsonPath at = path / kind;
    if (kind == "matrix") {
        applyMatrix(holder, name, content, at);
        return;
    }
    const bool collection =
        kind == "pairs" || kind == "strings" || kind == "integers" || kind == "booleans" || kind == "list";
    if (!collection) qelSessionFault(at, std::string("unknown kind of property value; expected ") + kTypedKinds);
    if constexpr (std::is_base_of_v<QELPropertyHolder, Holder>) {
        applyCollection(holder, name, kind, content, at);
    } else {
        qelSessionFault(at, "a link holds strings, integers, booleans and matrices only");
    }
}

template <typename Holder>
void applyAll(Holder& holder, const QELJson& properties, const QELJsonPath& path) {
    qelExpectObject(properties, path, "an object of typed properties");
    for (const auto& entry : properties.items()) applyProperty(holder, entry.key(), entry.value(), path / entry.key());
}

} // namespace

// ---- paths and errors ----------------------------------------------------------

std::string QELJsonPath::text() const {
    if (!_parent) return "";
    std::string out = _parent->text();
    out += '/';
    if (_isKey)
        appendPointerToken(out, _key);
    else
        out += std::to_string(_index);
    return out;
}

void qelSessionFault(const QELJsonPath& path, const std::string& message) {
    throw QELSessionFileFault{path.text(), message};
}

// ---- single values ---------------------------------------------------------------

const QELJson& qelExpectObject(const QELJson& value, const QELJsonPath& path, const char* what) {
    if (!value.is_object()) wrongKind(value, path, what);
    return value;
}

const QELJson& qelExpectArray(const QELJson& value, const QELJsonPath& path, const char* what) {
    if (!value.is_array()) wrongKind(value, path, what);
    return value;
}

void qelCheckKeys(const QELJson& object, const QELJsonPath& path, std::initializer_list<const char*> known) {
    for (const auto& entry : object.items()) {
        const std::string& key = entry.key();
        bool found = false;
        for (const char* name : known) {
            if (key == name) {
                found = true;
                break;
            }
        }
        if (found) continue;
        std::string expected;
        for (const char* name : known) {
            if (!expected.empty()) expected += ", ";
            expected += name;
        }
        qelSessionFault(path / key, "unknown key; expected one of " + expected);
    }
}

const QELJson* qelMember(const QELJson& object, const char* key) {
    auto found = object.find(key);
    return found == object.end() ? nullptr : &*found;
}

std::string qelExpectString(const QELJson& value, const QELJsonPath& path) {
    if (!value.is_string()) wrongKind(value, path, "a string");
    return value.get<std::string>();
}

int qelExpectInt(const QELJson& value, const QELJsonPath& path) {
    if (!value.is_number_integer()) wrongKind(value, path, "an integer");
    if (value.is_number_unsigned()) {
        if (value.get<unsigned long long>() > static_cast<unsigned long long>(INT_MAX))
            qelSessionFault(path, "expected an integer from " + std::to_string(INT_MIN) + " to " + std::to_string(INT_MAX));
        return static_cast<int>(value.get<unsigned long long>());
    }
    const long long number = value.get<long long>();
    if (number < INT_MIN || number > INT_MAX)
        qelSessionFault(path, "expected an integer from " + std::to_string(INT_MIN) + " to " + std::to_string(INT_MAX));
    return static_cast<int>(number);
}

std::string qelRequiredName(const QELJson& object, const QELJsonPath& path, const char* key) {
    const QELJson* value = qelMember(object, key);
    if (!value) qelSessionFault(path, std::string("missing \"") + key + "\"");
    std::string name = qelExpectString(*value, path / key);
    if (name.empty()) qelSessionFault(path / key, "expected a name, got an empty string");
    return name;
}

std::string qelString(const QELJson& object, const QELJsonPath& path, const char* key, const std::string& absent) {
    const QELJson* value = qelMember(object, key);
    return value ? qelExpectString(*value, path / key) : absent;
}

const std::string* qelOptionalString(const QELJson& object, const QELJsonPath& path, const char* key) {
    const QELJson* value = qelMember(object, key);
    if (!value) return nullptr;
    if (!value->is_string()) wrongKind(*value, path / key, "a string");
    return &value->get_ref<const std::string&>();
}

bool qelBool(const QELJson& object, const QELJsonPath& path, const char* key, bool absent) {
    const QELJson* value = qelMember(object, key);
    if (!value) return absent;
    if (!value->is_boolean()) wrongKind(*value, path / key, "a boolean (true or false)");
    return value->get<bool>();
}

int qelInt(const QELJson& object, const QELJsonPath& path, const char* key, int absent) {
    const QELJson* value = qelMember(object, key);
    return value ? qelExpectInt(*value, path / key) : absent;
}

void qelExpectMatrix(const QELJson& value, const QELJsonPath& path, double matrix[16]) {
    if (!value.is_array() || value.size() != 16) {
        if (value.is_array())
            qelSessionFault(path, "expected 16 numbers, got " + std::to_string(value.size()));
        wrongKind(value, path, "an array of 16 numbers");
    }
    for (size_t i = 0; i < 16; ++i) {
        if (!value[i].is_number()) wrongKind(value[i], path / i, "a number");
        matrix[i] = value[i].get<double>();
    }
}

EnumDocumentType qelExpectDocumentType(const QELJson& value, const QELJsonPath& path) {
    const std::string name = qelExpectString(value, path);
    std::string expected;
    for (const DocumentTypeName& known : kDocumentTypes) {
        if (name == known.name) return known.type;
        if (!expected.empty()) expected += ", ";
        expected += known.name;
    }
    qelSessionFault(path, "unknown document type \"" + name + "\"; expected one of " + expected);
}

const char* qelDocumentTypeName(int type) {
    for (const DocumentTypeName& known : kDocumentTypes) {
        if (known.type == type) return known.name;
    }
    return "unset";
}

CATUnicodeString qelText(const std::string& utf8) {
    CATUnicodeString text;
    text.BuildFromUTF8(utf8);
    return text;
}

// ---- properties ------------------------------------------------------------------

void qelApplyProperties(QELPropertyHolder& holder, const QELJson& properties, const QELJsonPath& path) {
    applyAll(holder, properties, path);
}

void qelApplyProperties(QELLink& link, const QELJson& properties, const QELJsonPath& path) {
    applyAll(link, properties, path);
}

// ---- references by name ----------------------------------------------------------

CV5CAAQELItem* QELSessionFileBuild::itemNamed(const QELJson& value, const QELJsonPath& path) const {
    const std::string name = qelExpectString(value, path);
    CV5CAAQELItem* found = items.find(name);
    if (!found) qelSessionFault(path, "no item named \"" + name + "\" in \"items\"");
    return found;
}

QELDocument* QELSessionFileBuild::documentNamed(const QELJson& value, const QELJsonPath& path) const {
    const std::string name = qelExpectString(value, path);
    QELDocument* found = documents.find(name);
    if (!found) qelSessionFault(path, "no document named \"" + name + "\" in \"documents\"");
    return found;
}

CV5CAAQELWorkSpace* QELSessionFileBuild::workspaceNamed(const QELJson& value, const QELJsonPath& path) const {
    const std::string name = qelExpectString(value, path);
    CV5CAAQELWorkSpace* found = workspaces.find(name);
    if (!found) qelSessionFault(path, "no workspace named \"" + name + "\" in \"workspaces\"");
    return found;
}

CV5CAAQELItem* QELSessionFileBuild::item(const QELJson& object, const QELJsonPath& path, const char* key) const {
    const QELJson* value = qelMember(object, key);
    return value ? itemNamed(*value, path / key) : nullptr;
}

QELDocument* QELSessionFileBuild::document(const QELJson& object, const QELJsonPath& path, const char* key) const {
    const QELJson* value = qelMember(object, key);
    return value ? documentNamed(*value, path / key) : nullptr;
}
