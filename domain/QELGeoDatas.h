#ifndef QELGeoDatas_H
#define QELGeoDatas_H

#include "CATUnicodeString.h"
#include "QELComponent.h"

class QELDocument;

// A geometric data set (body) of a document, filed under the document's link
// 28 by its signature, so that a document keeps many bodies apart.
class QELGeoDatas : public QELComponent {
public:
    QELGeoDatas();
    // Named `name` and filed under `owner`; the caller keeps ownership.
    // With a null owner it prints an error on standard output and stays
    // unnamed and unfiled.
    QELGeoDatas(QELDocument* owner, const CATUnicodeString& name);

    CATUnicodeString getSignature() const { return get_Name(); }
    // Empty until the reader sets it.
    CATUnicodeString getBody() const;

private:
    void buildBody(QELDocument* owner, const CATUnicodeString& name);
};

#endif
