#ifndef QELPropertyHolder_H
#define QELPropertyHolder_H

#include "CATListValCATUnicodeString.h"
#include "CATUnicodeString.h"
#include "TYPVector.h"

class CATIProduct;
class QELProperty;
class QELPropertySet;

// The property operations that the session and every component offer: each
// forwards to a property set created on the first add. Without a set, getters
// give the neutral answers (empty text, -1, false, null, 0).
//
// Every pointer a getter answers (a matrix, an array, a list, a property, the
// set) is owned by the holder's property set, valid until a value of another
// kind replaces that property or the holder releases its properties; a value
// replaced by one of the same kind is written in place, so the pointer stays
// good. A product is the caller's to AddRef if it keeps it longer.
class QELPropertyHolder {
public:
    QELPropertyHolder() : _properties(nullptr) {}
    QELPropertyHolder(const QELPropertyHolder&) = delete;
    QELPropertyHolder& operator=(const QELPropertyHolder&) = delete;
    ~QELPropertyHolder();

    void addStringProperty(const CATUnicodeString& name, const CATUnicodeString& value);
    void addIntegerProperty(const CATUnicodeString& name, int value);
    void addBooleanProperty(const CATUnicodeString& name, bool value);
    void addMatrixProperty(const CATUnicodeString& name, const double value[16]);
    void addCATIProductProperty(const CATUnicodeString& name, CATIProduct* product);
    void addStringArrayProperty(const CATUnicodeString& name, const CATUnicodeString& value);
    void addIntegerArrayProperty(const CATUnicodeString& name, int value);
    void addBooleanArrayProperty(const CATUnicodeString& name, bool value);
    void addStringListProperty(const CATUnicodeString& name, const CATListValCATUnicodeString& value);
    void addDynamicProperty(const CATUnicodeString& name, const CATUnicodeString& key,
                            const CATUnicodeString& value, bool replaceValue);

    // Pointers answered below are owned by the holder's property set (see
    // above), valid until the property changes kind or the set is released.
    CATUnicodeString getStringProperty(const CATUnicodeString& name) const;
    int getIntegerProperty(const CATUnicodeString& name) const;
    bool getBooleanProperty(const CATUnicodeString& name) const;
    double* getMatrixProperty(const CATUnicodeString& name) const;
    // The same for names given as text, looked up without a CATUnicodeString.
    CATUnicodeString getStringProperty(const char* name) const;
    int getIntegerProperty(const char* name) const;
    bool getBooleanProperty(const char* name) const;
    double* getMatrixProperty(const char* name) const;
    // Owned by the holder's property set, as above.
    CATIProduct* getCATIProductProperty(const CATUnicodeString& name) const;
    TYPVectorCATUnicodeString* getStringArrayProperty(const CATUnicodeString& name) const;
    TYPVectorInt* getIntegerArrayProperty(const CATUnicodeString& name) const;
    TYPVectorInt* getBooleanArrayProperty(const CATUnicodeString& name) const;
    TYPVectorCATUnicodeString* getDynamicProperty(const CATUnicodeString& name) const;
    CATListValCATUnicodeString* getStringListProperty(const CATUnicodeString& name) const;
    QELProperty* getProperty(const CATUnicodeString& name) const;
    QELProperty* getProperty(const char* name) const;
    bool isPropertyExist(const CATUnicodeString& name) const;

    // By index; a matrix is owned by the holder's property set, as above.
    int getPropertiesCount() const;
    CATUnicodeString getPropertyNameByIndex(int index) const;
    int getPropertyTypeByIndex(int index) const;
    CATUnicodeString getStringPropertyByIndex(int index) const;
    int getIntegerPropertyByIndex(int index) const;
    bool getBooleanPropertyByIndex(int index) const;
    double* getMatrixPropertyByIndex(int index) const;

    bool clearStringArrayProperty(const CATUnicodeString& name);
    // The set itself, null before the first add; owned by this holder,
    // valid until it releases its properties.
    QELPropertySet* getPropertySet() const { return _properties; }

protected:
    // The set, made on first use: owned by this holder, valid until it
    // releases its properties.
    QELPropertySet* propertySet();
    void releaseProperties();

private:
    QELPropertySet* _properties;
};

#endif
