#ifndef QELStatus_H
#define QELStatus_H

#include <cstdint>

// Results of the operations that can fail, as the host's 32-bit statuses:
// 0 for success, E_FAIL (0x80004005) for failure. Held in a `long`, E_FAIL
// keeps the sign it has as a 32-bit status, so that `status < 0` tells a
// failure on every platform, 64-bit Linux included.
const long QEL_S_OK = 0;
const long QEL_E_FAIL = static_cast<long>(static_cast<int32_t>(0x80004005u));

// Whether a status is a failure, read as the host reads its own: negative as
// a 32-bit value, so that 0x80004005 held in a 64-bit long still counts.
inline bool QELFailed(long status) { return static_cast<int32_t>(status) < 0; }

#endif
