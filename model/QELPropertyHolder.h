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

    CATUnicodeString getStringProperty(const CATUnicodeString& name) const;
    int getIntegerProperty(const CATUnicodeString& name) const;
    bool getBooleanProperty(const CATUnicodeString& name) const;
    double* getMatrixProperty(const CATUnicodeString& name) const;
    // The same for names given as text, looked up without a CATUnicodeString.
    CATUnicodeString getStringProperty(const char* name) const;
    int getIntegerProperty(const char* name) const;
    bool getBooleanProperty(const char* name) const;
    double* getMatrixProperty(const char* name) const;
    CATIProduct* getCATIProductProperty(const CATUnicodeString& name) const;
    TYPVectorCATUnicodeString* getStringArrayProperty(const CATUnicodeString& name) const;
    TYPVectorInt* getIntegerArrayProperty(const CATUnicodeString& name) const;
    TYPVectorInt* getBooleanArrayProperty(const CATUnicodeString& name) const;
    TYPVectorCATUnicodeString* getDynamicProperty(const CATUnicodeString& name) const;
    CATListValCATUnicodeString* getStringListProperty(const CATUnicodeString& name) const;
    QELProperty* getProperty(const CATUnicodeString& name) const;
    QELProperty* getProperty(const char* name) const;
    bool isPropertyExist(const CATUnicodeString& name) const;

    int getPropertiesCount() const;
    CATUnicodeString getPropertyNameByIndex(int index) const;
    int getPropertyTypeByIndex(int index) const;
    CATUnicodeString getStringPropertyByIndex(int index) const;
    int getIntegerPropertyByIndex(int index) const;
    bool getBooleanPropertyByIndex(int index) const;
    double* getMatrixPropertyByIndex(int index) const;

    bool clearStringArrayProperty(const CATUnicodeString& name);
    // The set itself, null before the first add.
    QELPropertySet* getPropertySet() const { return _properties; }

protected:
    QELPropertySet* propertySet();
    void releaseProperties();

private:
    QELPropertySet* _properties;
};

#endif
