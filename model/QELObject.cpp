#include "QELObject.h"

#include <memory>
#include <string_view>
#include <unordered_map>

namespace {

const CATUnicodeString* internClassName(const CATUnicodeString& name) {
    // Never destroyed: objects held until exit still point into it.
    static auto* table =
        new std::unordered_map<CATUnicodeString, std::unique_ptr<CATUnicodeString>, CATUnicodeStringHash>();
    auto it = table->find(name);
    if (it == table->end()) {
        it = table->emplace(name, std::make_unique<CATUnicodeString>(name)).first;
    }
    return it->second.get();
}

const CATUnicodeString* emptyClassName() {
    static const CATUnicodeString* none = internClassName(CATUnicodeString());
    return none;
}

// The kinds that have a host-backed variant, which counts as the same kind.
const char* const kHostBackedKinds[] = {
    "QELABSOLUTEOCCURRENCE_CLASSNAME", "QELDOCUMENT_CLASSNAME",  "QELABSOLUTEVIEW_CLASSNAME",
    "QELFILE_CLASSNAME",               "QELFORM_CLASSNAME",      "QELITEM_CLASSNAME",
    "QELSESSION_CLASSNAME",            "QELWORKSPACE_CLASSNAME", "QELRELATIVEOCCURRENCE_CLASSNAME",
    "QELSCENE_CLASSNAME",              "QELGEODATAS_CLASSNAME",
};

} // namespace

QELObject::QELObject() : _className(emptyClassName()) {}

void QELObject::set_ClassName(const CATUnicodeString& name) { _className = internClassName(name); }

bool QELObject::instanceOf(const CATUnicodeString& name) const { return *_className == name; }

bool QELObject::instanceOf(const char* name) const {
    return !_className->IsWide() && _className->ToLatin1() == (name ? name : "");
}

bool QELObject::isAKindOf(const CATUnicodeString& name) const {
    if (*_className == name) return true;
    // Kinds are ISO-8859-1 constants: a wide name is no base kind.
    return !name.IsWide() && isHostBackedVariantOf(name.ToLatin1());
}

bool QELObject::isAKindOf(const char* name) const {
    const std::string_view text(name ? name : "");
    if (!_className->IsWide() && _className->ToLatin1() == text) return true;
    return isHostBackedVariantOf(text);
}

bool QELObject::isHostBackedVariantOf(std::string_view base) const {
    // A host-backed name is the base name with "CV5CAA" in front.
    if (_className->IsWide()) return false;
    const std::string& own = _className->ToLatin1();
    if (own.size() != base.size() + 6u || own.compare(0, 6, "CV5CAA") != 0) return false;
    if (own.compare(6, std::string::npos, base) != 0) return false;
    for (const char* kind : kHostBackedKinds) {
        if (base == kind) return true;
    }
    return false;
}
