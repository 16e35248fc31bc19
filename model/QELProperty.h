#ifndef QELProperty_H
#define QELProperty_H

#include "CATUnicodeString.h"
#include "QELObject.h"
#include "TYPSharedText.h"

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
// the process-lifetime keeper instead of being freed.
class QELProperty : public QELObject {
public:
    QELProperty();
    QELProperty(int type, const CATUnicodeString& name, void* value);
    QELProperty(const QELProperty&) = delete;
    QELProperty& operator=(const QELProperty&) = delete;
    ~QELProperty();

    // The name is a shared copy (TYPSharedText): a model holds millions of
    // properties but a few hundred distinct names.
    const CATUnicodeString& get_Name() const { return _name->text; }
    void set_Name(const CATUnicodeString& name);
    int get_Type() const { return _type; }
    void set_Type(int type) { _type = type; }
    // Owned by this property, valid until its destruction (a string list is
    // then handed to the keeper, valid until the process ends).
    void* get_Value() const { return _value; }
    // Replaces the pointer; the previous value is not freed.
    void set_Value(void* value) { _value = value; }

private:
    int _type;
    const TYPSharedText::Node* _name;
    void* _value;
};

#endif
