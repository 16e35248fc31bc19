#include "EMHManager.h"

#include <cstdio>
#include <cstdlib>

namespace {

struct ErrorState {
    std::vector<EMHManager::Entry> entries;
    std::size_t maxEntries = EMHManager::kDefaultMaxEntries;
    // The copy of each error outside memory; stderr, a file we opened, or null.
    FILE* output = nullptr;
    bool outputChosen = false;
};

// Never destroyed, for the same reason as the journal's state: errors may be
// reported during static destruction. Reachable, so not counted as a leak.
ErrorState& state() {
    static ErrorState* s = new ErrorState;
    return *s;
}

void closeOutput(ErrorState& s) {
    if (s.output && s.output != stderr)
        std::fclose(s.output);
    s.output = nullptr;
}

bool openOutput(ErrorState& s, const std::string& path) {
    closeOutput(s);
    s.outputChosen = true;
    if (path.empty())
        return true;
    if (path == "-") {
        s.output = stderr;
        return true;
    }
    s.output = std::fopen(path.c_str(), "a");
    return s.output != nullptr;
}

void chooseOutputFromEnvironment(ErrorState& s) {
    if (s.outputChosen)
        return;
    const char* path = std::getenv("QEL_ERRORS");
    if (!openOutput(s, path ? path : "")) {
        std::fprintf(stderr, "QEL_ERRORS: cannot open %s for appending\n", path);
    }
}

} // namespace

void EMHManager::writeMsg(const CATUnicodeString& function, long code,
                          const CATUnicodeString& detail) {
    ErrorState& s = state();
    chooseOutputFromEnvironment(s);
    Entry entry{function.ToLatin1(), code, detail.ToLatin1()};
    if (s.output) {
        std::string line =
            entry.function + ": " + std::to_string(code) + ": " + entry.detail + "\n";
        std::fwrite(line.data(), 1, line.size(), s.output);
        std::fflush(s.output);
    }
    s.entries.push_back(std::move(entry));
    if (s.entries.size() > s.maxEntries) {
        std::size_t drop = s.entries.size() - s.maxEntries / 2;
        s.entries.erase(s.entries.begin(), s.entries.begin() + static_cast<std::ptrdiff_t>(drop));
    }
}

const std::vector<EMHManager::Entry>& EMHManager::entries() { return state().entries; }

void EMHManager::clear() { state().entries.clear(); }

bool EMHManager::setOutputPath(const CATUnicodeString& path) {
    return openOutput(state(), path.ToLatin1());
}

void EMHManager::setMaxEntries(std::size_t maxEntries) {
    ErrorState& s = state();
    // Below 2 the drop-half rule would keep nothing.
    s.maxEntries = maxEntries == 0 ? kDefaultMaxEntries : (maxEntries < 2 ? 2 : maxEntries);
}

std::size_t EMHManager::maxEntries() { return state().maxEntries; }

void EMHManager::resetOutput() {
    closeOutput(state());
    state().outputChosen = false;
}
