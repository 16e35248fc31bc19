#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "QELElementNames.h"
#include "QELFrameLine.h"
#include "QELLineReader.h"

namespace {

std::vector<std::string> readAll(const std::string& bytes, long* lastLine = nullptr) {
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() /
        ("qel-lines-" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
    std::ofstream(path, std::ios::binary) << bytes;
    QELLineReader reader;
    std::string error;
    EXPECT_TRUE(reader.open(path.string(), error)) << error;
    std::vector<std::string> lines;
    std::string_view line;
    while (reader.next(line)) lines.emplace_back(line);
    EXPECT_FALSE(reader.failed());
    EXPECT_EQ(reader.consumed(), static_cast<long long>(bytes.size()));
    if (lastLine) *lastLine = reader.lineNumber();
    std::filesystem::remove(path);
    return lines;
}

TEST(LineReaderTest, LineEndsAndTheLastLine) {
    EXPECT_EQ(readAll("a\r\nb\n\r\nc"), (std::vector<std::string>{"a", "b", "", "c"}));
    EXPECT_EQ(readAll("a\n"), (std::vector<std::string>{"a"}));
    EXPECT_TRUE(readAll("").empty());
    // A lone CR inside a line is content.
    EXPECT_EQ(readAll("a\rb\r\n"), (std::vector<std::string>{"a\rb"}));
}

TEST(LineReaderTest, LinesAcrossBlocksAreWhole) {
    // Lines that straddle the reader's 1 MiB blocks, one longer than a block.
    const std::string longLine(3 << 20, 'x');
    const std::string filler((1 << 20) - 3, 'y');
    long count = 0;
    const std::vector<std::string> lines = readAll(filler + "\r\n" + "ab\r\n" + longLine + "\r\nend", &count);
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0], filler);
    EXPECT_EQ(lines[1], "ab");
    EXPECT_EQ(lines[2], longLine);
    EXPECT_EQ(lines[3], "end");
    EXPECT_EQ(count, 4);
}

TEST(LineReaderTest, CarriageReturnSplitFromItsLineFeedByABlockEnd) {
    const std::string first((1 << 20) - 1, 'z'); // "\r" is the block's last byte
    const std::vector<std::string> lines = readAll(first + "\r\nnext\r\n");
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0], first);
    EXPECT_EQ(lines[1], "next");
}

TEST(LineReaderTest, MissingFileSaysWhy) {
    QELLineReader reader;
    std::string error;
    EXPECT_FALSE(reader.open("/nonexistent/qel/file.xml", error));
    EXPECT_NE(error.find("No such file"), std::string::npos) << error;
}

TEST(FrameLineTest, OnlyBareTagsAreTags) {
    EXPECT_EQ(qelClassifyLine("<Item_Info>").kind, QELLineKind::Open);
    EXPECT_EQ(qelClassifyLine("<Item_Info>").name, QELElement::Item_Info);
    EXPECT_EQ(qelClassifyLine("</DESCFILE>").kind, QELLineKind::Close);
    EXPECT_EQ(qelClassifyLine("</DESCFILE>").name, QELElement::DESCFILE);
    for (const char* value : {"", "<>", "</>", " <A>", "<A> ", "<A b>", "<A/>", "<A>x</A>", "a<b>", "<?xml ?>", "<-->",
                              "<1>"})
        EXPECT_EQ(qelClassifyLine(value).kind, QELLineKind::Value) << value;
}

} // namespace
