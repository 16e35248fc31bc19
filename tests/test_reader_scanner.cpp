// The answer reader's tag scanner: sibling search, value cutting, pointers
// and block counts.

#include <gtest/gtest.h>

#include "QELElementNames.h"
#include "QELStatus.h"

#include <string>
#include <vector>

#include "QELWorkSpace.h"
#include "QELAnswerEntry.h"
#include "QELXMLToDMScannerAccess.h"
#include "ReaderAnswerSupport.h"

using Access = QELXMLToDMScannerAccess;

namespace {

// Line numbers in the tests refer to this text.
const char* const kTree = "<DESCFILE>\n<Parent>\n"     // 0-1
                          "<A>\n<N>\ndeep\n</N>\n</A>\n" // 2-6
                          "<Three>\nonly\n</Three>\n"    // 7-9
                          "<Five>\na\nb\nc\n</Five>\n"   // 10-14
                          "<List>\nx\ny\n</List>\n"      // 15-18
                          "<Empty>\n</Empty>\n"          // 19-20
                          "</Parent>\n"                  // 21
                          "<N>\noutside\n</N>\n"         // 22-24
                          "<NBElements>\n4\n</NBElements>\n"; // 25-27

class ReaderScanner : public reader_test::ReaderTest, public ::testing::WithParamInterface<bool> {
protected:
    void SetUp() override {
        reader.reset(new QELXMLToDM(reader_test::writeAnswer("scanner.xml", kTree, GetParam()).c_str()));
        ASSERT_EQ(0, Access::openFile(*reader));
        for (const char* c = kTree; *c; ++c)
            if (*c == '\n') offsets.push_back(static_cast<long long>(c - kTree) + 1);
    }
    // The offset of line n as written: CR LF adds a byte to every line.
    long long line(int n) const { return offsets[static_cast<size_t>(n)] + (GetParam() ? n : 0); }

    std::unique_ptr<QELXMLToDM> reader;
    std::vector<long long> offsets{0};
};

INSTANTIATE_TEST_SUITE_P(LineEnds, ReaderScanner, ::testing::Values(false, true),
                         [](const ::testing::TestParamInfo<bool>& info) { return info.param ? "CRLF" : "LF"; });

TEST_P(ReaderScanner, SiblingSearchComparesDirectChildrenOnly) {
    struct Case {
        const char* name;
        int from; // -1: where the file stands (line 7)
        bool found;
        int pos;
    } cases[] = {
        {"A", 2, true, 3},
        {"Three", 2, true, 8},
        {"Five", -1, true, 11},
        // Inside a skipped sibling, or after the parent's end: not a child.
        {"N", 2, false, 21},
        {"Three", 21, false, 21},
        // A value line where a tag should stand ends the search too.
        {"Three", 4, false, 4},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.name) + " from line " + std::to_string(c.from));
        if (c.from < 0) {
            Access::moveTo(*reader, line(7));
            // Opening again keeps the open file, and so where it stands.
            ASSERT_EQ(0, Access::openFile(*reader));
        }
        long long pos = -1;
        EXPECT_EQ(c.found, Access::getNodePosition(*reader, c.name, c.from < 0 ? 0 : line(c.from), pos));
        EXPECT_EQ(line(c.pos), pos);
    }
    EXPECT_TRUE(JNLManager::entries().empty()) << "a sibling that is not there is no error";
}

TEST_P(ReaderScanner, ValuesAndListsByName) {
    struct Case {
        const char* name;
        bool found;
        const char* value;
        std::vector<std::string> list;
        int pos;
    } cases[] = {
        {"Three", true, "only", {"only"}, 10},
        // The blank after each continuation line belongs to the value.
        {"Five", true, "a\nb \nc ", {"a", "b", "c"}, 15},
        {"Missing", false, "", {}, 21},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        std::string value = "stale";
        long long pos = -1;
        EXPECT_EQ(c.found, Access::getBaliseValueByName(*reader, line(2), c.name, pos, value));
        EXPECT_EQ(c.value, value);
        EXPECT_EQ(line(c.pos), pos);
        auto list = Access::getBaliseValueListByName(*reader, line(2), c.name, pos);
        ASSERT_EQ(c.list.size(), static_cast<size_t>(list->size()));
        for (int i = 0; i < list->size(); ++i) EXPECT_EQ(c.list[static_cast<size_t>(i)], (*list)[i].ToLatin1());
        EXPECT_EQ(line(c.pos), pos);
    }
    long long pos = 0;
    EXPECT_EQ(0, Access::getBaliseValueListByName(*reader, line(19), "Empty", pos)->size());
    EXPECT_EQ(line(21), pos);
    // Without a value line the closing line becomes the value and the next
    // "</Empty>" is looked for: the end of the file stops that.
    std::string value;
    EXPECT_FALSE(Access::getBaliseValueByName(*reader, line(19), "Empty", pos, value));
    EXPECT_EQ(0u, value.find("</Empty>\n</Parent> \n<N> \n"));
    EXPECT_EQ(line(28), pos);
    EXPECT_TRUE(JNLManager::contains("Unexpected end of file"));
}

