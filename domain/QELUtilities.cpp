#include "QELUtilities.h"

#include "UTILFormat.h"

CATUnicodeString QELUtilities::getLinkTypeName(int linkType) {
    // Indexed by code; 23 and 27 have no name on purpose.
    static const char* const kNames[] = {
        nullptr,        "WSP_ABS",       "WSP_DOC",   "ABS_WSP",      "ABS_ITM",
        "ABS_REL",      "ABS_ABV",       "REL_ITM",   "ITM_ABV",      "ITM_REL",
        "ITM_ABS",      "ITM_DOC",       "ITM_FRM",   "FRM_DOC",      "FIL_DOC",
        "DOC_ITM",      "REF",           "ABS_ABS",   "ABV_ITM",      "GRM_LINK",
        "DOC_ABS",      "WSP_ADDIN_DOC", "WSP_ITEM",  nullptr,        "ITM_ADDIN_DOC",
        "ITM_SCENE",    "ABS_SCENE",     nullptr,     "DOC_GEODATAS", "DOC_STACKING",
        "STACKING_PLIES_GROUP", "PLIES_GROUP_SEQUENCE", "SEQUENCE_PLY",
    };
    const int count = static_cast<int>(sizeof kNames / sizeof kNames[0]);
    if (linkType >= 0 && linkType < count && kNames[linkType]) return kNames[linkType];
    return CATUnicodeString(UTILFormat::formatInt(linkType));
}
