#ifndef QELPropertySet_H
#define QELPropertySet_H

#include "CATListValCATUnicodeString.h"
#include "CATUnicodeString.h"
#include "QELObject.h"
#include "QELPropertyList.h"
#include "TYPVector.h"

class CATIProduct;
class QELProperty;

// A bag of named, typed values (see QELProperty for the type codes). One
// property per name; the index of a property is its position in insertion
// order, so a replaced property moves to the end. A value replaced by one of
// the same kind is written into the property in place: pointers to the
// property and to its value stay valid.
//
// Kinds under one name must not be mixed. Where that would make the set read
// one kind of value as another (appending an array element to a property of a
// different storage, merging a pair into a property that holds no pairs), the
// operation is refused with a journal line and nothing changes.
class QELPropertySet final : public QELObject {
public:
    // One per component holding properties: a slot pool, 40 bytes each with
    // its list inside (a 32-byte chunk and the list's 64 before).
    static void* operator new(size_t size);
    static void operator delete(void* set);

    QELPropertySet();
    QELPropertySet(const QELPropertySet&) = delete;
    QELPropertySet& operator=(const QELPropertySet&) = delete;
    ~QELPropertySet();

    // Replace: an existing property of that name, of any kind, is destroyed.
    void addStringProperty(const CATUnicodeString& name, const CATUnicodeString& value);
    void addIntegerProperty(const CATUnicodeString& name, int value);
    void addBooleanProperty(const CATUnicodeString& name, bool value);
    void addMatrixProperty(const CATUnicodeString& name, const double value[16]);
    void addCATIProductProperty(const CATUnicodeString& name, CATIProduct* product);
    void addStringListProperty(const CATUnicodeString& name, const CATListValCATUnicodeString& value);
    // Append one element, creating the array on first use.
    void addStringArrayProperty(const CATUnicodeString& name, const CATUnicodeString& value);
    void addIntegerArrayProperty(const CATUnicodeString& name, int value);
    void addBooleanArrayProperty(const CATUnicodeString& name, bool value);
    // Merge one key/value pair; every pair with that key is overwritten when
    // replaceValue is set, and a new key is appended.
    void addDynamicProperty(const CATUnicodeString& name, const CATUnicodeString& key,
                            const CATUnicodeString& value, bool replaceValue);

    // By name. A pointer answered is owned by the set, valid until a value of
    // another kind replaces that property or the set is released (clear()
    // leaves it to the process-lifetime keeper); null when absent.
    CATUnicodeString getStringPropertyValue(const CATUnicodeString& name) const;
    CATUnicodeString getStringPropertyValue(const char* name) const;
    // -1 when absent. The type is not checked: a boolean reads as 0 or 1, a
    // matrix as the first four bytes of its first number, any other kind as 0.
    int getIntegerPropertyValue(const CATUnicodeString& name) const;
    int getIntegerPropertyValue(const char* name) const;
    bool getBooleanPropertyValue(const CATUnicodeString& name) const;
    bool getBooleanPropertyValue(const char* name) const;
    double* getMatrixPropertyValue(const CATUnicodeString& name) const;
    double* getMatrixPropertyValue(const char* name) const;
    TYPVectorCATUnicodeString* getDynamicPropertyValue(const CATUnicodeString& name) const;
    TYPVectorCATUnicodeString* getStringArrayProperty(const CATUnicodeString& name) const;
    // Owned by the set, as above.
    TYPVectorInt* getIntegerArrayProperty(const CATUnicodeString& name) const;
    TYPVectorInt* getBooleanArrayProperty(const CATUnicodeString& name) const;
    CATIProduct* getCATIProductPropertyValue(const CATUnicodeString& name) const;
    CATListValCATUnicodeString* getStringListProperty(const CATUnicodeString& name) const;
    QELProperty* getProperty(const CATUnicodeString& name) const;
    // Names given as text are looked up without building a CATUnicodeString:
    // the writer and the reader ask for fixed names all the time. Owned by the
    // set, as above.
    QELProperty* getProperty(const char* name) const;
    bool isPropertyExist(const CATUnicodeString& name) const;

    // By index, 0 .. count-1. Out of range gives the answers of a missing name.
    // Pointers are owned by the set, as above.
    int getPropertiesCount() const;
    QELProperty* getProperty(int index) const;
    CATUnicodeString getPropertyNameByIndex(int index) const;
    int getPropertyTypeByIndex(int index) const;
    CATUnicodeString getStringPropertyByIndex(int index) const;
    int getIntegerPropertyByIndex(int index) const;
    bool getBooleanPropertyByIndex(int index) const;
    double* getMatrixPropertyByIndex(int index) const;

    // Empties the map; the properties become unreachable and are kept until
    // the process ends.
    void clear();
    // Empties a string array (type 6) and answers true; false otherwise.
    bool clearStringArrayProperty(const CATUnicodeString& name);
    // Destroys every property and the map.
    void release();

    // Style 0: a tab-separated text line per property; style 1: one
    // <Attribute .../> line per property.
    CATUnicodeString print(int style) const;

    // For the census of the model's heap.
    const QELPropertyList& list() const { return _properties; }

private:
    void addProperty(int type, const CATUnicodeString& name, void* value);
    void addProperty(QELProperty* property);
    // The property of that name, moved to the end to take its new value,
    // when it holds `type`; null otherwise. Owned by the set.
    QELProperty* reuse(const CATUnicodeString& name, int type);
    // The value of the property of that name when it holds `type`, else
    // null; owned by the set.
    void* valueOf(const CATUnicodeString& name, int type) const;
    // New vector, caller deletes (the properties stay the set's).
    TYPVectorPQELProperty* getProperties(int type) const;

    QELPropertyList _properties;
};

#endif
