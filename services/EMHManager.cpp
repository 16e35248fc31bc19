#include "EMHManager.h"

#include <string>

#include "UTILSink.h"

namespace {

// Never destroyed, for the same reason as the journal's sink: errors may be
// reported during static destruction. Reachable, so not counted as a leak.
UTILSink<EMHManager::Entry>& sink() {
    static auto* s = new UTILSink<EMHManager::Entry>("QEL_ERRORS", EMHManager::kDefaultMaxEntries);
    return *s;
}

} // namespace

void EMHManager::writeMsg(const CATUnicodeString& function, long code,
                          const CATUnicodeString& detail) {
    sink().record(Entry{function.ToLatin1(), code, detail.ToLatin1()}, [](const Entry& entry) {
        return entry.function + ": " + std::to_string(entry.code) + ": " + entry.detail;
    });
}

const std::vector<EMHManager::Entry>& EMHManager::entries() { return sink().entries(); }

void EMHManager::clear() { sink().clear(); }

bool EMHManager::setOutputPath(const CATUnicodeString& path) { return sink().setOutputPath(path.ToLatin1()); }

void EMHManager::setMaxEntries(std::size_t maxEntries) { sink().setMaxEntries(maxEntries); }

std::size_t EMHManager::maxEntries() { return sink().maxEntries(); }

void EMHManager::resetOutput() { sink().resetOutput(); }
