#ifndef CV5CAAToolsCommon_H
#define CV5CAAToolsCommon_H

#include "CATListValCATUnicodeString.h"
#include "CATUnicodeString.h"

class CATDocument;

// Host-side helpers around the status window and the active document.
class CV5CAAToolsCommon {
public:
    // Reads the status window's selection: one element name per line of the
    // file (blank lines skipped). An empty file name means
    // "documentsOfStatusWindow.xml" in ENVManager's temporary directory.
    // Every name goes to `elements`; `names` receives the same names (the
    // host keeps two lists, the second is the one callers use). Negative
    // when the file cannot be read.
    static long readListOfElements(const CATUnicodeString& fileName, CATListValCATUnicodeString& names,
                                   CATListValCATUnicodeString& elements);
    // The document active in the host, or null: owned by whoever set it, valid
    // until freed there (the host keeps only the pointer).
    static CATDocument* getActiveCATDocument();
    static void setActiveCATDocument(CATDocument* document);
};

#endif
