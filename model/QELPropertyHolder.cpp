#include "QELPropertyHolder.h"

#include "QELPropertySet.h"

QELPropertyHolder::~QELPropertyHolder() { releaseProperties(); }

QELPropertySet* QELPropertyHolder::propertySet() {
    if (!_properties) _properties = new QELPropertySet();
    return _properties;
}

void QELPropertyHolder::releaseProperties() {
    delete _properties;
    _properties = nullptr;
}

void QELPropertyHolder::addStringProperty(const CATUnicodeString& name, const CATUnicodeString& value) {
    propertySet()->addStringProperty(name, value);
}
void QELPropertyHolder::addIntegerProperty(const CATUnicodeString& name, int value) {
    propertySet()->addIntegerProperty(name, value);
}
void QELPropertyHolder::addBooleanProperty(const CATUnicodeString& name, bool value) {
    propertySet()->addBooleanProperty(name, value);
}
void QELPropertyHolder::addMatrixProperty(const CATUnicodeString& name, const double value[16]) {
    propertySet()->addMatrixProperty(name, value);
}
void QELPropertyHolder::addCATIProductProperty(const CATUnicodeString& name, CATIProduct* product) {
    propertySet()->addCATIProductProperty(name, product);
}
void QELPropertyHolder::addStringArrayProperty(const CATUnicodeString& name, const CATUnicodeString& value) {
    propertySet()->addStringArrayProperty(name, value);
}
void QELPropertyHolder::addIntegerArrayProperty(const CATUnicodeString& name, int value) {
    propertySet()->addIntegerArrayProperty(name, value);
}
void QELPropertyHolder::addBooleanArrayProperty(const CATUnicodeString& name, bool value) {
    propertySet()->addBooleanArrayProperty(name, value);
}
void QELPropertyHolder::addStringListProperty(const CATUnicodeString& name,
                                              const CATListValCATUnicodeString& value) {
    propertySet()->addStringListProperty(name, value);
}
void QELPropertyHolder::addDynamicProperty(const CATUnicodeString& name, const CATUnicodeString& key,
                                           const CATUnicodeString& value, bool replaceValue) {
    propertySet()->addDynamicProperty(name, key, value, replaceValue);
}

CATUnicodeString QELPropertyHolder::getStringProperty(const CATUnicodeString& name) const {
    return _properties ? _properties->getStringPropertyValue(name) : CATUnicodeString();
}
int QELPropertyHolder::getIntegerProperty(const CATUnicodeString& name) const {
    return _properties ? _properties->getIntegerPropertyValue(name) : -1;
}
bool QELPropertyHolder::getBooleanProperty(const CATUnicodeString& name) const {
    return _properties ? _properties->getBooleanPropertyValue(name) : false;
}
double* QELPropertyHolder::getMatrixProperty(const CATUnicodeString& name) const {
    return _properties ? _properties->getMatrixPropertyValue(name) : nullptr;
}
CATUnicodeString QELPropertyHolder::getStringProperty(const char* name) const {
    return _properties ? _properties->getStringPropertyValue(name) : CATUnicodeString();
}
int QELPropertyHolder::getIntegerProperty(const char* name) const {
    return _properties ? _properties->getIntegerPropertyValue(name) : -1;
}
bool QELPropertyHolder::getBooleanProperty(const char* name) const {
    return _properties ? _properties->getBooleanPropertyValue(name) : false;
}
double* QELPropertyHolder::getMatrixProperty(const char* name) const {
    return _properties ? _properties->getMatrixPropertyValue(name) : nullptr;
}
CATIProduct* QELPropertyHolder::getCATIProductProperty(const CATUnicodeString& name) const {
    return _properties ? _properties->getCATIProductPropertyValue(name) : nullptr;
}
TYPVectorCATUnicodeString* QELPropertyHolder::getStringArrayProperty(const CATUnicodeString& name) const {
    return _properties ? _properties->getStringArrayProperty(name) : nullptr;
}
TYPVectorInt* QELPropertyHolder::getIntegerArrayProperty(const CATUnicodeString& name) const {
    return _properties ? _properties->getIntegerArrayProperty(name) : nullptr;
}
TYPVectorInt* QELPropertyHolder::getBooleanArrayProperty(const CATUnicodeString& name) const {
    return _properties ? _properties->getBooleanArrayProperty(name) : nullptr;
}
TYPVectorCATUnicodeString* QELPropertyHolder::getDynamicProperty(const CATUnicodeString& name) const {
    return _properties ? _properties->getDynamicPropertyValue(name) : nullptr;
}
CATListValCATUnicodeString* QELPropertyHolder::getStringListProperty(const CATUnicodeString& name) const {
    return _properties ? _properties->getStringListProperty(name) : nullptr;
}
QELProperty* QELPropertyHolder::getProperty(const CATUnicodeString& name) const {
    return _properties ? _properties->getProperty(name) : nullptr;
}
QELProperty* QELPropertyHolder::getProperty(const char* name) const {
    return _properties ? _properties->getProperty(name) : nullptr;
}
bool QELPropertyHolder::isPropertyExist(const CATUnicodeString& name) const {
    return _properties && _properties->isPropertyExist(name);
}

int QELPropertyHolder::getPropertiesCount() const { return _properties ? _properties->getPropertiesCount() : 0; }
CATUnicodeString QELPropertyHolder::getPropertyNameByIndex(int index) const {
    return _properties ? _properties->getPropertyNameByIndex(index) : CATUnicodeString();
}
int QELPropertyHolder::getPropertyTypeByIndex(int index) const {
    return _properties ? _properties->getPropertyTypeByIndex(index) : -1;
}
CATUnicodeString QELPropertyHolder::getStringPropertyByIndex(int index) const {
    return _properties ? _properties->getStringPropertyByIndex(index) : CATUnicodeString();
}
int QELPropertyHolder::getIntegerPropertyByIndex(int index) const {
    return _properties ? _properties->getIntegerPropertyByIndex(index) : -1;
}
bool QELPropertyHolder::getBooleanPropertyByIndex(int index) const {
    return _properties ? _properties->getBooleanPropertyByIndex(index) : false;
}
double* QELPropertyHolder::getMatrixPropertyByIndex(int index) const {
    return _properties ? _properties->getMatrixPropertyByIndex(index) : nullptr;
}
bool QELPropertyHolder::clearStringArrayProperty(const CATUnicodeString& name) {
    return _properties && _properties->clearStringArrayProperty(name);
}
