#ifndef CV5CAAQELDocument_H
#define CV5CAAQELDocument_H

#include "CATUnicodeString.h"
#include "QELDocument.h"
#include "TYPVector.h"

class CV5CAAQELStacking;
class QELFile;
class QELItem;

// A document open in the CAD host, as the model sees it. In production its
// answers come from the live host document; here each is a plain field with a
// setter, so that tests and tools can set up any situation. It counts as a
// QELDocument ("CV5CAAQELDOCUMENT_CLASSNAME").
class CV5CAAQELDocument : public QELDocument {
public:
    CV5CAAQELDocument();
    explicit CV5CAAQELDocument(const CATUnicodeString& name);
    CV5CAAQELDocument(const CATUnicodeString& name, EnumDocumentType type);

    // The host's answers hold the model's objects as they were set: each is
    // owned by whoever set it (the model heap for the library's factories),
    // valid until freed there; this document owns none of them.
    QELItem* getDefaultItem() const { return _defaultItem; }
    void setDefaultItem(QELItem* item) { _defaultItem = item; }
    QELFile* getDefaultFile() const { return _defaultFile; }
    void setDefaultFile(QELFile* file) { _defaultFile = file; }
    CATUnicodeString getDocumentUID() const { return _documentUID; }
    void setDocumentUID(const CATUnicodeString& uid) { _documentUID = uid; }
    // Negative when the host has no named reference for the document.
    long getNamedRefUID(CATUnicodeString& uid) const;
    void setNamedRefUID(const CATUnicodeString& uid) { _namedRefUID = uid; }

    // The file name the host shows for the document (negative when unknown).
    long getFileName(CATUnicodeString& name) const;
    void setFileName(const CATUnicodeString& name) { _fileName = name; }
    unsigned char isCatalogComp() const { return _catalogComp; }
    void setIsCatalogComp(unsigned char catalogComp) { _catalogComp = catalogComp; }
    // A primary document is one the user opened, not one it drags along.
    unsigned char isPrimaryDocument() const { return _primary; }
    void setIsPrimaryDocument(unsigned char primary) { _primary = primary; }
    // "Mask" on the document; a status set negative makes it fail.
    long updateMaskProperty(int mask);
    void setMaskStatus(long status) { _maskStatus = status; }

    unsigned char isABrokenIcon() const { return _brokenIcon; }
    void setIsABrokenIcon(unsigned char broken) { _brokenIcon = broken; }
    unsigned char getDesignTableVisibility() const { return _designTableVisible; }
    void setDesignTableVisibility(unsigned char visible) { _designTableVisible = visible; }

    // Drawings: sheet names (null when the document has no sheets), the
    // active sheet, and whether this document is the one shown on the active
    // sheet of the drawing that points to it. The sheet names are owned by
    // this document, valid until the next addSheetName or its
    // destruction.
    const TYPVectorCATUnicodeString* getSheetsNames() const { return _hasSheets ? &_sheets : nullptr; }
    void addSheetName(const CATUnicodeString& name);
    CATUnicodeString getDWActiveSheet() const { return _activeSheet; }
    void setDWActiveSheet(const CATUnicodeString& name) { _activeSheet = name; }
    unsigned char isPointedDocOfActiveSheet() const { return _pointedByActiveSheet; }
    void setIsPointedDocOfActiveSheet(unsigned char pointed) { _pointedByActiveSheet = pointed; }

    const TYPVectorCATUnicodeString& getScenesNames() const { return _scenes; }
    void addSceneName(const CATUnicodeString& name) { _scenes.push_back(name); }

    // Composites: the stackings of the part, in host order. A status set
    // negative makes the question fail.
    // Fills the caller's vector with the stackings as added: owned by whoever
    // added them, valid until freed there.
    long getAllStackings(TYPVector<CV5CAAQELStacking*>& stackings) const;
    void addStacking(CV5CAAQELStacking* stacking) { _stackings.push_back(stacking); }
    void setStackingsStatus(long status) { _stackingsStatus = status; }

    // External files: the links from this document to its external file
    // documents; the vector is owned by this document, valid until the next
    // addExternalFileDocument or its destruction (null when there are none).
    long getExternalFileDocuments(TYPVectorPQELLink*& links) const;
    void addExternalFileDocument(QELLink* link) { _externalFiles.push_back(link); }

private:
    CATUnicodeString _fileName;
    unsigned char _catalogComp = 0;
    unsigned char _primary = 0;
    long _maskStatus = 0;
    QELItem* _defaultItem = nullptr;
    QELFile* _defaultFile = nullptr;
    CATUnicodeString _documentUID;
    CATUnicodeString _namedRefUID;
    unsigned char _brokenIcon = 0;
    unsigned char _designTableVisible = 0;
    bool _hasSheets = false;
    TYPVectorCATUnicodeString _sheets;
    CATUnicodeString _activeSheet;
    unsigned char _pointedByActiveSheet = 0;
    TYPVectorCATUnicodeString _scenes;
    TYPVector<CV5CAAQELStacking*> _stackings;
    long _stackingsStatus = 0;
    TYPVectorPQELLink _externalFiles;
};

typedef TYPVector<CV5CAAQELDocument*> TYPVectorPCV5CAAQELDocument;

#endif
