#include "QELUtilities.h"

#include "QELDocument.h"
#include "QELLinkType.h"

CATUnicodeString QELUtilities::getLinkTypeName(int linkType) { return QELLinkType::name(linkType); }

CATUnicodeString QELUtilities::getDocFilRefNameFromDocumentType(EnumDocumentType type) {
    switch (type) {
    case EnumDocumentType_Product:
        return "catproduct";
    case EnumDocumentType_Part:
        return "catpart";
    case EnumDocumentType_Drawing:
        return "catdrawing";
    case EnumDocumentType_Process:
        return "catprocess";
    case EnumDocumentType_Analysis:
        return "catanalysis";
    case EnumDocumentType_DesignTable:
        return "catdesigntable";
    case EnumDocumentType_Catalog:
        return "catalog";
    // A model document has no reference name of its own, so its files are
    // never found by reference name; that gap is relied upon.
    case EnumDocumentType_Model:
    case EnumDocumentType_Unset:
    default:
        return "unknown";
    }
}

CATUnicodeString QELUtilities::getFileExtension(const CATUnicodeString& fileName) {
    const int dot = fileName.SearchSubString(".", 0, CATUnicodeString::CATSearchModeBackward);
    if (dot < 0) return CATUnicodeString();
    return fileName.SubString(dot + 1, fileName.GetLengthInChar() - dot - 1);
}

// The property is the dynamic pair list that the writer also reads (names at
// even positions, each followed by its value). The name is located the way a
// 1-based list answers, and that position read in the 0-based vector is the
// entry just after the name: the attribute's value.
CATUnicodeString QELUtilities::getPropertyValueMappingAttributes(QELDocument* document,
                                                                 const CATUnicodeString& name) {
    if (!document || name.IsNull()) return CATUnicodeString();
    const TYPVectorCATUnicodeString* pairs = document->getDynamicProperty(QELDocument::kCATIAMappingAttributes);
    if (!pairs) return CATUnicodeString();
    for (int i = 0; i < pairs->size(); ++i) {
        if ((*pairs)[i] == name) return i + 1 < pairs->size() ? (*pairs)[i + 1] : CATUnicodeString();
    }
    return CATUnicodeString();
}
