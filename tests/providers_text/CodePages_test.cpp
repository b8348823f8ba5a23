// Text in every code page becomes UTF-8.
#include <gtest/gtest.h>

#include "platform/CodePage.h"
#include "tests/providers_text/TextTest.h"

namespace varnel::text {
namespace {

struct PageCase {
    const char* page;    // CharacterSet; "" for none
    const char* marked;  // bytes put in front of the file
    int number;          // the code page that the test writes
    const char* word;    // a word that the page can hold
};

// One page of each sort; which character each byte of a page means is CodePage's affair.
constexpr PageCase kPages[] = {
    {"", "", 1252, "Grüße€"},
    {"ANSI", "", 65001, "Grüß中😀"},
    {"", "\xEF\xBB\xBF", 65001, "Nameä"},
    {"", "\xEF\xBB\xBF", 65001, "Name"},
    {"UTF-8", "\xEF\xBB\xBF", 65001, "λ"},
    {"", "\xFF\xFE", 1200, "λ😀z"},
    {"", "\xFE\xFF", 1201, "λ😀z"},
    {"Unicode", "", 1200, "中"},
    {"Unicode", "\xFF\xFE", 1200, "中"},
    {"Unicode", "\xFE\xFF", 1201, "中"},
    {"OEM", "", 850, "äø"},
    {"1251", "", 1251, "Жя"},
    // characters whose second byte is an ASCII sign, the bar among them
    {"932", "", 932, "表ソｱ"},
    {"936", "", 936, "中丂"},
    {"949", "", 949, "한갂"},
    {"950", "", 950, "中功"},
};

/// A header, a qualified word, a word of many characters so that blocks end within characters, in the page's bytes.
TEST(TextCodePages, AreReadWithoutLoss) {
    for (const PageCase& row : kPages) {
        std::string many, bytes = row.marked;
        for (int k = 0; k < 40; ++k) many += row.word;
        const std::string word = row.word, schema = row.page;
        CodePage(row.number).Encode(bytes, word + ",B\r\n\"x, " + word + "\",1\r\n" + many + ",2\r\n");
        const Shown shown = ReadText(bytes, schema.empty() ? "" : "CharacterSet=" + schema);
        EXPECT_EQ(shown.names, word + "|B") << schema << row.number;
        EXPECT_EQ(shown.rows, "\"x, " + word + "\"|1\n\"" + many + "\"|2") << schema << row.number;
    }
}

TEST(TextCodePages, SecondBytesAreNoDelimiters) {
    // 0x83 0x7C is one katakana; its second byte alone would be the bar.
    EXPECT_EQ(ReadText("A|B\n\x83\x7C|1\n", "Format=Delimited(|)\r\nCharacterSet=932").rows, "\"\xE3\x83\x9D\"|1");
}

TEST(TextCodePages, UndecodableBytesFailTheirValueOnly) {
    const std::string failed = "!Bytes that have no meaning in the file's code page in 't.csv', record 2, column 'A'";
    // 0x81 has no meaning in Windows-1252.
    EXPECT_EQ(ReadText("A,B\nx,1\n\x81,2\n\xE4,3\n").rows, "\"x\"|1\n" + failed + "|2\n\"\xC3\xA4\"|3");
    EXPECT_EQ(ReadText("A,B\nx,1\n\xC3,2\ny,3\n", "CharacterSet=65001").rows, "\"x\"|1\n" + failed + "|2\n\"y\"|3");
    EXPECT_EQ(ReadText("A,B\nx,1\n\x81,2\ny,3\n", "CharacterSet=932").rows, "\"x\"|1\n" + failed + "|2\n\"y\"|3");
    const std::string lone("A\0,\0B\0\n\0x\0,\0001\0\n\0\x00\xD8,\0002\0\n\0", 24);
    EXPECT_EQ(ReadText(lone, "CharacterSet=Unicode").rows, "\"x\"|1\n" + failed + "|2");
    // In a number column such bytes are no number either.
    EXPECT_EQ(ReadText("A,B\n\x81,\x81\n", "Col1=A Long\r\nCol2=B Text").rows,
              "!Type mismatch in 't.csv', record 1, column 'A'|!Bytes that have no meaning in the file's code page in "
              "'t.csv', record 1, column 'B'");
}

TEST(TextCodePages, OneStrayByteMakesTheFileWindows1252) {
    // "\xC3\xA4" is a character of UTF-8; the lone byte behind it says that none of the file is.
    EXPECT_EQ(ReadText("A,B\n\xC3\xA4,1\n\xE4,2\n").rows, "\"\xC3\x83\xC2\xA4\"|1\n\"\xC3\xA4\"|2");
    // The same with the stray byte cut off by the end of the file.
    EXPECT_EQ(ReadText("A,B\n\xC3\xA4,1\n2,\xE4").rows, "\"\xC3\x83\xC2\xA4\"|\"1\"\n\"2\"|\"\xC3\xA4\"");
}

TEST(TextCodePages, OddLastByteOfUtf16FailsItsValue) {
    const std::string odd(
        "\xFF\xFE"
        "A\0\n\0x",
        7);
    EXPECT_EQ(ReadText(odd).rows,
              "!Bytes that have no meaning in the file's code page in 't.csv', record 1, column 'A'");
}

}  // namespace
}  // namespace varnel::text
