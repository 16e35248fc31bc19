#ifndef QELKeeper_H
#define QELKeeper_H

#include <cstddef>

#include "UTILObjectPool.h"

// Keeps what the model deliberately leaves behind (a string-list value after
// its property is gone, properties made unreachable by a set's clear()) and
// frees it when the process ends, so that nothing is reported as leaked.
class QELKeeper {
public:
    // Takes `object` over and answers it: owned by the keeper from now on,
    // valid until the process ends.
    template <typename T>
    static T* keep(T* object) {
        return pool().adopt(object);
    }
    static size_t size() { return pool().size(); }

private:
    static UTILObjectPool& pool();
};

#endif
