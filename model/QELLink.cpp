#include "QELLink.h"

#include "QELComponent.h"
#include "QELLinkType.h"
#include "QELPropertySet.h"
#include "UTILString.h"

QELLink::QELLink() : _properties(new QELPropertySet()), _type(0), _primary(nullptr), _secondary(nullptr) {}

QELLink::QELLink(int type, const CATUnicodeString& name, QELComponent* primary, QELComponent* secondary)
    : _properties(new QELPropertySet()), _name(name), _type(type), _primary(primary), _secondary(secondary) {}

// The ends are not the link's own; its property set is.
QELLink::~QELLink() { delete _properties; }

void QELLink::addStringProperty(const CATUnicodeString& name, const CATUnicodeString& value) {
    _properties->addStringProperty(name, value);
}
void QELLink::addIntegerProperty(const CATUnicodeString& name, int value) {
    _properties->addIntegerProperty(name, value);
}
void QELLink::addBooleanProperty(const CATUnicodeString& name, bool value) {
    _properties->addBooleanProperty(name, value);
}
void QELLink::addMatrixProperty(const CATUnicodeString& name, const double value[16]) {
    _properties->addMatrixProperty(name, value);
}
void QELLink::addCATIProductProperty(const CATUnicodeString& name, CATIProduct* product) {
    _properties->addCATIProductProperty(name, product);
}
CATUnicodeString QELLink::getStringProperty(const CATUnicodeString& name) const {
    return _properties->getStringPropertyValue(name);
}
int QELLink::getIntegerProperty(const CATUnicodeString& name) const {
    return _properties->getIntegerPropertyValue(name);
}
bool QELLink::getBooleanProperty(const CATUnicodeString& name) const {
    return _properties->getBooleanPropertyValue(name);
}
double* QELLink::getMatrixProperty(const CATUnicodeString& name) const {
    return _properties->getMatrixPropertyValue(name);
}
CATIProduct* QELLink::getCATIProductProperty(const CATUnicodeString& name) const {
    return _properties->getCATIProductPropertyValue(name);
}
int QELLink::getPropertiesCount() const { return _properties->getPropertiesCount(); }

CATUnicodeString QELLink::print(int style, const CATUnicodeString& from) const {
    CATUnicodeString typeName = QELLinkType::name(_type);
    CATUnicodeString secondaryName = _secondary ? _secondary->get_Name() : CATUnicodeString();
    if (style == 0) {
        return "\t---- " + typeName + " / " + _name + " ---> " + secondaryName + "\n" + _properties->print(0);
    }
    if (style != 1) return "unknown style";

    CATUnicodeString primaryId =
        _primary ? _primary->get_ClassName() + _primary->get_Name() : CATUnicodeString();
    CATUnicodeString id = primaryId;
    if (_secondary) id += _secondary->get_ClassName() + _secondary->get_Name();
    CATUnicodeString u = UTILString::genUuid();
    CATUnicodeString out;
    if (from.Compare(primaryId) == 0) {
        int len = u.GetLengthInChar();
        auto attribute = [](const CATUnicodeString& value, const char* name) {
            return "\t\t\t\t<Attribute Id=\"" + UTILString::genUuid() + "\" InitialValue=\"" + value +
                   "\" Name=\"" + name + "\"/>\n";
        };
        out += "\t\t<Class Id=\"" + id + "\" Name=\"QELLINK::" + u.SubString(len - 3, 2) + "\">\n";
        out += "\t\t\t<ModelChildren>\n";
        out += attribute(typeName, "_type");
        out += attribute(_name, "_name");
        out += attribute(_primary ? _primary->get_Name() : CATUnicodeString(), "_p_primary");
        out += attribute(secondaryName, "_p_secondary");
        out += _properties->print(1);
        out += "\t\t\t</ModelChildren>\n";
        out += "\t\t</Class>\n";
    }
    out += "\t\t<Usage From=\"" + from + "\" Id=\"" + UTILString::genUuid() + "\" Name=\"" + typeName + " / " +
           _name + "\" To=\"" + id + "\" />\n";
    return out;
}
