#include <gtest/gtest.h>

#include "CATListValCATUnicodeString.h"
#include "CATUnicodeString.h"

TEST(CATUnicodeString, Latin1RoundTripsEveryByte) {
    std::string all;
    for (int b = 1; b < 256; ++b) all += static_cast<char>(b);
    CATUnicodeString s(all);
    EXPECT_EQ(s.GetLengthInChar(), 255);
    EXPECT_EQ(std::string(s.ConvertToChar()), all);
    CATUnicodeString back;
    back.BuildFromUTF8(s.ConvertToUTF8());
    EXPECT_EQ(back, s);
}

TEST(CATUnicodeString, CodePointsAboveLatin1CountAsOneCharacterAndConvertToQuestionMark) {
    CATUnicodeString s;
    s.BuildFromUTF8("a\xE2\x82\xAC" "b\xC3\xA9"); // a, euro sign, b, e acute
    EXPECT_EQ(s.GetLengthInChar(), 4);
    EXPECT_STREQ(s.ConvertToChar(), "a?b\xE9");
    EXPECT_EQ(s.ConvertToUTF8(), "a\xE2\x82\xAC" "b\xC3\xA9");
    EXPECT_EQ(s.SearchSubString("b"), 2);
    EXPECT_EQ(s.SubString(1, 2).ConvertToUTF8(), "\xE2\x82\xAC" "b");
    // Same Latin-1 form, different text.
    EXPECT_NE(s, CATUnicodeString("a?b\xE9"));
    EXPECT_EQ(CATUnicodeString("a?b\xE9").Compare(s), 0);

    // Assigning ISO-8859-1 text drops the wide form, whatever the text.
    const std::string text("a?b\xE9");
    s = text;
    EXPECT_FALSE(s.IsWide());
    EXPECT_EQ(s, CATUnicodeString("a?b\xE9"));
    s.BuildFromUTF8("\xE2\x82\xAC");
    s = std::string("x\0y", 3); // every byte kept, the zero included
    EXPECT_FALSE(s.IsWide());
    EXPECT_EQ(s.GetLengthInByte(), 3);

    // Plain ASCII read as UTF-8 replaces a wide text entirely, zeros included.
    s.BuildFromUTF8("\xE2\x82\xAC");
    s.BuildFromUTF8(std::string("ab\0c", 4));
    EXPECT_FALSE(s.IsWide());
    EXPECT_EQ(s.ToLatin1(), std::string("ab\0c", 4));
    EXPECT_EQ(s.GetLengthInChar(), 4);
}

TEST(CATUnicodeString, CompareAnswersDifferentCaseInsensitiveOrIdentical) {
    EXPECT_EQ(CATUnicodeString("Part").Compare("Part"), 2);
    EXPECT_EQ(CATUnicodeString("Part").Compare("pART"), 1);
    EXPECT_EQ(CATUnicodeString("\xC9t\xE9").Compare("\xE9T\xC9"), 1);
    EXPECT_EQ(CATUnicodeString("Part").Compare("Parts"), 0);
    EXPECT_EQ(CATUnicodeString("").Compare(""), 2);
}

TEST(CATUnicodeString, SearchForwardAndBackward) {
    CATUnicodeString s("a.b.CATPart");
    EXPECT_EQ(s.SearchSubString("."), 1);
    EXPECT_EQ(s.SearchSubString(".", 2), 3);
    EXPECT_EQ(s.SearchSubString(".", 0, CATUnicodeString::CATSearchModeBackward), 3);
    EXPECT_EQ(s.SearchSubString("x"), -1);
    EXPECT_EQ(s.SearchSubString(".", 99), -1);
    EXPECT_EQ(CATUnicodeString("abc").SearchSubString(""), 0);
}

TEST(CATUnicodeString, SubStringReplaceResizeAndCase) {
    CATUnicodeString s("Hello World");
    EXPECT_EQ(s.SubString(6, 5), CATUnicodeString("World"));
    EXPECT_EQ(s.SubString(6, 50), CATUnicodeString("World"));
    EXPECT_EQ(s.SubString(50, 2), CATUnicodeString(""));
    EXPECT_EQ(s.SubString(-1, 2), CATUnicodeString(""));

    CATUnicodeString path("a\\b\\c");
    EXPECT_EQ(path.ReplaceAll("\\", "/"), 2);
    EXPECT_EQ(path, CATUnicodeString("a/b/c"));
    EXPECT_EQ(path.ReplaceAll("", "x"), 0);

    CATUnicodeString pad("ab");
    pad.Resize(5);
    EXPECT_EQ(pad, CATUnicodeString("ab   "));
    pad.Resize(1);
    EXPECT_EQ(pad, CATUnicodeString("a"));
    CATUnicodeString left("7");
    left.Resize(3, CATUnicodeChar('0'), 0);
    EXPECT_EQ(left, CATUnicodeString("007"));

    CATUnicodeString mixed("Ab\xC9\xFF");
    mixed.ToLower();
    EXPECT_EQ(mixed, CATUnicodeString("ab\xE9\xFF"));
    mixed.ToUpper();
    EXPECT_EQ(mixed, CATUnicodeString("AB\xC9\xFF"));
}

TEST(CATUnicodeString, NumbersAndOperators) {
    CATUnicodeString n;
    n.BuildFromNum(-42);
    EXPECT_EQ(n, CATUnicodeString("-42"));
    int v = 0;
    EXPECT_EQ(CATUnicodeString("01x").ConvertToNum(&v), 0);
    EXPECT_EQ(v, 1);
    EXPECT_EQ(CATUnicodeString("word").ConvertToNum(&v), -1);
    EXPECT_EQ(CATUnicodeString("a") + "b" + CATUnicodeString("c"), CATUnicodeString("abc"));
    EXPECT_TRUE(CATUnicodeString("a") < CATUnicodeString("b"));
    EXPECT_TRUE(CATUnicodeString("z") < CATUnicodeString("\xE9")); // by code point, not signed char
}

TEST(CATUnicodeString, MalformedUTF8BecomesReplacementCharacters) {
    CATUnicodeString s;
    s.BuildFromUTF8("a\xC3", 2); // truncated sequence
    EXPECT_EQ(s.GetLengthInChar(), 2);
    EXPECT_EQ(s[1].GetCode(), U'\xFFFD');
    s.BuildFromUTF8("\xFF\x80z", 3);
    EXPECT_EQ(s.GetLengthInChar(), 3);
    EXPECT_EQ(s[2].GetCode(), U'z');
}

TEST(CATListValCATUnicodeString, CountsFromOneAndLocatesExactly) {
    CATListValCATUnicodeString list;
    list.Append("x");
    list.Append("Y");
    EXPECT_EQ(list.Size(), 2);
    EXPECT_EQ(list[1], CATUnicodeString("x"));
    EXPECT_EQ(list.Locate("Y"), 2);
    EXPECT_EQ(list.Locate("y"), 0);
    EXPECT_EQ(list[0], CATUnicodeString(""));
    EXPECT_EQ(list[3], CATUnicodeString(""));
    list.RemovePosition(1);
    EXPECT_EQ(list[1], CATUnicodeString("Y"));
}
