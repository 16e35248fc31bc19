#ifndef CATDocument_H
#define CATDocument_H

#include "CATBaseUnknown.h"
#include "CATUnicodeString.h"

// A document open in the host, known by its storage name (its full path).
class CATDocument : public CATBaseUnknown {
public:
    explicit CATDocument(const CATUnicodeString& storageName = CATUnicodeString()) : _storageName(storageName) {}
    CATUnicodeString StorageName() const { return _storageName; }
    void SetStorageName(const CATUnicodeString& storageName) { _storageName = storageName; }

private:
    CATUnicodeString _storageName;
};

#endif
