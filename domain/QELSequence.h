#ifndef QELSequence_H
#define QELSequence_H

#include "CATUnicodeString.h"
#include "QELComponent.h"

class QELPliesGroup;
class QELPly;

// A sequence of a plies group; its plies hang from its link 32 under one key,
// kept apart by name (two plies of one name are one entry).
class QELSequence : public QELComponent {
public:
    QELSequence();
    // Named `name` and filed under `owner`; the caller keeps ownership.
    // With a null owner it prints an error on standard output and stays
    // unnamed and unfiled.
    QELSequence(QELPliesGroup* owner, const CATUnicodeString& name);

    CATUnicodeString getSignature() const { return get_Name(); }
    // Empty until the reader sets it.
    CATUnicodeString getSequence() const;
    void linkPly(QELPly* ply);

private:
    void buildSequence(QELPliesGroup* owner, const CATUnicodeString& name);
};

#endif
