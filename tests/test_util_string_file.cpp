#include <gtest/gtest.h>

#include <cstdio>
#include <regex>
#include <set>
#include <string>
#include <unistd.h>
#include <vector>

#include "ScratchDir.h"
#include "UTILFile.h"
#include "UTILString.h"

namespace {

std::vector<std::string> piecesOf(const char* text, const char* separator) {
    CATListValCATUnicodeString pieces;
    pieces.Append("left over from an earlier call");
    int count = UTILString::split(text, separator, pieces);
    std::vector<std::string> out;
    for (int i = 1; i <= pieces.Size(); ++i)
        out.push_back(pieces[i].ConvertToChar());
    EXPECT_EQ(count, pieces.Size());
    return out;
}

// A temporary file holding `bytes`, opened for reading; removed on destruction.
class ScratchFile {
public:
    explicit ScratchFile(const std::string& bytes) {
        path_ = qeltest::scratchDir() + "qel_util_" + std::to_string(::getpid()) + "_" +
                std::to_string(counter_++);
        FILE* out = std::fopen(path_.c_str(), "wb");
        if (out) {
            std::fwrite(bytes.data(), 1, bytes.size(), out);
            std::fclose(out);
        }
        in_ = std::fopen(path_.c_str(), "rb");
    }
    ~ScratchFile() {
        if (in_)
            std::fclose(in_);
        std::remove(path_.c_str());
    }
    FILE* in() const { return in_; }
    const std::string& path() const { return path_; }

private:
    static int counter_;
    std::string path_;
    FILE* in_ = nullptr;
};
int ScratchFile::counter_ = 0;

std::vector<std::string> allLines(FILE* file) {
    std::vector<std::string> lines;
    std::string line = "stale";
    int status;
    while ((status = UTILFile::readLine(file, line)) == 1)
        lines.push_back(line);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(line, "");
    return lines;
}

class UuidTest : public ::testing::Test {
protected:
    void TearDown() override { UTILString::setUuidSeed(UTILString::kDefaultUuidSeed); }
};

} // namespace

TEST_F(UuidTest, HasTheVersion4FormAndNeverRepeats) {
    const std::regex form("^[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}$");
    std::set<std::string> seen;
    for (int i = 0; i < 10000; ++i) {
        std::string uuid = UTILString::genUuid().ConvertToChar();
        ASSERT_TRUE(std::regex_match(uuid, form)) << uuid;
        seen.insert(uuid);
    }
    EXPECT_EQ(seen.size(), 10000u);
}

TEST(UtilStringSplit, CutsAtEverySeparatorAndKeepsEmptyPieces) {
    using V = std::vector<std::string>;
    EXPECT_EQ(piecesOf("a/b/c", "/"), (V{"a", "b", "c"}));
    EXPECT_EQ(piecesOf("a//b", "/"), (V{"a", "", "b"}));
    EXPECT_EQ(piecesOf("/a/", "/"), (V{"", "a", ""}));
    EXPECT_EQ(piecesOf("/", "/"), (V{"", ""}));
    EXPECT_EQ(piecesOf("uid1+++inst1+++uid2", "+++"), (V{"uid1", "inst1", "uid2"}));
    EXPECT_EQ(piecesOf("a++b", "+++"), (V{"a++b"}));
    EXPECT_EQ(piecesOf("abc", "/"), (V{"abc"}));
    EXPECT_EQ(piecesOf("a/b", ""), (V{"a/b"}));
    EXPECT_EQ(piecesOf("", "/"), V{});
}

TEST(UtilStringSplit, CutsTextsBeyondLatin1OnCharacters) {
    // Both the euro sign and the separator read '?' in the one-byte form; only
    // the real separator may cut.
    CATUnicodeString text;
    text.BuildFromUTF8("a\xE2\x82\xAC"
                       "b?c");
    CATListValCATUnicodeString pieces;
    ASSERT_EQ(UTILString::split(text, "?", pieces), 2);
    EXPECT_EQ(pieces[1].ConvertToUTF8(), "a\xE2\x82\xAC"
                                         "b");
    EXPECT_EQ(pieces[2].ConvertToUTF8(), "c");
}

