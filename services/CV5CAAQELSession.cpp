#include "CV5CAAQELSession.h"

namespace {
CV5CAAQELSession gHostSession;
}

CV5CAAQELSession* CV5CAAQELSession::getCATIASessionInstance() { return &gHostSession; }

void CV5CAAQELSession::reset() { gHostSession = CV5CAAQELSession(); }
