// Bytes to records and fields.
#include <gtest/gtest.h>
#include <ostream>

#include "tests/providers_text/TextTest.h"

namespace varnel::text {
namespace {

struct RecordCase {
    const char* name;
    std::string bytes;  // without a header line
    const char* schema;
    const char* rows;
    friend void PrintTo(const RecordCase& row, std::ostream* out) { *out << row.name; }
};

class RecordsTest : public testing::TestWithParam<RecordCase> {};

TEST_P(RecordsTest, GivesTheseRows) {
    const RecordCase& row = GetParam();
    EXPECT_EQ(ReadBytes(row.bytes, std::string("ColNameHeader=False\r\n") + row.schema).rows, row.rows);
}

INSTANTIATE_TEST_SUITE_P(
    Delimited, RecordsTest,
    testing::Values(
        RecordCase{"CrLf", "a,b\r\nc,d\r\n", "", "\"a\"|\"b\"\n\"c\"|\"d\""},
        RecordCase{"LfOnlyLastWithoutEnd", "a,b\nc,d", "", "\"a\"|\"b\"\n\"c\"|\"d\""},
        RecordCase{"CrOnly", "a,b\rc,d\r", "", "\"a\"|\"b\"\n\"c\"|\"d\""},
        RecordCase{"MixedEnds", "a,b\rc,d\ne,f\r\ng,h", "", "\"a\"|\"b\"\n\"c\"|\"d\"\n\"e\"|\"f\"\n\"g\"|\"h\""},
        RecordCase{"EmptyLinesBetween", "a,b\n\n\r\nc,d\n\n", "", "\"a\"|\"b\"\n\"c\"|\"d\""},
        RecordCase{"BlankLineIsARecord", "a,b\n  \nc,d", "", "\"a\"|\"b\"\n\"  \"|~\n\"c\"|\"d\""},
        RecordCase{"EmptyFields", ",,x\n,,", "", "~|~|\"x\"\n~|~|~"},
        RecordCase{"DelimiterInQualifiers", "\"a,b\",c\n", "", "\"a,b\"|\"c\""},
        RecordCase{"DoubledQualifier", "\"a \"\"b\"\" c\",x\n", "", "\"a \"b\" c\"|\"x\""},
        RecordCase{"LineEndsInQualifiers", "\"a\r\nb\",\"c\nd\"\n\"e\rf\",g", "",
                   "\"a\r\nb\"|\"c\nd\"\n\"e\rf\"|\"g\""},
        RecordCase{"QualifiedEmptyIsText", "\"\",x\n,y", "", "\"\"|\"x\"\n~|\"y\""},
        RecordCase{"BlanksAroundQualifiers", " \"a\"  ,\t\"b\"\t\n", "", "\"a\"|\"b\""},
        RecordCase{"BlanksOfPlainText", " a , b \n", "", "\" a \"|\" b \""},
        RecordCase{"TextBehindClosing", "\"abc\"d,\"e\" f\"g\"\n", "", "\"abcd\"|\"e f\"g\"\""},
        RecordCase{"QualifierInsideText", "5\" pipe,x\"y\"\n", "", "\"5\" pipe\"|\"x\"y\"\""},
        RecordCase{"QualifierBehindText", "a\"b,c\"d\n\"e\",f\n", "", "\"a\"b\"|\"c\"d\"\n\"e\"|\"f\""},
        RecordCase{"Unclosed", "a,\"b\nc,d\ne,f\n", "", "\"a\"|\"\"b\"\n\"c\"|\"d\"\n\"e\"|\"f\""},
        RecordCase{"UnclosedThenDoubled", "a,\"b\nc,\"\"\"\"\ne,f\n", "", "\"a\"|\"\"b\"\n\"c\"|\"\"\"\n\"e\"|\"f\""},
        RecordCase{"UnclosedInTheLastField", "a,b\nc,\"", "", "\"a\"|\"b\"\n\"c\"|\"\"\""},
        RecordCase{"UnclosedOddRun", "a,\"\"\"b\nc,d", "", "\"a\"|\"\"\"\"b\"\n\"c\"|\"d\""},
        RecordCase{"ClosedAtTheVeryEnd", "a,\"b\nc\"", "", "\"a\"|\"b\nc\""},
        RecordCase{"CtrlZEndsTheFile", "a,b\nc,d\n\x1A", "", "\"a\"|\"b\"\n\"c\"|\"d\""},
        RecordCase{"CtrlZBehindText", "a,b\nc,d\x1A", "", "\"a\"|\"b\"\n\"c\"|\"d\""},
        RecordCase{"CtrlZInsideIsData", "a\x1A,b\nc,d\n", "", "\"a\x1A\"|\"b\"\n\"c\"|\"d\""},
        RecordCase{"OneColumnKeepsEmptyLines", "a\n\nb\n\n", "", "\"a\"\n~\n\"b\"\n~"},
        RecordCase{"ShortRecords", "a,b,c\nd\ne,f\n", "", "\"a\"|\"b\"|\"c\"\n\"d\"|~|~\n\"e\"|\"f\"|~"},
        RecordCase{"LongestOfTheFirstRecords", "a\nb,c\n", "", "\"a\"|~\n\"b\"|\"c\""}),
    [](const auto& row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Delimiters, RecordsTest,
    testing::Values(RecordCase{"Tab", "a b\t\"c\td\"\t e\n", "Format=TabDelimited", "\"a b\"|\"c\td\"|\" e\""},
                    RecordCase{"Bar", "a|b,c\n", "Format=Delimited(|)", "\"a\"|\"b,c\""},
                    RecordCase{"Semicolon", "a;\"b;c\"\n", "format = delimited(;)", "\"a\"|\"b;c\""},
                    RecordCase{"ClosingParenthesis", "a)b)(c\n", "Format=Delimited())", "\"a\"|\"b\"|\"(c\""},
                    RecordCase{"Blank", "a \"b c\"  d\n", "Format=Delimited( )", "\"a\"|\"b c\"|~|\"d\""},
                    RecordCase{"NothingMeansComma", "a,b\n", "Format=Delimited()", "\"a\"|\"b\""},
                    RecordCase{"SeveralCharacters", "a||b|c||\"d||e\"||\n", "Format=Delimited(||)",
                               "\"a\"|\"b|c\"|\"d||e\"|~"},
                    RecordCase{"ThreeBarsOfTwo", "a|||b\n", "Format=Delimited(||)", "\"a\"|\"|b\""},
                    RecordCase{"NotAscii",
                               "a\xC2\xA6"
                               "b\xC2\xA7"
                               "c\n",
                               "Format=Delimited(\xC2\xA6)",
                               "\"a\"|\"b\xC2\xA7"
                               "c\""},
                    RecordCase{"NotAsciiInWindows1252",
                               "a\xA6"
                               "b\xE9\n",
                               "Format=Delimited(\xC2\xA6)", "\"a\"|\"b\xC3\xA9\""},
                    RecordCase{"SingleQuotes", "'O''Brien',\"x\"\n", "TextDelimiter=\"'\"", "\"O'Brien\"|\"\"x\"\""},
                    RecordCase{"NoQualifier", "\"x\",'y'\n", "TextDelimiter=\"\"\"\"", "\"\"x\"\"|\"'y'\""},
                    RecordCase{"NoQualifierInWords", "\"x\n", "TextDelimiter=None", "\"\"x\""},
                    RecordCase{"DigitIsNoQualifier", "\"a,b\",100\n", "TextDelimiter=\"1\"", "\"a,b\"|100"},
                    RecordCase{"QualifierNotAscii",
                               "\xC2\xB4"
                               "a,\xC2\xB4\xC2\xB4"
                               "b\xC2\xB4 ,c\n",
                               "TextDelimiter=\xC2\xB4",
                               "\"a,\xC2\xB4"
                               "b\"|\"c\""},
                    RecordCase{"SymbolsOfOneLeadByte",
                               "\xC2\xB4"
                               "a\xC2\xA6"
                               "b\xC2\xB4\xC2\xA6"
                               "c\n",
                               "TextDelimiter=\xC2\xB4\r\nFormat=Delimited(\xC2\xA6)",
                               "\"a\xC2\xA6"
                               "b\"|\"c\""}),
    [](const auto& row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(
    FixedWidth, RecordsTest,
    testing::Values(
        RecordCase{"RaggedEdge", "ab  1xyz\r\nc   2\r\n\r\n  d 3x",
                   "Format=FixedLength\r\nCol1=A Text Width 4\r\nCol2=B "
                   "Long Width 1\r\nCol3=C Text Width 3",
                   "\"ab\"|1|\"xyz\"\n\"c\"|2|~\n\"  d\"|3|\"x\""},
        RecordCase{"WidthsAreCharacters",
                   "\xC3\xA4\xC3\xB6"
                   "1\nxy2\n",
                   "Format=FixedLength\r\nCol1=A Text Width 2\r\nCol2=B Long Width 1",
                   "\"\xC3\xA4\xC3\xB6\"|1\n\"xy\"|2"},
        RecordCase{"BlanksAreNull", "    5\n  6 x\n", "Format=FixedLength\r\nCol1=A Long Width 4\r\nCol2=B Width 1",
                   "~|\"5\"\n6|\"x\""},
        RecordCase{"QuotesAndCommasAreData", "\"a,b\"\n", "Format=FixedLength\r\nCol1=A Text Width 5", "\"\"a,b\"\""},
        RecordCase{"SurplusText", "ab3x\ncd4  \n", "Format=FixedLength\r\nCol1=A Text Width 2\r\nCol2=B Long Width 1",
                   "\"ab\"|!More values than columns in 't.csv', record 1: 3 instead of 2\n\"cd\"|4"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(TextRecords, DeliverNulAsData) {
    const std::string bytes("a\0b,c\n\0,d\n", 10);
    EXPECT_EQ(ReadBytes(bytes, "ColNameHeader=False").rows, std::string("\"a\0b\"|\"c\"\n\"\0\"|\"d\"", 17));
}

TEST(TextRecords, FailAValueOfARecordWithTooMany) {
    const Shown shown = ReadBytes("A,B\n1,x\n2,y,z\n3,w,\n4,v,  \n5,u,\"\"\n");
    EXPECT_EQ(shown.types, "3|202");
    EXPECT_EQ(shown.rows,
              "1|\"x\"\n2|!More values than columns in 't.csv', record 2: 3 instead of 2\n"
              "3|\"w\"\n4|\"v\"\n5|\"u\"");
}

TEST(TextRecords, LeaveOutWhatColLinesDoNotName) {
    const Shown shown = ReadBytes("X,Y,Z\n1,2,3\n4,5,6,7\n", "Col1=A Long\r\nCol2=B Text");
    EXPECT_EQ(shown.names, "A|B");
    EXPECT_EQ(shown.rows, "1|\"2\"\n4|!More values than columns in 't.csv', record 2: 4 instead of 3");
}

TEST(TextRecords, CountWhatTheyDeliver) {
    EXPECT_EQ(ReadBytes("A\n\n1\n\n").count, 3);
    EXPECT_EQ(ReadBytes("\n\nA,B\n\n1,2\n\n").count, 1);
    EXPECT_EQ(ReadBytes("A,B\n\"x\ny\",2\n").count, 1);
    EXPECT_EQ(ReadBytes("A,B\n").count, 0);
}

}  // namespace
}  // namespace varnel::text
