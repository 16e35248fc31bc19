#include "QELFuzzSupport.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>

#include "QELHandleTable.h"
#include "SessionReset.h"

namespace qelfuzz {
namespace {

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
    qeltest::resetSession();
    if (!QELHandleTable::restartNumbering()) {
        std::fprintf(stderr, "qel fuzz: %zu components outlive the model\n",
                     QELHandleTable::liveCount());
        std::abort();
    }
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
