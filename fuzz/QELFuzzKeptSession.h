#ifndef QELFuzzKeptSession_H
#define QELFuzzKeptSession_H

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "CATUnicodeString.h"

class QELPropertySet;

// What lets the reader harnesses read every input into one session built per
// header instead of a new one: a record of the model as built, and its
// restoration after a reading.
//
// A reading changes the model in four ways only: properties of the session,
// of its components and of their GRM links (values, host answers, file names, masks, shapes),
// components it creates (workspaces, occurrences, auxiliary documents and
// files, GRM links: all owned by the model heap, and only they relate to
// existing components anew), the host session's staging path, and the
// journal and error handler. The record keeps every property by value, the
// heap's size and the live components; restore() puts changed properties back
// in their order and answers false for anything else, when the session must
// be built again.
namespace qelfuzz {

class KeptSession {
public:
    // Records the model as it stands: call right after building it.
    void record();
    // Puts the recorded properties back where a reading changed them; false
    // when the reading created or destroyed components or changed state that
    // only a new build restores.
    bool restore();

private:
    // One property by value; a kind that cannot be put back (a product, a
    // string list) leaves `restorable` false.
    struct Property {
        CATUnicodeString name;
        int type = 0;
        CATUnicodeString text;                // string
        int number = 0;                       // integer, boolean
        std::array<double, 16> matrix{};      // matrix
        std::vector<CATUnicodeString> texts;  // string array, dynamic pairs
        std::vector<int> numbers;             // integer and boolean arrays
    };
    // The session, a component or a GRM link, and its property set.
    struct Holder {
        const void* owner = nullptr;
        QELPropertySet* set = nullptr;
        bool restorable = true;
        std::vector<Property> properties;
    };
    void capture(Holder& holder) const;
    static bool same(const Holder& holder);
    static void putBack(const Holder& holder);

    std::string _stagingPath;
    size_t _heapSize = 0;
    std::vector<Holder> _holders;
};

// Everything a reading could observe of the model and the host, as text:
// every live component's handle, class, name, properties, GRM links and
// relations, the host stand-ins' own state, the session's properties and
// staging path, the active document. What the restore is checked against.
std::string observableState();

} // namespace qelfuzz

#endif