TEST_P(ReaderScanner, TagValueByNameScansAnyDepthUpToTheStopLine) {
    struct Case {
        const char* name;
        const char* stop;
        long result;
        const char* value;
        int pos; // -1: left as it was
    } cases[] = {
        {"N", "</Parent>", 0, "deep", 6},
        {"Five", "</Parent>", 0, "abc", 15},
        // The stop line inside the value ends it: success, partial value.
        {"Five", "b", 0, "a", -1},
        {"List", "</Three>", QEL_E_FAIL, "", -1},
        {"Missing", "</Nowhere>", QEL_E_FAIL, "", -1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.name) + " / " + c.stop);
        JNLManager::clear();
        long long pos = -5;
        CATUnicodeString value = "stale";
        EXPECT_EQ(c.result, Access::getTagValueByName(*reader, line(2), c.stop, c.name, pos, value));
        EXPECT_EQ(c.value, value.ToLatin1());
        EXPECT_EQ(c.pos < 0 ? -5 : line(c.pos), pos);
        std::vector<std::string> journal;
        if (c.result == QEL_E_FAIL)
            journal = {"BEGIN QELXMLToDM::getTagValueByName", "<" + std::string(c.name) + "> tag was not found",
                       "END QELXMLToDM::getTagValueByName (-1)"};
        EXPECT_EQ(journal, JNLManager::entries());
    }
}

TEST_P(ReaderScanner, BlockCountIsReadAmongTheBlocksOwnChildren) {
    QELAnswerEntry map;
    map.add("Parent", std::to_string(line(2)));
    map.add("Empty", std::to_string(line(20)));
    map.add("Junk", "not a position");
    long long pos = -1;
    // The count at the end of the file is no child of Parent.
    EXPECT_EQ(-1, Access::readBlockCount(*reader, &map, "Parent", pos));
    for (const char* block : {"Empty", "Junk", "Absent"}) EXPECT_EQ(-1, Access::readBlockCount(*reader, &map, block, pos));
    EXPECT_EQ(-1, Access::readBlockCount(*reader, nullptr, "Parent", pos));
    EXPECT_EQ(-1, pos);
}

TEST(ReaderBlockCount, TwoReadsFromTheStoredPositionAgree) {
    const std::string text = "<Sheets>\n<Active_Sheet>\nS1\n</Active_Sheet>\n" + reader_test::count(3) + "</Sheets>\n";
    QELXMLToDM reader(reader_test::writeAnswer("block_count.xml", text).c_str());
    ASSERT_EQ(0, Access::openFile(reader));
    QELAnswerEntry map;
    map.add(QELElement::Sheets, "9");
    for (int read = 0; read < 2; ++read) {
        long long pos = -1;
        EXPECT_EQ(3, Access::readBlockCount(reader, &map, QELElement::Sheets, pos));
        EXPECT_EQ(static_cast<long long>(text.size() - 10), pos);
    }
}

TEST(ReaderPointers, OnlyLiveHandlesResolve) {
    QELWorkSpace live;
    std::string stale;
    {
        QELWorkSpace gone;
        stale = reader_test::pointerOf(&gone);
    }
    const std::string handle = reader_test::pointerOf(&live);
    struct Case {
        const char* name;
        const char* token; // null: no token at all
        QELComponent* expected;
        bool journalled;
    } cases[] = {
        {"no token", nullptr, nullptr, false},    {"empty", "", nullptr, false},
        {"live", handle.c_str(), &live, false},   {"malformed", "XYZ", nullptr, true},
        {"too short", "12345", nullptr, true},    {"unknown", "7FFFFFFFFFFFFFFF", nullptr, true},
        {"stale", stale.c_str(), nullptr, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        JNLManager::clear();
        const CATUnicodeString token(c.token ? c.token : "");
        EXPECT_EQ(c.expected, Access::resolvePointer(c.token ? &token : nullptr));
        const std::vector<std::string> journal{"POINTER_ADDRESS [" + token.ToLatin1() + "] designates no component"};
        EXPECT_EQ(c.journalled ? journal : std::vector<std::string>(), JNLManager::entries());
    }
    JNLManager::clear();
}

} // namespace
