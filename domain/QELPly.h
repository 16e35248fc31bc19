#ifndef QELPly_H
#define QELPly_H

#include "CATUnicodeString.h"
#include "QELComponent.h"

class QELSequence;

// One ply of a composites sequence.
class QELPly : public QELComponent {
public:
    QELPly();
    // Named `name` and filed under `owner`; the caller keeps ownership.
    // With a null owner it prints an error on standard output and stays
    // unnamed and unfiled.
    QELPly(QELSequence* owner, const CATUnicodeString& name);

    CATUnicodeString getSignature() const { return get_Name(); }
    // Empty until the reader sets it.
    CATUnicodeString getPly() const;

private:
    void buildPly(QELSequence* owner, const CATUnicodeString& name);
};

#endif
