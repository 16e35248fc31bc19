// The session-file loader on arbitrary bytes: the JSON reader and the builder
// that turns a session file into a model. Whatever the text, the load either
// builds a model or refuses with a message, and frees everything it made.
// Limits: kMaxText bytes, kMaxNesting levels of arrays and objects (the
// loader's own limit on assembly depth is far deeper than a fuzzer's input
// can reach within them).
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "QELFuzzSupport.h"
#include "QELSessionFile.h"

namespace {

constexpr size_t kMaxText = 64 * 1024;
constexpr size_t kMaxNesting = 64;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > kMaxText || qelfuzz::jsonNesting(data, size) > kMaxNesting)
        return 0;
    QELSessionFileError error;
    if (!qelLoadSessionText(std::string(reinterpret_cast<const char*>(data), size), error) &&
        error.message.empty()) {
        std::fprintf(stderr, "qel fuzz: the loader refused the text without saying why\n");
        std::abort();
    }
    qelfuzz::resetSession();
    return 0;
}
