#ifndef QELUtilities_H
#define QELUtilities_H

#include "CATUnicodeString.h"
#include "EnumDocumentType.h"

class QELDocument;

// Stateless helpers of the domain.
class QELUtilities {
public:
    // The name of a link-type code: QELLinkType::name, under the name callers
    // of the model have always used.
    static CATUnicodeString getLinkTypeName(int linkType);

    // The reference name under which a document of that type files its own
    // files; "unknown" for unset, model and unlisted types.
    static CATUnicodeString getDocFilRefNameFromDocumentType(EnumDocumentType type);
    // The text after the last dot; empty without a dot or after a final dot.
    static CATUnicodeString getFileExtension(const CATUnicodeString& fileName);
    // The value of the mapping attribute `name` in the document's pair list
    // "CATIA_Mapping_Attribut"; empty for a null document, an empty name, or a
    // name not in the list.
    static CATUnicodeString getPropertyValueMappingAttributes(QELDocument* document,
                                                              const CATUnicodeString& name);
};

#endif
