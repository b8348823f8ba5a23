// Text in every code page becomes UTF-8.
#include <gtest/gtest.h>
#include <ostream>

#include "platform/CodePage.h"
#include "tests/providers_text/TextTest.h"

namespace varnel::text {
namespace {

struct PageCase {
    const char* name;
    const char* page;    // CharacterSet; "" for none
    std::string marked;  // bytes put in front of the file
    int number;          // the code page that the test writes
    const char* word;    // a word that the page can hold
    friend void PrintTo(const PageCase& row, std::ostream* out) { *out << row.name; }
};
class CodePageTest : public testing::TestWithParam<PageCase> {};

/// A header, a qualified word, a word of many characters so that blocks end within characters, in the page's bytes.
TEST_P(CodePageTest, IsReadWithoutLoss) {
    const PageCase& row = GetParam();
    std::string many;
    for (int k = 0; k < 40; ++k) many += row.word;
    const std::string word = row.word;
    std::string bytes = row.marked;
    CodePage(row.number).Encode(bytes, word + ",B\r\n\"x, " + word + "\",1\r\n" + many + ",2\r\n");
    const Shown shown = ReadBytes(bytes, row.page[0] == '\0' ? "" : std::string("CharacterSet=") + row.page);
    EXPECT_EQ(shown.names, word + "|B");
    EXPECT_EQ(shown.rows, "\"x, " + word + "\"|1\n\"" + many + "\"|2");
}

INSTANTIATE_TEST_SUITE_P(Pages, CodePageTest,
                         testing::Values(PageCase{"AnsiFound", "", "", 1252,
                                                  "Gr\xC3\xBC\xC3\x9F"
                                                  "e\xE2\x82\xAC"},
                                         PageCase{"Utf8Found", "ANSI", "", 65001,
                                                  "Gr\xC3\xBC\xC3\x9F\xE4\xB8\xAD\xF0\x9F\x98\x80"},
                                         PageCase{"Utf8Mark", "", "\xEF\xBB\xBF", 65001, "Name\xC3\xA4"},
                                         PageCase{"Utf8MarkAsciiText", "", "\xEF\xBB\xBF", 65001, "Name"},
                                         PageCase{"Utf8Word", "UTF-8", "\xEF\xBB\xBF", 65001, "\xCE\xBB"},
                                         PageCase{"Utf16LowMark", "", "\xFF\xFE", 1200, "\xCE\xBB\xF0\x9F\x98\x80z"},
                                         PageCase{"Utf16HighMark", "", "\xFE\xFF", 1201, "\xCE\xBB\xF0\x9F\x98\x80z"},
                                         PageCase{"UnicodeWord", "Unicode", "", 1200, "\xE4\xB8\xAD"},
                                         PageCase{"UnicodeWordLowMark", "Unicode", "\xFF\xFE", 1200, "\xE4\xB8\xAD"},
                                         PageCase{"UnicodeWordHighMark", "Unicode", "\xFE\xFF", 1201, "\xE4\xB8\xAD"},
                                         PageCase{"Oem", "OEM", "", 850, "\xC3\xA4\xC3\xB8"},
                                         PageCase{"P437", "437", "", 437, "\xC3\xA4\xE2\x95\xAC"},
                                         PageCase{"P850", "850", "", 850, "\xC3\xA4\xC3\xB8"},
                                         PageCase{"P852", "852", "", 852, "\xC5\xBE\xC5\xA1"},
                                         PageCase{"P866", "866", "", 866, "\xD0\x96\xD1\x8F"},
                                         PageCase{"P1250", "1250", "", 1250, "\xC5\xBE\xC5\xA1"},
                                         PageCase{"P1251", "1251", "", 1251, "\xD0\x96\xD1\x8F"},
                                         PageCase{"P1252", "1252", "", 1252, "\xC3\xA4\xE2\x82\xAC"},
                                         PageCase{"P1253", "1253", "", 1253, "\xCE\xBB\xCF\x8E"},
                                         PageCase{"P1254", "1254", "", 1254, "\xC4\x9E\xC4\xB1"},
                                         PageCase{"P1255", "1255", "", 1255, "\xD7\x90\xD7\xA9"},
                                         PageCase{"P1256", "1256", "", 1256, "\xD8\xB5\xD9\x8A"},
                                         PageCase{"P1257", "1257", "", 1257, "\xC4\x85\xC5\xB3"},
                                         PageCase{"P1258", "1258", "", 1258, "\xC6\xA1\xC6\xB0"},
                                         PageCase{"P28591", "28591", "", 28591, "\xC3\xA4\xC3\xBF"},
                                         PageCase{"P28605", "28605", "", 28605, "\xC3\xA4\xE2\x82\xAC"},
                                         // characters whose second byte is an ASCII sign, the bar among them
                                         PageCase{"P932", "932", "", 932, "\xE8\xA1\xA8\xE3\x82\xBD\xEF\xBD\xB1"},
                                         PageCase{"P936", "936", "", 936, "\xE4\xB8\xAD\xE4\xB8\x82"},
                                         PageCase{"P949", "949", "", 949, "\xED\x95\x9C\xEA\xB0\x82"},
                                         PageCase{"P950", "950", "", 950, "\xE4\xB8\xAD\xE5\x8A\x9F"}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(TextCodePages, SecondBytesAreNoDelimiters) {
    // 0x83 0x7C is one katakana; its second byte alone would be the bar.
    EXPECT_EQ(ReadBytes("A|B\n\x83\x7C|1\n", "Format=Delimited(|)\r\nCharacterSet=932").rows, "\"\xE3\x83\x9D\"|1");
}

TEST(TextCodePages, UndecodableBytesFailTheirValueOnly) {
    const std::string failed = "!Bytes that have no meaning in the file's code page in 't.csv', record 2, column 'A'";
    // 0x81 has no meaning in Windows-1252.
    EXPECT_EQ(ReadBytes("A,B\nx,1\n\x81,2\n\xE4,3\n").rows, "\"x\"|1\n" + failed + "|2\n\"\xC3\xA4\"|3");
    EXPECT_EQ(ReadBytes("A,B\nx,1\n\xC3,2\ny,3\n", "CharacterSet=65001").rows, "\"x\"|1\n" + failed + "|2\n\"y\"|3");
    EXPECT_EQ(ReadBytes("A,B\nx,1\n\x81,2\ny,3\n", "CharacterSet=932").rows, "\"x\"|1\n" + failed + "|2\n\"y\"|3");
    const std::string lone("A\0,\0B\0\n\0x\0,\0001\0\n\0\x00\xD8,\0002\0\n\0", 24);
    EXPECT_EQ(ReadBytes(lone, "CharacterSet=Unicode").rows, "\"x\"|1\n" + failed + "|2");
    // In a number column such bytes are no number either.
    EXPECT_EQ(ReadBytes("A,B\n\x81,\x81\n", "Col1=A Long\r\nCol2=B Text").rows,
              "!Type mismatch in 't.csv', record 1, column 'A'|!Bytes that have no meaning in the file's code page in "
              "'t.csv', record 1, column 'B'");
}

TEST(TextCodePages, OneStrayByteMakesTheFileWindows1252) {
    // "\xC3\xA4" is a character of UTF-8; the lone byte behind it says that none of the file is.
    EXPECT_EQ(ReadBytes("A,B\n\xC3\xA4,1\n\xE4,2\n").rows, "\"\xC3\x83\xC2\xA4\"|1\n\"\xC3\xA4\"|2");
    // The same with the stray byte cut off by the end of the file.
    EXPECT_EQ(ReadBytes("A,B\n\xC3\xA4,1\n2,\xE4").rows, "\"\xC3\x83\xC2\xA4\"|\"1\"\n\"2\"|\"\xC3\xA4\"");
}

TEST(TextCodePages, OddLastByteOfUtf16FailsItsValue) {
    const std::string odd(
        "\xFF\xFE"
        "A\0\n\0x",
        7);
    EXPECT_EQ(ReadBytes(odd).rows,
              "!Bytes that have no meaning in the file's code page in 't.csv', record 1, column 'A'");
}

}  // namespace
}  // namespace varnel::text
