#ifndef QELLink_H
#define QELLink_H

#include "CATUnicodeString.h"

class CATIProduct;
class QELComponent;
class QELPropertySet;

// A named GRM link between a primary and a secondary component, with its own
// properties. Shared by both ends and freed by neither: links made by
// QELComponent::addGRMLink belong to the model heap.
class QELLink {
public:
    QELLink();
    QELLink(int type, const CATUnicodeString& name, QELComponent* primary, QELComponent* secondary);
    QELLink(const QELLink&) = delete;
    QELLink& operator=(const QELLink&) = delete;
    ~QELLink();

    const CATUnicodeString& get_Name() const { return _name; }
    void set_Name(const CATUnicodeString& name) { _name = name; }
    int get_Type() const { return _type; }
    void set_Type(int type) { _type = type; }
    // The ends are owned by their makers (the model heap for the library's
    // factories), valid until freed there; the link never frees them.
    QELComponent* get_Primary() const { return _primary; }
    void set_Primary(QELComponent* primary) { _primary = primary; }
    QELComponent* get_Secondary() const { return _secondary; }
    void set_Secondary(QELComponent* secondary) { _secondary = secondary; }

    void addStringProperty(const CATUnicodeString& name, const CATUnicodeString& value);
    void addIntegerProperty(const CATUnicodeString& name, int value);
    void addBooleanProperty(const CATUnicodeString& name, bool value);
    void addMatrixProperty(const CATUnicodeString& name, const double value[16]);
    void addCATIProductProperty(const CATUnicodeString& name, CATIProduct* product);
    CATUnicodeString getStringProperty(const CATUnicodeString& name) const;
    int getIntegerProperty(const CATUnicodeString& name) const;
    bool getBooleanProperty(const CATUnicodeString& name) const;
    // Owned by the link's property set, valid until the property is replaced
    // by one of another kind or the link is destroyed.
    double* getMatrixProperty(const CATUnicodeString& name) const;
    CATIProduct* getCATIProductProperty(const CATUnicodeString& name) const;
    int getPropertiesCount() const;
    // Owned by this link, valid until its destruction.
    QELPropertySet* getPropertySet() const { return _properties; }

    // `from` names the component the link is printed for: its class name
    // followed by its name.
    CATUnicodeString print(int style, const CATUnicodeString& from) const;

private:
    QELPropertySet* _properties;
    CATUnicodeString _name;
    int _type;
    QELComponent* _primary;
    QELComponent* _secondary;
};

#endif
