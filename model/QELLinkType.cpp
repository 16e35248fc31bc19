#include "QELLinkType.h"

#include "UTILFormat.h"

CATUnicodeString QELLinkType::name(int code) {
    // Indexed by code; 23 and 27 have no name on purpose.
    static const char* const kNames[] = {
        nullptr,
        "WSP_ABS",
        "WSP_DOC",
        "ABS_WSP",
        "ABS_ITM",
        "ABS_REL",
        "ABS_ABV",
        "REL_ITM",
        "ITM_ABV",
        "ITM_REL",
        "ITM_ABS",
        "ITM_DOC",
        "ITM_FRM",
        "FRM_DOC",
        "FIL_DOC",
        "DOC_ITM",
        "REF",
        "ABS_ABS",
        "ABV_ITM",
        "GRM_LINK",
        "DOC_ABS",
        "WSP_ADDIN_DOC",
        "WSP_ITEM",
        nullptr,
        "ITM_ADDIN_DOC",
        "ITM_SCENE",
        "ABS_SCENE",
        nullptr,
        "DOC_GEODATAS",
        "DOC_STACKING",
        "STACKING_PLIES_GROUP",
        "PLIES_GROUP_SEQUENCE",
        "SEQUENCE_PLY",
    };
    const int count = static_cast<int>(sizeof kNames / sizeof kNames[0]);
    if (code >= 0 && code < count && kNames[code]) return kNames[code];
    return CATUnicodeString(UTILFormat::formatInt(code));
}
