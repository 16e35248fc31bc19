#ifndef QELErrorCodes_H
#define QELErrorCodes_H

// What the library's error numbers mean (docs/error-codes.md has the table,
// with who raises each and what the detail names); null for a number the
// library does not raise.
const char* qelErrorMeaning(long code);

#endif
