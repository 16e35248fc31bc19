#include "QELPropertySet.h"

#include <cstring>

#include "CATIProduct.h"
#include "JNLManager.h"
#include "QELKeeper.h"
#include "QELProperty.h"
#include "UTILFormat.h"
#include "UTILSlotPool.h"
#include "UTILString.h"

namespace {

// Kinds that share a value class can take each other's array and pair
// operations without reading one class as another.
bool holdsStrings(int type) { return type == QELPROPERTY_DYNAMIC || type == QELPROPERTY_STRING_ARRAY; }
bool holdsIntegers(int type) {
    return type == QELPROPERTY_INTEGER_ARRAY || type == QELPROPERTY_BOOLEAN_ARRAY;
}

void refuse(const char* operation, const CATUnicodeString& name, int type) {
    JNLManager::writeMsgFormatted("QELPropertySet::%s: property %s holds type %d, value not added", operation,
                                  name.ConvertToChar(), type);
}

// The value of a property of the given kind; null when absent or of
// another kind.
void* valueIf(const QELProperty* p, int type) { return (p && p->get_Type() == type) ? p->get_Value() : nullptr; }

CATUnicodeString stringOf(const QELProperty* p) {
    auto* v = static_cast<const CATUnicodeString*>(valueIf(p, QELPROPERTY_STRING));
    return v ? *v : CATUnicodeString();
}

// -1 when absent. The type is not checked (see the header).
int integerOf(const QELProperty* p) {
    if (!p) return -1;
    const void* v = p->get_Value();
    if (!v) return 0;
    switch (p->get_Type()) {
    case QELPROPERTY_INTEGER:
        return *static_cast<const int*>(v);
    case QELPROPERTY_BOOLEAN:
        return *static_cast<const unsigned char*>(v);
    case QELPROPERTY_MATRIX: {
        int bits;
        std::memcpy(&bits, v, sizeof bits);
        return bits;
    }
    default:
        return 0;
    }
}

bool booleanOf(const QELProperty* p) {
    auto* v = static_cast<const unsigned char*>(valueIf(p, QELPROPERTY_BOOLEAN));
    return v ? *v != 0 : false;
}

std::string valueText(const QELProperty* p) {
    std::string text;
    const void* v = p->get_Value();
    switch (p->get_Type()) {
    case QELPROPERTY_STRING:
        return static_cast<const CATUnicodeString*>(v)->ToLatin1();
    case QELPROPERTY_INTEGER:
        return UTILFormat::formatInt(*static_cast<const int*>(v));
    case QELPROPERTY_BOOLEAN:
        return *static_cast<const unsigned char*>(v) ? "TRUE" : "FALSE";
    case QELPROPERTY_MATRIX: {
        const double* m = static_cast<const double*>(v);
        for (int i = 0; i < 16; ++i) {
            text += "[" + UTILFormat::formatInt(i) + "] " + UTILFormat::formatDouble("%g", m[i]) + " ";
        }
        return text;
    }
    case QELPROPERTY_DYNAMIC: {
        const auto* pairs = static_cast<const TYPVectorCATUnicodeString*>(v);
        for (int i = 0; pairs && i + 1 < pairs->size(); i += 2) {
            text += "[" + (*pairs)[i].ToLatin1() + "] " + (*pairs)[i + 1].ToLatin1() + " ";
        }
        return text;
    }
    case QELPROPERTY_STRING_ARRAY: {
        const auto* items = static_cast<const TYPVectorCATUnicodeString*>(v);
        for (int i = 0; items && i < items->size(); ++i) {
            text += "[" + UTILFormat::formatInt(i) + "] " + (*items)[i].ToLatin1() + " ";
        }
        return text;
    }
    case QELPROPERTY_INTEGER_ARRAY: {
        const auto* items = static_cast<const TYPVectorInt*>(v);
        for (int i = 0; items && i < items->size(); ++i) {
            text += "[" + UTILFormat::formatInt(i) + "] " + UTILFormat::formatInt((*items)[i]) + " ";
        }
        return text;
    }
    case QELPROPERTY_BOOLEAN_ARRAY: {
        const auto* items = static_cast<const TYPVectorInt*>(v);
        for (int i = 0; items && i < items->size(); ++i) {
            text += "[" + UTILFormat::formatInt(i) + "] " + ((*items)[i] ? "TRUE" : "FALSE") + " ";
        }
        return text;
    }
    case QELPROPERTY_STRING_LIST: {
        const auto* list = static_cast<const CATListValCATUnicodeString*>(v);
        for (int i = 1; list && i <= list->Size(); ++i) {
            text += "[" + UTILFormat::formatInt(i) + "] " + (*list)[i].ToLatin1() + " ";
        }
        return text;
    }
    default:
        // A product reference has no printed value.
        return "!!unknown property type!!";
    }
}

} // namespace

