// qel check on arbitrary bytes: the frame check of a description or an
// answer. Whatever the file, the check reads it to the end, counts every
// problem it keeps and keeps them in line order.
// Limits: kMaxText bytes, tags kMaxDepth deep.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "QELFrameCheck.h"
#include "QELFuzzSupport.h"

namespace {

constexpr size_t kMaxText = 256 * 1024;
constexpr size_t kMaxDepth = 32;

void require(bool holds, const char* what) {
    if (holds)
        return;
    std::fprintf(stderr, "qel fuzz: the frame check broke its own report: %s\n", what);
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > kMaxText || qelfuzz::frameDepth(data, size) > kMaxDepth)
        return 0;
    const std::string& path = qelfuzz::writeInput(data, size);
    QELFrameReport report;
    std::string error;
    require(qelCheckFrame(path, report, error), "a written file could not be read");
    require(report.problems.size() <= report.problemCount, "more problems kept than counted");
    std::array<size_t, kQELFrameProblemKinds> kept{};
    for (const QELFrameProblem& problem : report.problems) ++kept[static_cast<size_t>(problem.kind)];
    for (size_t kind = 0; kind < kQELFrameProblemKinds; ++kind) {
        require(kept[kind] <= QELFrameReport::kListedPerKind, "more problems of one kind kept than the limit");
        require(kept[kind] <= report.countByKind[kind], "more problems of one kind kept than counted");
    }
    require(report.lines >= 0 && report.entries >= 0, "a negative count");
    long previous = 0;
    for (const QELFrameProblem& problem : report.problems) {
        require(problem.line >= previous && problem.line <= report.lines + 1,
                "a problem out of line order");
        require(!problem.message.empty(), "a problem without a message");
        previous = problem.line;
    }
    return 0;
}
