#include "QELErrorCodes.h"

const char* qelErrorMeaning(long code) {
    switch (code) {
    case 2102:
        return "a service or look-up the library called failed, or a write to the description "
               "failed";
    case 2103: return "an object the operation needs is missing, or a session setting was never asked";
    case 2104: return "the description holds another number of entries than its NBElements announces";
    default: return nullptr;
    }
}
