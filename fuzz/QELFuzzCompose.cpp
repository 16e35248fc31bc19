// qel_fuzz_compose [--reader] HEX: prints the session file that
// composeSession makes from the bytes HEX spells; with --reader, within the
// reader harnesses' limits, as they make their session from the recipe bytes
// of their header. fuzz/make-seeds.sh describes and answers
// it with qel to make the reader harnesses' seeds.
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "QELFuzzSessionComposer.h"

int main(int argc, char** argv) {
    const bool reader = argc == 3 && std::string(argv[1]) == "--reader";
    if (argc != 2 && !reader) {
        std::fprintf(stderr, "usage: qel_fuzz_compose [--reader] HEX\n");
        return 2;
    }
    std::vector<uint8_t> bytes;
    const std::string hex = argv[argc - 1];
    for (size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes.push_back(static_cast<uint8_t>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    qelfuzz::ByteSource source(bytes.data(), bytes.size());
    std::printf("%s\n", qelfuzz::composeSession(
                            source, true, reader ? qelfuzz::kReaderLimits : qelfuzz::kModelLimits)
                            .text.c_str());
    return 0;
}
