#ifndef CV5CAAQELItem_H
#define CV5CAAQELItem_H

#include "QELItem.h"

class QELAbsoluteOccurrence;
class QELDocument;

// A PDM item as the CAD host knows it; every answer is a field with a setter.
class CV5CAAQELItem : public QELItem {
public:
    CV5CAAQELItem();
    explicit CV5CAAQELItem(const CATUnicodeString& name);

    // The host's answers hold the model's objects as they were set: each is
    // owned by whoever set it (the model heap for the library's factories),
    // valid until freed there; this item owns none of them.
    QELDocument* getItemDefaultDocument() const { return _defaultDocument; }
    void setItemDefaultDocument(QELDocument* document) { _defaultDocument = document; }
    unsigned char isCatalogComp() const { return _catalogComp; }
    void setIsCatalogComp(unsigned char catalogComp) { _catalogComp = catalogComp; }
    // The first absolute occurrence the host created for the item, and any one of them.
    QELAbsoluteOccurrence* getFirstCreatedAbsoluteOccurrence() const { return _firstCreated; }
    void setFirstCreatedAbsoluteOccurrence(QELAbsoluteOccurrence* occurrence) { _firstCreated = occurrence; }
    QELAbsoluteOccurrence* getOneAbsoluteOccurrence() const { return _oneOccurrence; }
    void setOneAbsoluteOccurrence(QELAbsoluteOccurrence* occurrence) { _oneOccurrence = occurrence; }

    // "Mask" on the item; a status set negative makes it fail.
    long computeAndUpdateMaskProperty(int mask);
    void setMaskStatus(long status) { _maskStatus = status; }

private:
    long _maskStatus = 0;
    QELDocument* _defaultDocument = nullptr;
    unsigned char _catalogComp = 0;
    QELAbsoluteOccurrence* _firstCreated = nullptr;
    QELAbsoluteOccurrence* _oneOccurrence = nullptr;
};

#endif
