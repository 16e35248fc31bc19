#ifndef QELPropertyNames_H
#define QELPropertyNames_H

#include <cstddef>

#include "CATUnicodeString.h"

// A model holds millions of properties but only a few hundred distinct names:
// every property points to one shared copy of its name. The copies are
// counted, so that the names an answer file brings go away with their last
// property instead of piling up for the life of the process.
class QELPropertyNames {
public:
    // The shared copy of `name`, with one more holder; owned by this table,
    // valid until the caller's matching release().
    static const CATUnicodeString* acquire(const CATUnicodeString& name);
    // One holder less; the copy is freed with its last holder. Null is ignored.
    static void release(const CATUnicodeString* name);
    // Distinct names held now.
    static size_t count();
};

#endif