namespace {
using SetSlots = UTILSlotPool<sizeof(QELPropertySet)>;
}

void* QELPropertySet::operator new(size_t size) { return SetSlots::allocate(size); }
void QELPropertySet::operator delete(void* set) { SetSlots::release(set); }

QELPropertySet::QELPropertySet() { set_ClassName("QELPROPERTYSET_CLASSNAME"); }

QELPropertySet::~QELPropertySet() { release(); }

void QELPropertySet::addProperty(int type, const CATUnicodeString& name, void* value) {
    addProperty(new QELProperty(type, name, value));
}

void QELPropertySet::addProperty(QELProperty* property) {
    delete _properties.remove(property->get_Name());
    _properties.append(property);
}

QELProperty* QELPropertySet::reuse(const CATUnicodeString& name, int type) {
    // A property of another kind moves as well: its replacement takes the
    // end of the order all the same.
    QELProperty* p = _properties.moveToEnd(name);
    return p && p->get_Type() == type && p->get_Value() ? p : nullptr;
}

void QELPropertySet::addStringProperty(const CATUnicodeString& name, const CATUnicodeString& value) {
    if (QELProperty* p = reuse(name, QELPROPERTY_STRING)) {
        *static_cast<CATUnicodeString*>(p->get_Value()) = value;
        return;
    }
    addProperty(QELPROPERTY_STRING, name, new CATUnicodeString(value));
}

void QELPropertySet::addIntegerProperty(const CATUnicodeString& name, int value) {
    if (QELProperty* p = reuse(name, QELPROPERTY_INTEGER)) {
        *static_cast<int*>(p->get_Value()) = value;
        return;
    }
    addProperty(QELProperty::holdingInteger(name, value));
}

void QELPropertySet::addBooleanProperty(const CATUnicodeString& name, bool value) {
    if (QELProperty* p = reuse(name, QELPROPERTY_BOOLEAN)) {
        *static_cast<unsigned char*>(p->get_Value()) = value ? 1 : 0;
        return;
    }
    addProperty(QELProperty::holdingBoolean(name, value));
}

void QELPropertySet::addMatrixProperty(const CATUnicodeString& name, const double value[16]) {
    if (QELProperty* p = reuse(name, QELPROPERTY_MATRIX)) {
        auto* target = static_cast<double*>(p->get_Value());
        // memmove: the new value may be the property's own.
        if (value) {
            std::memmove(target, value, 16 * sizeof(double));
        } else {
            std::memset(target, 0, 16 * sizeof(double));
        }
        return;
    }
    auto* copy = new double[16];
    if (value) {
        std::memcpy(copy, value, 16 * sizeof(double));
    } else {
        std::memset(copy, 0, 16 * sizeof(double));
    }
    addProperty(QELPROPERTY_MATRIX, name, copy);
}

void QELPropertySet::addCATIProductProperty(const CATUnicodeString& name, CATIProduct* product) {
    if (product) product->AddRef();
    addProperty(QELPROPERTY_PRODUCT, name, product);
}

void QELPropertySet::addStringListProperty(const CATUnicodeString& name,
                                           const CATListValCATUnicodeString& value) {
    addProperty(QELPROPERTY_STRING_LIST, name, new CATListValCATUnicodeString(value));
}

