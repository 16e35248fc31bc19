#ifndef QELHandleTable_H
#define QELHandleTable_H

#include <cstdint>
#include <string>
#include <vector>

class QELComponent;

// The process-wide table of live components. Each component gets the next
// handle when it is constructed and leaves the table when it is destroyed, so
// a handle printed into a file designates a component of this process or
// nothing: a stale handle is never handed out again. Handles follow
// construction order and start at 1 in every process, so a model built the
// same way twice gets the same handles.
class QELHandleTable {
public:
    static uint64_t add(QELComponent* component);
    static void remove(uint64_t handle);
    // The live component of that handle, or null; owned by its maker, valid
    // until it is destroyed (when it leaves the table).
    static QELComponent* resolve(uint64_t handle);
    // The handle a token prints: exactly 16 hexadecimal digits (either case,
    // optional "0x" prefix, surrounding blanks ignored); false for anything else.
    static bool parse(const std::string& token, uint64_t& handle);
    // The live component a token designates; null for a token that parse()
    // refuses or a handle that is not live. Owned as above.
    static QELComponent* resolve(const std::string& token);
    // The 16 upper-case hexadecimal digits of a handle.
    static std::string format(uint64_t handle);
    static size_t liveCount();
    // Every live component, in handle order (construction order).
    static std::vector<QELComponent*> liveComponents();
    // Numbering starts again at 1; refused (answers false) while components
    // are alive. For tests that compare descriptions of models built in turn.
    static bool restartNumbering();
};

#endif
