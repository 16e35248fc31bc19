#include "QELPropertyText.h"

#include <cstdio>

#include "CATListValCATUnicodeString.h"
#include "QELProperty.h"
#include "QELPropertyHolder.h"
#include "QELPropertySet.h"
#include "TYPVector.h"

namespace {

std::string utf8(const CATUnicodeString& text) { return text.ConvertToUTF8(); }

std::string strings(const TYPVectorCATUnicodeString* values) {
    std::string out = "[";
    if (values)
        for (int i = 0; i < values->size(); ++i) out += (i ? ", " : "") + utf8((*values)[i]);
    return out + "]";
}

std::string pairs(const TYPVectorCATUnicodeString* values) {
    std::string out;
    if (!values) return out;
    for (int i = 0; i + 1 < values->size(); i += 2)
        out += (i ? "; " : "") + utf8((*values)[i]) + "=" + utf8((*values)[i + 1]);
    return out;
}

std::string integers(const TYPVectorInt* values, bool asBooleans) {
    std::string out = "[";
    if (values)
        for (int i = 0; i < values->size(); ++i) {
            const int value = (*values)[i];
            out += (i ? ", " : "") + (asBooleans ? std::string(value ? "true" : "false") : std::to_string(value));
        }
    return out + "]";
}

std::string matrix(const double* values) {
    if (!values) return {};
    std::string out;
    char number[40];
    for (int i = 0; i < 16; ++i) {
        std::snprintf(number, sizeof number, "%.17g", values[i]);
        if (i) out += ' ';
        out += number;
    }
    return out;
}

std::string list(const CATListValCATUnicodeString* values) {
    std::string out = "[";
    if (values)
        for (int i = 1; i <= values->Size(); ++i) out += (i > 1 ? ", " : "") + utf8((*values)[i]);
    return out + "]";
}

} // namespace

const char* qelPropertyTypeName(int type) {
    switch (type) {
    case QELPROPERTY_STRING: return "string";
    case QELPROPERTY_INTEGER: return "integer";
    case QELPROPERTY_BOOLEAN: return "boolean";
    case QELPROPERTY_MATRIX: return "matrix";
    case QELPROPERTY_DYNAMIC: return "pairs";
    case QELPROPERTY_STRING_ARRAY: return "strings";
    case QELPROPERTY_INTEGER_ARRAY: return "integers";
    case QELPROPERTY_BOOLEAN_ARRAY: return "booleans";
    case QELPROPERTY_PRODUCT: return "product";
    case QELPROPERTY_STRING_LIST: return "list";
    default: return "unknown";
    }
}

// The value is read where the property keeps it: the by-name getters would
// cost a look-up per property of every component.
std::string qelPropertyText(const QELPropertyHolder& holder, int index) {
    const QELPropertySet* set = holder.getPropertySet();
    const QELProperty* property = set ? set->getProperty(index) : nullptr;
    if (!property) return {};
    const void* value = property->get_Value();
    switch (property->get_Type()) {
    case QELPROPERTY_STRING: return value ? utf8(*static_cast<const CATUnicodeString*>(value)) : std::string();
    case QELPROPERTY_INTEGER: return value ? std::to_string(*static_cast<const int*>(value)) : std::string();
    case QELPROPERTY_BOOLEAN: return value && *static_cast<const unsigned char*>(value) ? "true" : "false";
    case QELPROPERTY_MATRIX: return matrix(static_cast<const double*>(value));
    case QELPROPERTY_DYNAMIC: return pairs(static_cast<const TYPVectorCATUnicodeString*>(value));
    case QELPROPERTY_STRING_ARRAY: return strings(static_cast<const TYPVectorCATUnicodeString*>(value));
    case QELPROPERTY_INTEGER_ARRAY: return integers(static_cast<const TYPVectorInt*>(value), false);
    case QELPROPERTY_BOOLEAN_ARRAY: return integers(static_cast<const TYPVectorInt*>(value), true);
    case QELPROPERTY_PRODUCT: return value ? "product" : "null";
    case QELPROPERTY_STRING_LIST: return list(static_cast<const CATListValCATUnicodeString*>(value));
    default: return {};
    }
}
