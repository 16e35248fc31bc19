#include "QELProperty.h"

#include "CATIProduct.h"
#include "CATListValCATUnicodeString.h"
#include "QELKeeper.h"
#include "TYPSharedText.h"
#include "TYPVector.h"

static_assert(sizeof(QELProperty) == 32, "the value held inside takes the padding after the type");

namespace {
using PropertySlots = UTILSlotPool<sizeof(QELProperty)>;
}

void* QELProperty::operator new(size_t size) { return PropertySlots::allocate(size); }
void QELProperty::operator delete(void* property) { PropertySlots::release(property); }

QELProperty::QELProperty() : _type(0), _inside{0}, _name(TYPSharedText::acquire(CATUnicodeString())), _value(nullptr) {}

QELProperty::QELProperty(int type, const CATUnicodeString& name, void* value)
    : _type(type), _inside{0}, _name(TYPSharedText::acquire(name)), _value(value) {}

QELProperty* QELProperty::holdingInteger(const CATUnicodeString& name, int value) {
    auto* property = new QELProperty(QELPROPERTY_INTEGER, name, nullptr);
    property->_inside.integer = value;
    property->_value = &property->_inside;
    return property;
}

QELProperty* QELProperty::holdingBoolean(const CATUnicodeString& name, bool value) {
    auto* property = new QELProperty(QELPROPERTY_BOOLEAN, name, nullptr);
    property->_inside.boolean = value ? 1 : 0;
    property->_value = &property->_inside;
    return property;
}

void QELProperty::set_Name(const CATUnicodeString& name) {
    // Acquired first: `name` may be this property's own name.
    const TYPSharedText::Node* shared = TYPSharedText::acquire(name);
    TYPSharedText::release(_name);
    _name = shared;
}

QELProperty::~QELProperty() {
    TYPSharedText::release(_name);
    if (holdsValueInside()) {
        _value = nullptr;
        return;
    }
    switch (_type) {
    case QELPROPERTY_STRING: delete static_cast<CATUnicodeString*>(_value); break;
    case QELPROPERTY_INTEGER: delete static_cast<int*>(_value); break;
    case QELPROPERTY_BOOLEAN: delete static_cast<unsigned char*>(_value); break;
    case QELPROPERTY_MATRIX: delete[] static_cast<double*>(_value); break;
    case QELPROPERTY_DYNAMIC:
    case QELPROPERTY_STRING_ARRAY: delete static_cast<TYPVectorCATUnicodeString*>(_value); break;
    case QELPROPERTY_INTEGER_ARRAY:
    case QELPROPERTY_BOOLEAN_ARRAY: delete static_cast<TYPVectorInt*>(_value); break;
    case QELPROPERTY_PRODUCT:
        if (_value) static_cast<CATIProduct*>(_value)->Release();
        break;
    case QELPROPERTY_STRING_LIST:
        // Callers may still hold the list: it stays alive until the process ends.
        QELKeeper::keep(static_cast<CATListValCATUnicodeString*>(_value));
        break;
    default: break;
    }
    _value = nullptr;
}
