#include "QELFuzzSupport.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <vector>

#include "QELHandleTable.h"
#include "SessionReset.h"
#include "TYPSharedText.h"

// The inline 8-bit counters of the coverage hooks, one per edge, that
// libFuzzer reads after every input; absent (null) without the hooks.
extern "C" {
extern uint8_t __start___sancov_cntrs __attribute__((weak));
extern uint8_t __stop___sancov_cntrs __attribute__((weak));
}

namespace qelfuzz {
namespace {

uint8_t* countersBegin() { return &__start___sancov_cntrs; }
uint8_t* countersEnd() { return &__stop___sancov_cntrs; }
bool haveCounters() {
    return countersBegin() && reinterpret_cast<uintptr_t>(countersEnd()) > reinterpret_cast<uintptr_t>(countersBegin());
}

// The counters as the outermost HiddenCoverage found them; the inner ones
// (a reset within a rebuild) leave them to it.
std::vector<uint8_t>& savedCounters() {
    static std::vector<uint8_t> saved;
    return saved;
}
int& hiddenDepth() {
    static int depth = 0;
    return depth;
}

// Removes the file when the process ends normally.
struct ProcessFile {
    std::string path;
    explicit ProcessFile(const std::string& role) {
        const char* dir = std::getenv("TMPDIR");
        path = std::string(dir && *dir ? dir : "/tmp") + "/qel_fuzz_" + role + "_" +
               std::to_string(getpid()) + ".xml";
    }
    ~ProcessFile() { std::remove(path.c_str()); }
};

} // namespace

const std::string& writeInput(const uint8_t* data, size_t size) {
    const std::string& path = scratchFile("input");
    FILE* out = std::fopen(path.c_str(), "wb");
    if (!out || (size && std::fwrite(data, 1, size, out) != size) || std::fclose(out) != 0) {
        std::fprintf(stderr, "qel fuzz: cannot write %s\n", path.c_str());
        std::abort();
    }
    return path;
}

const std::string& scratchFile(const char* role) {
    static std::map<std::string, ProcessFile> files;
    return files.try_emplace(role, role).first->second.path;
}

void resetSession() {
    HiddenCoverage hidden;
    qeltest::resetSession();
    // The names of the freed model stay in the shared-text table until it
    // next grows; freed now, an input that builds and frees a model frees
    // all it allocated, so libFuzzer does not take it for a leak and scan
    // the heap after it (the forms' names are new every time).
    TYPSharedText::sweep();
    if (!QELHandleTable::restartNumbering()) {
        std::fprintf(stderr, "qel fuzz: %zu components outlive the model\n",
                     QELHandleTable::liveCount());
        std::abort();
    }
}

HiddenCoverage::HiddenCoverage() {
    if (hiddenDepth()++ == 0 && haveCounters())
        savedCounters().assign(countersBegin(), countersEnd());
}

HiddenCoverage::~HiddenCoverage() {
    if (--hiddenDepth() == 0 && haveCounters())
        std::copy(savedCounters().begin(), savedCounters().end(), countersBegin());
}

size_t frameDepth(const uint8_t* data, size_t size) {
    size_t depth = 0, deepest = 0;
    bool lineStart = true;
    for (size_t i = 0; i < size; ++i) {
        if (lineStart && data[i] == '<' && i + 1 < size && data[i + 1] != '?') {
            if (data[i + 1] == '/')
                depth -= depth > 0;
            else
                deepest = std::max(deepest, ++depth);
        }
        lineStart = data[i] == '\n';
    }
    return deepest;
}

size_t jsonNesting(const uint8_t* data, size_t size) {
    size_t depth = 0, deepest = 0;
    bool inString = false;
    for (size_t i = 0; i < size; ++i) {
        const uint8_t c = data[i];
        if (inString) {
            if (c == '\\')
                ++i;
            else if (c == '"')
                inString = false;
        } else if (c == '"') {
            inString = true;
        } else if (c == '[' || c == '{') {
            deepest = std::max(deepest, ++depth);
        } else if ((c == ']' || c == '}') && depth > 0) {
            --depth;
        }
    }
    return deepest;
}

} // namespace qelfuzz