void QELPropertySet::addStringArrayProperty(const CATUnicodeString& name, const CATUnicodeString& value) {
    if (QELProperty* p = getProperty(name)) {
        if (!holdsStrings(p->get_Type())) return refuse("addStringArrayProperty", name, p->get_Type());
        static_cast<TYPVectorCATUnicodeString*>(p->get_Value())->push_back(value);
        return;
    }
    auto* items = new TYPVectorCATUnicodeString();
    items->push_back(value);
    addProperty(new QELProperty(QELPROPERTY_STRING_ARRAY, name, items));
}

void QELPropertySet::addIntegerArrayProperty(const CATUnicodeString& name, int value) {
    if (QELProperty* p = getProperty(name)) {
        if (!holdsIntegers(p->get_Type())) return refuse("addIntegerArrayProperty", name, p->get_Type());
        static_cast<TYPVectorInt*>(p->get_Value())->push_back(value);
        return;
    }
    auto* items = new TYPVectorInt();
    items->push_back(value);
    addProperty(new QELProperty(QELPROPERTY_INTEGER_ARRAY, name, items));
}

void QELPropertySet::addBooleanArrayProperty(const CATUnicodeString& name, bool value) {
    if (QELProperty* p = getProperty(name)) {
        if (!holdsIntegers(p->get_Type())) return refuse("addBooleanArrayProperty", name, p->get_Type());
        static_cast<TYPVectorInt*>(p->get_Value())->push_back(value ? 1 : 0);
        return;
    }
    auto* items = new TYPVectorInt();
    items->push_back(value ? 1 : 0);
    addProperty(new QELProperty(QELPROPERTY_BOOLEAN_ARRAY, name, items));
}

void QELPropertySet::addDynamicProperty(const CATUnicodeString& name, const CATUnicodeString& key,
                                        const CATUnicodeString& value, bool replaceValue) {
    QELProperty* p = getProperty(name);
    if (!p) {
        auto* pairs = new TYPVectorCATUnicodeString();
        pairs->push_back(key);
        pairs->push_back(value);
        addProperty(new QELProperty(QELPROPERTY_DYNAMIC, name, pairs));
        return;
    }
    if (!holdsStrings(p->get_Type())) return refuse("addDynamicProperty", name, p->get_Type());
    auto* pairs = static_cast<TYPVectorCATUnicodeString*>(p->get_Value());
    bool found = false;
    // Every pair with the key counts, not only the first.
    for (int i = 0; i + 1 < pairs->size(); i += 2) {
        if ((*pairs)[i] == key) {
            found = true;
            if (replaceValue) (*pairs)[i + 1] = value;
        }
    }
    if (found) return;
    pairs->push_back(key);
    pairs->push_back(value);
}

QELProperty* QELPropertySet::getProperty(const CATUnicodeString& name) const {
    return _properties.find(name);
}

QELProperty* QELPropertySet::getProperty(const char* name) const {
    return _properties.find(std::string_view(name ? name : ""));
}

void* QELPropertySet::valueOf(const CATUnicodeString& name, int type) const {
    return valueIf(getProperty(name), type);
}

bool QELPropertySet::isPropertyExist(const CATUnicodeString& name) const { return getProperty(name) != nullptr; }

CATUnicodeString QELPropertySet::getStringPropertyValue(const CATUnicodeString& name) const {
    return stringOf(getProperty(name));
}
CATUnicodeString QELPropertySet::getStringPropertyValue(const char* name) const { return stringOf(getProperty(name)); }

int QELPropertySet::getIntegerPropertyValue(const CATUnicodeString& name) const { return integerOf(getProperty(name)); }
int QELPropertySet::getIntegerPropertyValue(const char* name) const { return integerOf(getProperty(name)); }

bool QELPropertySet::getBooleanPropertyValue(const CATUnicodeString& name) const { return booleanOf(getProperty(name)); }
bool QELPropertySet::getBooleanPropertyValue(const char* name) const { return booleanOf(getProperty(name)); }

double* QELPropertySet::getMatrixPropertyValue(const CATUnicodeString& name) const {
    return static_cast<double*>(valueOf(name, QELPROPERTY_MATRIX));
}
double* QELPropertySet::getMatrixPropertyValue(const char* name) const {
    return static_cast<double*>(valueIf(getProperty(name), QELPROPERTY_MATRIX));
}

