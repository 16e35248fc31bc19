#ifndef QELModelHeap_H
#define QELModelHeap_H

#include <cstddef>

#include "UTILObjectPool.h"

// Owns what the library's own factories create: documents, files, items and
// forms made by createDocument / createFile / addDesignTable / ..., scenes,
// shape representations, the reader's creations and every GRM link.
//
// A caller frees a whole model with one call, after the session has forgotten
// it:
//     QELSession::removeInstance();
//     QELModelHeap::freeAll();
// What is left at the end of the process is freed then. Components a caller
// constructs itself stay the caller's.
class QELModelHeap {
public:
    // Takes `object` over and answers it: owned by the heap from now on,
    // valid until freeAll (or the end of the process).
    template <typename T>
    static T* adopt(T* object) {
        return pool().adopt(object);
    }
    static void freeAll();
    static size_t size() { return pool().size(); }

private:
    static UTILObjectPool& pool();
};

#endif
