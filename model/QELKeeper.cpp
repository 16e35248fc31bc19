#include "QELKeeper.h"
#include "QELModelHeap.h"

#include <cstdlib>

// Both pools live until the process ends and are emptied by one exit handler,
// model first: deleting a component can hand things to the keeper, so the
// keeper must still be there when the model goes.
namespace {

UTILObjectPool* gModel = nullptr;
UTILObjectPool* gKept = nullptr;

void freeAtExit() {
    if (gModel) gModel->freeAll();
    if (gKept) gKept->freeAll();
}

void createPools() {
    if (gModel) return;
    gModel = new UTILObjectPool();
    gKept = new UTILObjectPool();
    std::atexit(freeAtExit);
}

} // namespace

UTILObjectPool& QELKeeper::pool() {
    createPools();
    return *gKept;
}

UTILObjectPool& QELModelHeap::pool() {
    createPools();
    return *gModel;
}

void QELModelHeap::freeAll() { pool().freeAll(); }
