// Feeds every file of the folders (or the files) named on the command line
// to the harness's entry point, in name order, so that any compiler can
// replay the corpus and every input that ever failed. Exits non-zero when a
// path cannot be read; a failing input aborts through the sanitizers. The
// reader harnesses compare every session they put back with the session as
// built (QEL_FUZZ_CHECK_RESTORES), so that replaying a folder in one process
// shows that no input depends on those before it.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace fs = std::filesystem;

int main(int argc, char** argv) {
    setenv("QEL_FUZZ_CHECK_RESTORES", "1", 0);
    std::vector<fs::path> inputs;
    for (int i = 1; i < argc; ++i) {
        const fs::path path(argv[i]);
        std::error_code error;
        if (fs::is_directory(path, error)) {
            for (const fs::directory_entry& entry : fs::directory_iterator(path, error))
                if (entry.is_regular_file() && entry.path().filename().string()[0] != '.')
                    inputs.push_back(entry.path());
        } else if (fs::is_regular_file(path, error)) {
            inputs.push_back(path);
        } else {
            std::fprintf(stderr, "%s: no such file or folder\n", argv[i]);
            return 2;
        }
    }
    std::sort(inputs.begin(), inputs.end());
    for (const fs::path& path : inputs) {
        std::ifstream in(path, std::ios::binary);
        const std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        if (!in.good() && !in.eof()) {
            std::fprintf(stderr, "%s: cannot read\n", path.c_str());
            return 2;
        }
        std::fprintf(stderr, "%s\n", path.c_str());
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
    }
    std::printf("%zu inputs replayed\n", inputs.size());
    return 0;
}
