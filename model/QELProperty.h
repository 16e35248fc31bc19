#ifndef QELProperty_H
#define QELProperty_H

#include "CATUnicodeString.h"
#include "QELObject.h"
#include "TYPSharedText.h"
#include "UTILSlotPool.h"

// Property type codes; the numbers are part of the interface.
enum QELPropertyType {
    QELPROPERTY_STRING = 1,
    QELPROPERTY_INTEGER = 2,
    QELPROPERTY_BOOLEAN = 3,
    QELPROPERTY_MATRIX = 4,
    QELPROPERTY_DYNAMIC = 5,
    QELPROPERTY_STRING_ARRAY = 6,
    QELPROPERTY_INTEGER_ARRAY = 7,
    QELPROPERTY_BOOLEAN_ARRAY = 8,
    QELPROPERTY_PRODUCT = 9,
    QELPROPERTY_STRING_LIST = 10
};

// One named, typed value. The property owns its value object, whose class
// follows from the type code:
//   1 CATUnicodeString, 2 int, 3 unsigned char (0/1), 4 double[16],
//   5 and 6 TYPVectorCATUnicodeString, 7 and 8 TYPVectorInt,
//   9 CATIProduct (one reference held), 10 CATListValCATUnicodeString.
// A string-list value outlives its property: on destruction it is handed to
// the process-lifetime keeper instead of being freed. An integer or boolean
// made by holdingInteger / holdingBoolean lives inside the property itself
// (get_Value points there), in the bytes the layout leaves free anyway.
class QELProperty final : public QELObject {
public:
    // A model holds millions: they live in a slot pool, 32 bytes each
    // instead of a 48-byte malloc chunk, side by side in the order made.
    static void* operator new(size_t size);
    static void operator delete(void* property);

    QELProperty();
    QELProperty(int type, const CATUnicodeString& name, void* value);
    // An integer (type 2) or boolean (type 3) property holding its value
    // inside: 32 bytes in all instead of 32 more for a separate value.
    static QELProperty* holdingInteger(const CATUnicodeString& name, int value);
    static QELProperty* holdingBoolean(const CATUnicodeString& name, bool value);
    QELProperty(const QELProperty&) = delete;
    QELProperty& operator=(const QELProperty&) = delete;
    ~QELProperty();

    // The name is a shared copy (TYPSharedText): a model holds millions of
    // properties but a few hundred distinct names.
    const CATUnicodeString& get_Name() const { return _name->text; }
    // The hash of the name as CATUnicodeStringHash gives it, kept with the
    // shared copy: lists compare it before the text.
    size_t get_NameHash() const { return _name->hash; }
    void set_Name(const CATUnicodeString& name);
    int get_Type() const { return _type; }
    void set_Type(int type) { _type = type; }
    // Owned by this property, valid until its destruction (a string list is
    // then handed to the keeper, valid until the process ends).
    void* get_Value() const { return _value; }
    // Replaces the pointer; the previous value is not freed (a value held
    // inside stays with the property).
    void set_Value(void* value) { _value = value; }

    // True while the value lives inside the property (see above).
    bool holdsValueInside() const { return _value == &_inside; }

private:
    int _type;
    union {
        int integer;
        unsigned char boolean;
    } _inside;
    const TYPSharedText::Node* _name;
    void* _value;
};

#endif