TYPVectorCATUnicodeString* QELPropertySet::getDynamicPropertyValue(const CATUnicodeString& name) const {
    return static_cast<TYPVectorCATUnicodeString*>(valueOf(name, QELPROPERTY_DYNAMIC));
}

TYPVectorCATUnicodeString* QELPropertySet::getStringArrayProperty(const CATUnicodeString& name) const {
    return static_cast<TYPVectorCATUnicodeString*>(valueOf(name, QELPROPERTY_STRING_ARRAY));
}

TYPVectorInt* QELPropertySet::getIntegerArrayProperty(const CATUnicodeString& name) const {
    return static_cast<TYPVectorInt*>(valueOf(name, QELPROPERTY_INTEGER_ARRAY));
}

TYPVectorInt* QELPropertySet::getBooleanArrayProperty(const CATUnicodeString& name) const {
    return static_cast<TYPVectorInt*>(valueOf(name, QELPROPERTY_BOOLEAN_ARRAY));
}

CATIProduct* QELPropertySet::getCATIProductPropertyValue(const CATUnicodeString& name) const {
    return static_cast<CATIProduct*>(valueOf(name, QELPROPERTY_PRODUCT));
}

CATListValCATUnicodeString* QELPropertySet::getStringListProperty(const CATUnicodeString& name) const {
    return static_cast<CATListValCATUnicodeString*>(valueOf(name, QELPROPERTY_STRING_LIST));
}

int QELPropertySet::getPropertiesCount() const { return _properties.size(); }

QELProperty* QELPropertySet::getProperty(int index) const {
    return _properties.at(index);
}

CATUnicodeString QELPropertySet::getPropertyNameByIndex(int index) const {
    QELProperty* p = getProperty(index);
    return p ? p->get_Name() : CATUnicodeString();
}

int QELPropertySet::getPropertyTypeByIndex(int index) const {
    QELProperty* p = getProperty(index);
    return p ? p->get_Type() : -1;
}

CATUnicodeString QELPropertySet::getStringPropertyByIndex(int index) const {
    QELProperty* p = getProperty(index);
    return p ? getStringPropertyValue(p->get_Name()) : CATUnicodeString();
}

int QELPropertySet::getIntegerPropertyByIndex(int index) const {
    QELProperty* p = getProperty(index);
    return p ? getIntegerPropertyValue(p->get_Name()) : -1;
}

bool QELPropertySet::getBooleanPropertyByIndex(int index) const {
    QELProperty* p = getProperty(index);
    return p ? getBooleanPropertyValue(p->get_Name()) : false;
}

double* QELPropertySet::getMatrixPropertyByIndex(int index) const {
    QELProperty* p = getProperty(index);
    return p ? getMatrixPropertyValue(p->get_Name()) : nullptr;
}

TYPVectorPQELProperty* QELPropertySet::getProperties(int type) const {
    auto* out = new TYPVectorPQELProperty();
    _properties.forEach([out, type](QELProperty* p) {
        if (p->get_Type() == type) out->push_back(p);
    });
    return out;
}

void QELPropertySet::clear() {
    _properties.forEach([](QELProperty* p) { QELKeeper::keep(p); });
    _properties.clear();
}

bool QELPropertySet::clearStringArrayProperty(const CATUnicodeString& name) {
    auto* items = getStringArrayProperty(name);
    if (!items) return false;
    items->clear();
    return true;
}

void QELPropertySet::release() {
    _properties.forEach([](QELProperty* p) { delete p; });
    _properties.release();
}

CATUnicodeString QELPropertySet::print(int style) const {
    std::string out;
    _properties.forEach([&out, style](const QELProperty* p) {
        if (style == 0) {
            CATUnicodeString name = p->get_Name();
            name.Resize(40, CATUnicodeChar(' '), 1);
            out += "\t" + name.ToLatin1() + "\t|\t" + valueText(p) + "\n";
        } else if (style == 1) {
            out += "\t\t\t\t<Attribute Id=\"" + UTILString::genUuid().ToLatin1() + "\" InitialValue=\"" +
                   valueText(p) + "\" Name=\"" + p->get_Name().ToLatin1() + "\"/>\n";
        } else {
            out += "unknown style";
        }
    });
    return CATUnicodeString(out);
}
