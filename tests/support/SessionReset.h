#ifndef SessionReset_H
#define SessionReset_H

#include "CV5CAAQELSession.h"
#include "CV5CAAToolsCommon.h"
#include "EMHManager.h"
#include "ENVManager.h"
#include "JNLManager.h"
#include "PROCManager.h"
#include "QELSession.h"

namespace qeltest {

// Frees the model and puts every process-wide setting back, so that one
// test (or one fuzz input) never sees what an earlier one left behind.
inline void resetSession() {
    CV5CAAToolsCommon::setActiveCATDocument(nullptr);
    QELSession::freeModel();
    PROCManager::reset();
    ENVManager::reset();
    CV5CAAQELSession::reset();
    JNLManager::clear();
    EMHManager::clear();
}

} // namespace qeltest

#endif
