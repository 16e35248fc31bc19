#ifndef QELStacking_H
#define QELStacking_H

#include "CATUnicodeString.h"
#include "QELComponent.h"

class QELDocument;
class QELPliesGroup;

// The composites stacking of a document (its link 29); its plies groups hang
// from its link 30 under one key, kept apart by name.
class QELStacking : public QELComponent {
public:
    QELStacking();
    // Named `name` and filed under `owner`; the caller keeps ownership.
    // With a null owner it prints an error on standard output and stays
    // unnamed and unfiled.
    QELStacking(QELDocument* owner, const CATUnicodeString& name);

    CATUnicodeString getSignature() const { return get_Name(); }
    // Empty until the reader sets it.
    CATUnicodeString getStacking() const;
    void linkPliesGroup(QELPliesGroup* pliesGroup);

private:
    void buildStacking(QELDocument* owner, const CATUnicodeString& name);
};

#endif
