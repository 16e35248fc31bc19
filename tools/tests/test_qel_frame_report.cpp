// What check and apply list of a broken frame: a bounded listing however
// broken the file, every kind of fault in it shown, and its bytes escaped.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "QELEscape.h"
#include "QELFrameCheck.h"
#include "QELFrameReport.h"
#include "ScratchDir.h"

namespace {

QELFrameReport checked(const std::string& bytes) {
    const std::string path = qeltest::scratchDir() + "frame-report.xml";
    std::ofstream(path, std::ios::binary) << bytes;
    QELFrameReport report;
    std::string error;
    EXPECT_TRUE(qelCheckFrame(path, report, error)) << error;
    std::remove(path.c_str());
    return report;
}

size_t countOf(const QELFrameReport& report, QELFrameProblemKind kind) {
    return report.countByKind[static_cast<size_t>(kind)];
}

TEST(FrameReportTest, TwentyOfAKindAreListedAndTheRestCounted) {
    std::string bytes = "<?xml version=\"1.0\" ?>\r\n<DESCFILE>\r\n<NBElements>\r\n0\r\n</NBElements>\r\n";
    for (int i = 0; i < 1234; ++i) bytes += "<Mask/>\r\n";
    bytes += "<!-- one -->\r\n</DESCFILE>\r\n";
    const QELFrameReport report = checked(bytes);

    EXPECT_EQ(report.problemCount, 1235u);
    EXPECT_EQ(countOf(report, QELFrameProblemKind::EmptyElement), 1234u);
    EXPECT_EQ(countOf(report, QELFrameProblemKind::Comment), 1u);
    const std::vector<std::string> lines = qelFrameReportLines("f.xml", report);
    ASSERT_EQ(lines.size(), 22u);
    EXPECT_EQ(lines.front(), "f.xml:6: an empty-element tag \"<Mask/>\": the writer always writes a value line");
    EXPECT_EQ(lines[19].substr(0, 9), "f.xml:25:");
    EXPECT_EQ(lines[20], "f.xml:1240: a comment: the reader takes it as a tag");
    EXPECT_EQ(lines[21], "f.xml: 1,214 further problems of the kind \"an empty-element tag\" not listed");
}

TEST(EscapeTest, ControlAndNonAsciiBytesBecomeHex) {
    const std::pair<std::string, std::string> cases[] = {
        {"plain text, <tags> & \\ too", "plain text, <tags> & \\ too"},
        {"\x1b[31mred\x1b[0m", "\\x1b[31mred\\x1b[0m"},
        {"line\nbreak\ttab\r\x7f", "line\\x0abreak\\x09tab\\x0d\\x7f"},
        {"caf\xc3\xa9 P\xe9", "caf\\xc3\\xa9 P\\xe9"},
        {std::string("nul\0byte", 8), "nul\\x00byte"},
    };
    for (const auto& [text, shown] : cases) EXPECT_EQ(qelEscape(text), shown);
}

} // namespace
