#ifndef QELObject_H
#define QELObject_H

#include <string_view>

#include "CATUnicodeString.h"

// Root of the data model. Kinds are told apart by their class-name string,
// never by run-time type information.
class QELObject {
public:
    QELObject();
    ~QELObject() = default;

    const CATUnicodeString& get_ClassName() const { return *_className; }
    // True when the class name is exactly `name`.
    bool instanceOf(const CATUnicodeString& name) const;
    // True when the class name is `name`, or when `name` is one of the model's
    // base kinds and this object is its host-backed ("CV5CAA") variant.
    bool isAKindOf(const CATUnicodeString& name) const;
    // The same for ISO-8859-1 text, without building a CATUnicodeString: the
    // writer asks for fixed kinds on every occurrence it walks.
    bool instanceOf(const char* name) const;
    bool isAKindOf(const char* name) const;

protected:
    void set_ClassName(const CATUnicodeString& name);

private:
    bool isHostBackedVariantOf(std::string_view base) const;

    // Class names are a few constants shared by every object of a kind.
    const CATUnicodeString* _className;
};

#endif
