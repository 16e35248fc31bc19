#ifndef QELPliesGroup_H
#define QELPliesGroup_H

#include "CATUnicodeString.h"
#include "QELComponent.h"

class QELStacking;
class QELSequence;

// A plies group of a composites stacking; its sequences hang from its link
// 31 under one key, kept apart by name.
class QELPliesGroup : public QELComponent {
public:
    QELPliesGroup();
    // Named `name` and filed under `owner`; the caller keeps ownership.
    // With a null owner it prints an error on standard output and stays
    // unnamed and unfiled.
    QELPliesGroup(QELStacking* owner, const CATUnicodeString& name);

    CATUnicodeString getSignature() const { return get_Name(); }
    // Empty until the reader sets it.
    CATUnicodeString getPliesGroup() const;
    void linkSequence(QELSequence* sequence);

private:
    void buildPliesGroup(QELStacking* owner, const CATUnicodeString& name);
};

#endif
