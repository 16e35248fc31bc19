#ifndef CATIProduct_H
#define CATIProduct_H

#include "CATBaseUnknown.h"
#include "CATUnicodeString.h"

// A product of the host's assembly structure, as properties of type 9 hold it.
class CATIProduct : public CATBaseUnknown {
public:
    explicit CATIProduct(const CATUnicodeString& partNumber = CATUnicodeString()) : _partNumber(partNumber) {}
    CATUnicodeString GetPartNumber() const { return _partNumber; }
    void SetPartNumber(const CATUnicodeString& partNumber) { _partNumber = partNumber; }

private:
    CATUnicodeString _partNumber;
};

#endif
