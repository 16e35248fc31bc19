#ifndef QELLinkType_H
#define QELLinkType_H

#include "CATUnicodeString.h"

// The codes of the typed relations between components: the `type` of
// QELComponent's relation operations and of a QELLink. Each enumerator is
// spelled as name() prints it, so that a code in the source reads the way
// it reads in a dump or the journal. 23 and 27 are left unused.
namespace QELLinkType {

enum Code : int {
    WSP_ABS = 1,
    WSP_DOC = 2,
    ABS_WSP = 3,
    ABS_ITM = 4,
    ABS_REL = 5,
    ABS_ABV = 6,
    REL_ITM = 7,
    ITM_ABV = 8,
    ITM_REL = 9,
    ITM_ABS = 10,
    ITM_DOC = 11,
    ITM_FRM = 12,
    FRM_DOC = 13,
    FIL_DOC = 14,
    DOC_ITM = 15,
    REF = 16,
    ABS_ABS = 17,
    ABV_ITM = 18,
    GRM_LINK = 19,
    DOC_ABS = 20,
    WSP_ADDIN_DOC = 21,
    WSP_ITEM = 22,
    ITM_ADDIN_DOC = 24,
    ITM_SCENE = 25,
    ABS_SCENE = 26,
    DOC_GEODATAS = 28,
    DOC_STACKING = 29,
    STACKING_PLIES_GROUP = 30,
    PLIES_GROUP_SEQUENCE = 31,
    SEQUENCE_PLY = 32,
};

// The name of a code ("WSP_ABS", ...); a code without a name (23, 27,
// anything outside 1..32) gives its decimal text.
CATUnicodeString name(int code);

// The keys under which a relation files its far end when no name of its own
// keys it: a parent's children (an item's documents, a workspace's
// occurrences) and a child's parent.
inline constexpr char LINKNAME_CHILD[] = "LINKNAME_CHILD";
inline constexpr char LINKNAME_PARENT[] = "LINKNAME_PARENT";

} // namespace QELLinkType

#endif
