#ifndef EnumDocumentType_H
#define EnumDocumentType_H

// The kind of a CAD document, stored as the integer property "DocumentType".
// The underlying type is fixed so that any integer read back from a property
// or an answer file is a valid value, even one outside the list.
enum EnumDocumentType : int {
    EnumDocumentType_Unset = -1,
    EnumDocumentType_Product = 1,
    EnumDocumentType_Part = 2,
    EnumDocumentType_Drawing = 3,
    EnumDocumentType_Process = 4,
    EnumDocumentType_Analysis = 5,
    EnumDocumentType_Model = 6,
    EnumDocumentType_DesignTable = 7,
    EnumDocumentType_Catalog = 8
};

#endif
