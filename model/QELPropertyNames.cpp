#include "QELPropertyNames.h"

#include <unordered_map>

namespace {

// Nodes of an unordered_map keep their address when the table grows, so a
// key can be handed out as the shared copy.
using NameTable = std::unordered_map<CATUnicodeString, size_t, CATUnicodeStringHash>;

NameTable& table() {
    // Never destroyed: properties kept until the process ends release their
    // names after every ordinary static is gone.
    static auto* names = new NameTable();
    return *names;
}

} // namespace

const CATUnicodeString* QELPropertyNames::acquire(const CATUnicodeString& name) {
    auto it = table().try_emplace(name, 0).first;
    ++it->second;
    return &it->first;
}

void QELPropertyNames::release(const CATUnicodeString* name) {
    if (!name) return;
    NameTable& names = table();
    auto it = names.find(*name);
    if (it != names.end() && --it->second == 0) names.erase(it);
}

size_t QELPropertyNames::count() { return table().size(); }
