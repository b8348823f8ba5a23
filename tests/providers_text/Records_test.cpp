// Bytes to records and fields.
#include <gtest/gtest.h>
#include <span>

#include "tests/providers_text/TextTest.h"

namespace varnel::text {
namespace {

struct RecordCase {
    const char* name;
    std::string bytes;  // without a header line
    const char* schema;
    const char* rows;
};

const RecordCase kDelimited[] = {
    {"MixedEnds", "a,b\rc,d\ne,f\r\ng,h", "", "\"a\"|\"b\"\n\"c\"|\"d\"\n\"e\"|\"f\"\n\"g\"|\"h\""},
    {"EmptyLinesBetween", "a,b\n\n\r\nc,d\n\n", "", "\"a\"|\"b\"\n\"c\"|\"d\""},
    {"BlankLineIsARecord", "a,b\n  \nc,d", "", "\"a\"|\"b\"\n\"  \"|~\n\"c\"|\"d\""},
    {"EmptyFields", ",,x\n,,", "", "~|~|\"x\"\n~|~|~"},
    {"DelimiterInQualifiers", "\"a,b\",c\n", "", "\"a,b\"|\"c\""},
    {"DoubledQualifier", "\"a \"\"b\"\" c\",x\n", "", "\"a \"b\" c\"|\"x\""},
    {"LineEndsInQualifiers", "\"a\r\nb\",\"c\nd\"\n\"e\rf\",g", "", "\"a\r\nb\"|\"c\nd\"\n\"e\rf\"|\"g\""},
    {"QualifiedEmptyIsText", "\"\",x\n,y", "", "\"\"|\"x\"\n~|\"y\""},
    {"BlanksAroundQualifiers", " \"a\"  ,\t\"b\"\t\n", "", "\"a\"|\"b\""},
    {"BlanksOfPlainText", " a , b \n", "", "\" a \"|\" b \""},
    {"TextBehindClosing", "\"abc\"d,\"e\" f\"g\"\n", "", "\"abcd\"|\"e f\"g\"\""},
    {"QualifierInsideText", "5\" pipe,x\"y\"\n", "", "\"5\" pipe\"|\"x\"y\"\""},
    {"QualifierBehindText", "a\"b,c\"d\n\"e\",f\n", "", "\"a\"b\"|\"c\"d\"\n\"e\"|\"f\""},
    {"Unclosed", "a,\"b\nc,d\ne,f\n", "", "\"a\"|\"\"b\"\n\"c\"|\"d\"\n\"e\"|\"f\""},
    {"UnclosedThenDoubled", "a,\"b\nc,\"\"\"\"\ne,f\n", "", "\"a\"|\"\"b\"\n\"c\"|\"\"\"\n\"e\"|\"f\""},
    {"UnclosedInTheLastField", "a,b\nc,\"", "", "\"a\"|\"b\"\n\"c\"|\"\"\""},
    {"UnclosedOddRun", "a,\"\"\"b\nc,d", "", "\"a\"|\"\"\"\"b\"\n\"c\"|\"d\""},
    {"ClosedAtTheVeryEnd", "a,\"b\nc\"", "", "\"a\"|\"b\nc\""},
    {"CtrlZEndsTheFile", "a,b\nc,d\n\x1A", "", "\"a\"|\"b\"\n\"c\"|\"d\""},
    {"CtrlZBehindText", "a,b\nc,d\x1A", "", "\"a\"|\"b\"\n\"c\"|\"d\""},
    {"CtrlZInsideIsData", "a\x1A,b\nc,d\n", "", "\"a\x1A\"|\"b\"\n\"c\"|\"d\""},
    {"OneColumnKeepsEmptyLines", "a\n\nb\n\n", "", "\"a\"\n~\n\"b\"\n~"},
    {"ShortRecords", "a,b,c\nd\ne,f\n", "", "\"a\"|\"b\"|\"c\"\n\"d\"|~|~\n\"e\"|\"f\"|~"},
    {"LongestOfTheFirstRecords", "a\nb,c\n", "", "\"a\"|~\n\"b\"|\"c\""}};

const RecordCase kDelimiters[] = {
    {"Tab", "a b\t\"c\td\"\t e\n", "Format=TabDelimited", "\"a b\"|\"c\td\"|\" e\""},
    {"Bar", "a|b,c\n", "Format=Delimited(|)", "\"a\"|\"b,c\""},
    {"ClosingParenthesis", "a)b)(c\n", "Format=Delimited())", "\"a\"|\"b\"|\"(c\""},
    {"Blank", "a \"b c\"  d\n", "Format=Delimited( )", "\"a\"|\"b c\"|~|\"d\""},
    {"NothingMeansComma", "a,b\n", "Format=Delimited()", "\"a\"|\"b\""},
    {"SeveralCharacters", "a||b|c||\"d||e\"||\n", "Format=Delimited(||)", "\"a\"|\"b|c\"|\"d||e\"|~"},
    {"ThreeBarsOfTwo", "a|||b\n", "Format=Delimited(||)", "\"a\"|\"|b\""},
    {"NotAscii",
     "a\xC2\xA6"
     "b\xC2\xA7"
     "c\n",
     "Format=Delimited(\xC2\xA6)",
     "\"a\"|\"b\xC2\xA7"
     "c\""},
    {"NotAsciiInWindows1252",
     "a\xA6"
     "b\xE9\n",
     "Format=Delimited(\xC2\xA6)", "\"a\"|\"b\xC3\xA9\""},
    {"SingleQuotes", "'O''Brien',\"x\"\n", "TextDelimiter=\"'\"", "\"O'Brien\"|\"\"x\"\""},
    {"NoQualifier", "\"x\",'y'\n", "TextDelimiter=\"\"\"\"", "\"\"x\"\"|\"'y'\""},
    {"DigitIsNoQualifier", "\"a,b\",100\n", "TextDelimiter=\"1\"", "\"a,b\"|100"},
    {"QualifierNotAscii",
     "\xC2\xB4"
     "a,\xC2\xB4\xC2\xB4"
     "b\xC2\xB4 ,c\n",
     "TextDelimiter=\xC2\xB4",
     "\"a,\xC2\xB4"
     "b\"|\"c\""},
    {"SymbolsOfOneLeadByte",
     "\xC2\xB4"
     "a\xC2\xA6"
     "b\xC2\xB4\xC2\xA6"
     "c\n",
     "TextDelimiter=\xC2\xB4\r\nFormat=Delimited(\xC2\xA6)",
     "\"a\xC2\xA6"
     "b\"|\"c\""}};

const RecordCase kFixedWidth[] = {
    {"RaggedEdge", "ab  1xyz\r\nc   2\r\n\r\n  d 3x",
     "Format=FixedLength\r\nCol1=A Text Width 4\r\nCol2=B "
     "Long Width 1\r\nCol3=C Text Width 3",
     "\"ab\"|1|\"xyz\"\n\"c\"|2|~\n\"  d\"|3|\"x\""},
    {"WidthsAreCharacters",
     "\xC3\xA4\xC3\xB6"
     "1\nxy2\n",
     "Format=FixedLength\r\nCol1=A Text Width 2\r\nCol2=B Long Width 1", "\"\xC3\xA4\xC3\xB6\"|1\n\"xy\"|2"},
    {"BlanksAreNull", "    5\n  6 x\n", "Format=FixedLength\r\nCol1=A Long Width 4\r\nCol2=B Width 1",
     "~|\"5\"\n6|\"x\""},
    {"QuotesAndCommasAreData", "\"a,b\"\n", "Format=FixedLength\r\nCol1=A Text Width 5", "\"\"a,b\"\""},
    {"SurplusText", "ab3x\ncd4  \n", "Format=FixedLength\r\nCol1=A Text Width 2\r\nCol2=B Long Width 1",
     "\"ab\"|!More values than columns in 't.csv', record 1: 3 instead of 2\n\"cd\"|4"}};

TEST(TextRecords, GiveTheseRows) {
    for (const auto& cases : std::initializer_list<std::span<const RecordCase>>{kDelimited, kDelimiters, kFixedWidth})
        for (const RecordCase& row : cases)
            EXPECT_EQ(ReadText(row.bytes, std::string("ColNameHeader=False\r\n") + row.schema).rows, row.rows)
                << row.name;
}

TEST(TextRecords, DeliverNulAsData) {
    const std::string bytes("a\0b,c\n\0,d\n", 10);
    EXPECT_EQ(ReadText(bytes, "ColNameHeader=False").rows, std::string("\"a\0b\"|\"c\"\n\"\0\"|\"d\"", 17));
}

TEST(TextRecords, FailAValueOfARecordWithTooMany) {
    const Shown shown = ReadText("A,B\n1,x\n2,y,z\n3,w,\n4,v,  \n5,u,\"\"\n");
    EXPECT_EQ(shown.types, "3|202");
    EXPECT_EQ(shown.rows,
              "1|\"x\"\n2|!More values than columns in 't.csv', record 2: 3 instead of 2\n"
              "3|\"w\"\n4|\"v\"\n5|\"u\"");
}

TEST(TextRecords, LeaveOutWhatColLinesDoNotName) {
    const Shown shown = ReadText("X,Y,Z\n1,2,3\n4,5,6,7\n", "Col1=A Long\r\nCol2=B Text");
    EXPECT_EQ(shown.names, "A|B");
    EXPECT_EQ(shown.rows, "1|\"2\"\n4|!More values than columns in 't.csv', record 2: 4 instead of 3");
}

TEST(TextRecords, CountWhatTheyDeliver) {
    EXPECT_EQ(ReadText("A\n\n1\n\n").count, 3);
    EXPECT_EQ(ReadText("\n\nA,B\n\n1,2\n\n").count, 1);
    EXPECT_EQ(ReadText("A,B\n\"x\ny\",2\n").count, 1);
    EXPECT_EQ(ReadText("A,B\n").count, 0);
}

}  // namespace
}  // namespace varnel::text
