#ifndef QELRelativeOccurrence_H
#define QELRelativeOccurrence_H

#include "CATUnicodeString.h"
#include "QELComponent.h"

class QELAbsoluteOccurrence;
class QELItem;

// An instance of a component inside its direct parent product, the same for
// every place where that parent is used. Its name is its OCCID. Links: 5 to
// its absolute occurrences and 7 to its item, both under
// "LINKNAME_DEFINITION".
class QELRelativeOccurrence : public QELComponent {
public:
    QELRelativeOccurrence();
    // Named `first`, or `second` when `first` is empty; with both empty it
    // prints an error on standard output and stays unnamed.
    QELRelativeOccurrence(const CATUnicodeString& first, const CATUnicodeString& second);

    void setOCCID(const CATUnicodeString& occid);
    // Keyed as absolute children are, so one occurrence is kept per parent
    // path.
    void addAbsoluteOccurrence(QELAbsoluteOccurrence* occurrence);
    void linkItem(QELItem* item);
    // The first item filed, null when none; owned by its maker (the model heap
    // for the library's factories), valid until freed there.
    QELItem* getLinkedItem() const;
};

#endif