TEST(UtilFileSplitPath, CutsAtTheLastSeparatorOfEitherKind) {
    const struct {
        const char *text, *path, *name;
    } rows[] = {{"/data/wsp/Part1.CATPart", "/data/wsp", "Part1.CATPart"},
                {"C:\\work/sub\\a.txt", "C:\\work/sub", "a.txt"},
                {"dir/", "dir", ""},
                {"/root.txt", "", "root.txt"},
                {"plain.txt", "", "plain.txt"}};
    for (const auto& row : rows) {
        CATUnicodeString path("stale"), name("stale");
        EXPECT_EQ(UTILFile::splitPathAndFileName(row.text, path, name), 0) << row.text;
        EXPECT_EQ(path, CATUnicodeString(row.path)) << row.text;
        EXPECT_EQ(name, CATUnicodeString(row.name)) << row.text;
    }
    CATUnicodeString path("stale"), name("stale");
    EXPECT_EQ(UTILFile::splitPathAndFileName("", path, name), -1);
    EXPECT_TRUE(path.IsNull());
    EXPECT_TRUE(name.IsNull());

    // The input may be one of the outputs.
    CATUnicodeString text("dir/file.txt");
    UTILFile::splitPathAndFileName(text, path, text);
    EXPECT_EQ(path, CATUnicodeString("dir"));
    EXPECT_EQ(text, CATUnicodeString("file.txt"));
}

TEST(UtilFileExtension, TakesTheLastDotOfTheFileNameOnly) {
    EXPECT_EQ(UTILFile::getExtension("Part1.CATPart"), CATUnicodeString("CATPart"));
    EXPECT_EQ(UTILFile::getExtension("/a.b/archive.tar.gz"), CATUnicodeString("gz"));
    EXPECT_EQ(UTILFile::getExtension("/a.b/README"), CATUnicodeString(""));
    EXPECT_EQ(UTILFile::getExtension("c:\\x.y\\noext"), CATUnicodeString(""));
    EXPECT_EQ(UTILFile::getExtension("name."), CATUnicodeString(""));
    EXPECT_EQ(UTILFile::getExtension(""), CATUnicodeString(""));
}

TEST(UtilFileReadLine, RemovesEveryKindOfLineEndAndNothingElse) {
    std::string longLine(100000, 'v');
    longLine[54321] = '\r'; // a CR inside a line is data
    const struct {
        std::string bytes;
        std::vector<std::string> lines;
    } rows[] = {
        {"crlf\r\nlf\n\r\n\nlast\r", {"crlf", "lf", "", "", "last"}},
        {"first\nno newline", {"first", "no newline"}},
        {"", {}},
        {longLine + "\r\nnext\n", {longLine, "next"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.bytes.substr(0, 20));
        ScratchFile file(row.bytes);
        ASSERT_NE(file.in(), nullptr);
        EXPECT_EQ(allLines(file.in()), row.lines);
        // The end of the file stays the end.
        std::string line = "stale";
        EXPECT_EQ(UTILFile::readLine(file.in(), line), 0);
        EXPECT_EQ(line, "");
    }
}

TEST(UtilFileReadLine, KeepsEveryByteAsLatin1) {
    ScratchFile file(std::string("caf\xE9\0x\n", 7));
    CATUnicodeString line;
    ASSERT_EQ(UTILFile::readLine(file.in(), line), 1);
    EXPECT_EQ(line.ToLatin1(), std::string("caf\xE9\0x", 6));
    EXPECT_EQ(UTILFile::readLine(file.in(), line), 0);
    EXPECT_TRUE(line.IsNull());
}

TEST(UtilFileReadLine, ReportsANullOrUnreadableFile) {
    std::string line;
    EXPECT_EQ(UTILFile::readLine(nullptr, line), -1);
    CATUnicodeString text;
    EXPECT_EQ(UTILFile::readLine(nullptr, text), -1);

    ScratchFile file("content\n");
    FILE* writeOnly = std::fopen(file.path().c_str(), "ab");
    ASSERT_NE(writeOnly, nullptr);
    EXPECT_EQ(UTILFile::readLine(writeOnly, line), -1);
    std::fclose(writeOnly);
}

TEST(UtilFileDelete, DeletesAnExistingFileOnly) {
    std::string path;
    {
        ScratchFile file("x");
        path = file.path();
        EXPECT_EQ(UTILFile::deleteFile(path), 0);
        EXPECT_EQ(std::fopen(path.c_str(), "rb"), nullptr);
    }
    EXPECT_EQ(UTILFile::deleteFile(path), -1);
    EXPECT_EQ(UTILFile::deleteFile(""), -1);
}
