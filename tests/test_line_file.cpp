// The line file (the one line reader of the library and of qel) and the
// node scanning built on it.

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <string_view>
#include <vector>

#include "QELElementNames.h"
#include "ScratchDir.h"
#include "CV5CAAToolsDesc.h"
#include "ReaderAnswerSupport.h"
#include "UTILLineFile.h"

namespace {

struct Line {
    std::string text;
    long long next; // offset of the line that follows
};

std::vector<Line> readAll(UTILLineFile& file) {
    std::vector<Line> lines;
    std::string line;
    while (file.readLine(line)) lines.push_back({line, file.tell()});
    return lines;
}

UTILLineFile& openText(UTILLineFile& file, const std::string& text) {
    file.close();
    EXPECT_EQ(0, file.open(reader_test::writeAnswer("line_file.txt", text).c_str()));
    return file;
}

TEST(UTILLineFile, LineEndsAndPositions) {
    // The block is 64 KiB, or the file's size when it is smaller.
    const size_t block = 1 << 16;
    const std::string longLine(200000, 'x');
    const std::string veryLongLine(3 << 20, 'v');
    const std::string crAtBlockEnd(block - 1, 'z');
    const std::string filler(block - 3, 'y');
    struct Case {
        const char* name;
        std::string bytes;
        std::vector<Line> expected;
    } cases[] = {
        {"lf", "a\nbc\n", {{"a", 2}, {"bc", 5}}},
        {"crlf", "a\r\nbc\r\n", {{"a", 3}, {"bc", 7}}},
        {"no final end", "a\r\nbc", {{"a", 3}, {"bc", 5}}},
        {"final cr only", "a\nbc\r", {{"a", 2}, {"bc", 5}}},
        {"empty lines", "\n\r\n\n", {{"", 1}, {"", 3}, {"", 4}}},
        {"empty file", "", {}},
        {"bytes above 0x7F and NUL", std::string("\xE9t\xE9\0\xFF\n", 6), {{std::string("\xE9t\xE9\0\xFF", 5), 6}}},
        {"longer than the block", "h\n" + longLine + "\r\nt", {{"h", 2}, {longLine, 200004}, {"t", 200005}}},
        {"many blocks long", veryLongLine + "\n", {{veryLongLine, (3 << 20) + 1}}},
        {"line across two blocks",
         filler + "\r\nab\r\nend",
         {{filler, static_cast<long long>(block - 1)},
          {"ab", static_cast<long long>(block + 3)},
          {"end", static_cast<long long>(block + 6)}}},
        {"cr last byte of a block",
         crAtBlockEnd + "\r\nnext\r\n",
         {{crAtBlockEnd, static_cast<long long>(block + 1)}, {"next", static_cast<long long>(block + 7)}}},
        {"lone cr inside a line", "a\rb\r\n", {{"a\rb", 5}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        UTILLineFile file;
        std::vector<Line> lines = readAll(openText(file, c.bytes));
        ASSERT_EQ(c.expected.size(), lines.size());
        for (size_t i = 0; i < lines.size(); ++i) {
            EXPECT_EQ(c.expected[i].text, lines[i].text) << i;
            EXPECT_EQ(c.expected[i].next, lines[i].next) << i;
        }
        std::string after = "untouched";
        EXPECT_FALSE(file.readLine(after));
        EXPECT_TRUE(after.empty());

        // The same lines as views into the block, numbered from 1.
        UTILLineFile viewed;
        ASSERT_EQ(0, viewed.open((qeltest::scratchDir() + "line_file.txt").c_str()));
        std::string_view view;
        for (size_t i = 0; i < c.expected.size(); ++i) {
            ASSERT_TRUE(viewed.readLine(view)) << i;
            EXPECT_EQ(c.expected[i].text, std::string(view)) << i;
            EXPECT_EQ(static_cast<long>(i + 1), viewed.lineNumber()) << i;
        }
        EXPECT_FALSE(viewed.readLine(view));
        EXPECT_TRUE(view.empty());
        EXPECT_FALSE(viewed.failed());
    }
}

TEST(UTILLineFile, LineNumbersHoldWhileTheFileIsReadForwardFromItsStart) {
    UTILLineFile file;
    std::string line;
    openText(file, "a\nb\nc\n").readLine(line);
    file.readLine(line);
    EXPECT_EQ(2, file.lineNumber());
    ASSERT_TRUE(file.seek(file.tell()));
    EXPECT_EQ(2, file.lineNumber()) << "staying where it stands loses nothing";
    ASSERT_TRUE(file.seek(2));
    file.readLine(line);
    EXPECT_EQ("b", line);
    EXPECT_EQ(-1, file.lineNumber()) << "after a jump the number is not known";
    ASSERT_TRUE(file.seek(0));
    file.readLine(line);
    EXPECT_EQ(1, file.lineNumber());
}

TEST(UTILLineFile, FailuresSayWhy) {
    UTILLineFile file;
    std::string error;
    EXPECT_FALSE(file.open(qeltest::scratchDir() + "no_such_file.xml", error));
    EXPECT_NE(std::string::npos, error.find("No such file")) << error;

    // A folder opens as a stream but cannot be read: that is a failure, not
    // an empty file.
    ASSERT_TRUE(file.open(qeltest::scratchDir(), error)) << error;
    std::string_view line;
    EXPECT_FALSE(file.readLine(line));
    EXPECT_TRUE(file.failed());
    EXPECT_EQ(EISDIR, file.error());
}

TEST(UTILLineFile, PositionsOutsideTheFileAreRefused) {
    UTILLineFile file;
    std::string line;
    EXPECT_FALSE(file.seek(0)) << "closed";
    EXPECT_FALSE(file.readLine(line));
    EXPECT_EQ(-1, file.open((qeltest::scratchDir() + "no_such_answer.txt").c_str()));
    openText(file, "ab\ncd\n");
    EXPECT_EQ(0, file.open("/any/other/path")) << "an open file stays open";
    EXPECT_FALSE(file.seek(-1));
    EXPECT_FALSE(file.seek(7));
    ASSERT_TRUE(file.seek(3));
    ASSERT_TRUE(file.readLine(line));
    EXPECT_EQ("cd", line);
}

TEST(CV5CAAToolsDesc, ScanningStopsAtTheEndOfTheFile) {
    UTILLineFile file;
    openText(file, "<A>\n<A>\nx\n</A>\n</A>\n<NBElements>\n12\n</NBElements>\n<B>\n");
    long long pos = 0;
    EXPECT_TRUE(CV5CAAToolsDesc::searchClosingNode(file, "A", 0, pos));
    EXPECT_EQ(20, pos) << "the inner element of the same name closes first";
    EXPECT_TRUE(CV5CAAToolsDesc::searchClosingNode(file, "A", 4, pos));
    EXPECT_EQ(15, pos);
    EXPECT_FALSE(CV5CAAToolsDesc::searchClosingNode(file, "B", 50, pos));
    EXPECT_EQ(file.size(), pos);

    std::string value = "kept";
    EXPECT_TRUE(CV5CAAToolsDesc::getNodeValue(file, 4, QELElement::NBElements, pos, value));
    EXPECT_EQ("12", value);
    EXPECT_EQ(50, pos);
    value = "kept";
    EXPECT_FALSE(CV5CAAToolsDesc::getNodeValue(file, 4, "Missing", pos, value));
    EXPECT_FALSE(CV5CAAToolsDesc::getNodeValue(file, 50, "B", pos, value)) << "no value line";
    EXPECT_EQ("kept", value);

    openText(file, "<Open>\n</Close>\nvalue\n<>\n</>\n<Last>");
    for (const char* expected : {"Open", "Close", "", "", "", "Last", ""}) {
        std::string name;
        const long long before = file.tell();
        pos = -7;
        const bool tag = CV5CAAToolsDesc::getNodeName(file, 0, pos, name);
        EXPECT_EQ(*expected != 0, tag) << before;
        EXPECT_EQ(tag ? expected : "", name);
        EXPECT_EQ(tag ? file.tell() : -7, pos);
    }
}

TEST(CV5CAAToolsDesc, DocumentTypeFromEntryElement) {
    struct Case {
        const char* name;
        EnumDocumentType type;
    } cases[] = {{"CATProduct", EnumDocumentType_Product},      {"CATPart", EnumDocumentType_Part},
                 {"CATDrawing", EnumDocumentType_Drawing},      {"CATProcess", EnumDocumentType_Process},
                 {"CATAnalysis", EnumDocumentType_Analysis},    {"CATModel", EnumDocumentType_Model},
                 {"DesignTable", EnumDocumentType_DesignTable}, {"catalog", EnumDocumentType_Catalog},
                 {"catpart", EnumDocumentType_Unset},           {"Item_Info", EnumDocumentType_Unset}};
    for (const Case& c : cases) EXPECT_EQ(c.type, CV5CAAToolsDesc::getDocumentTypeFromBalise(c.name)) << c.name;
}

} // namespace
