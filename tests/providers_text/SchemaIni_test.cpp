// Schema.ini and the options of connection strings.
#include <gtest/gtest.h>
#include <ostream>

#include "providers/text/ConnectionOptions.h"
#include "providers/text/SchemaIni.h"
#include "tests/providers_text/TextTest.h"

namespace varnel::text {
namespace {

/// What an ini file says about t.csv, over the defaults.
TextFormat FormatIn(std::string_view ini) {
    return SchemaIni(ini).FormatOf("t.csv", TextFormat());
}

/// The format in a few words: layout and delimiter, qualifier, header, rows to scan, code page.
std::string InWords(const TextFormat& format) {
    const bool isFixed = format.layout == FileLayout::FixedWidth;
    std::string words = (isFixed ? "fixed" : "[" + format.delimiter + "]") + " [" + format.qualifier + "] ";
    words += format.hasHeader ? "header " : "bare ";
    words += std::to_string(format.maxScanRows) + " " + std::to_string(format.codePage);
    for (const ColumnSpec& column : format.columns) {
        words += " " + column.name + ":" + std::to_string(static_cast<int>(column.type)) + ":" +
                 std::to_string(column.width) + (column.datePicture.empty() ? "" : ":" + column.datePicture);
    }
    return words;
}

struct IniCase {
    const char* name;
    std::string ini;
    const char* words;  // or the error's text
    friend void PrintTo(const IniCase& row, std::ostream* out) { *out << row.name; }
};
const auto kName = [](const auto& row) { return std::string(row.param.name); };

class FrameTest : public testing::TestWithParam<IniCase> {};
TEST_P(FrameTest, IsReadAsInWords) {
    EXPECT_EQ(InWords(FormatIn(GetParam().ini)), GetParam().words);
}
INSTANTIATE_TEST_SUITE_P(
    Ini, FrameTest,
    testing::Values(
        IniCase{"NoSection", "[other.csv]\nFormat=TabDelimited\n", "[,] [\"] header 25 0"},
        IniCase{"AsTheFolderPollingWritesIt",
                "\r\n\r\n[a.csv]\r\nFormat=TabDelimited\r\nColNameHeader=True\r\nMaxScanRows=0\r\n\r\n\r\n[t.csv]\r\n"
                "Format=Delimited(|)\r\nColNameHeader=False\r\nTextDelimiter=\"'\"\r\nMaxScanRows=0\r\n",
                "[|] ['] bare 0 0"},
        IniCase{"EmptyQualifierCode", "[t.csv]\r\nTextDelimiter=\"\"\"\"\r\n", "[,] [] header 25 0"},
        IniCase{"NullQualifierCode", "[t.csv]\r\nTextDelimiter=\"1\"\r\n", "[,] [\"] header 25 0"},
        IniCase{"LongQualifierCode", "[t.csv]\r\nTextDelimiter=\"|x\"\r\n", "[,] [|] header 25 0"},
        IniCase{"LetterQualifier", "[t.csv]\nTextDelimiter=Q\n", "[,] [\"] header 25 0"},
        IniCase{"CaseAndBlanks", "  [T.CSV]  \n  FORMAT =  tabdelimited  \n\tcolnameheader\t=\tno",
                "[\t] [\"] bare 25 0"},
        IniCase{"FirstSectionAndFirstKey", "[t.csv]\nMaxScanRows=7\nmaxscanrows=8\n[T.csv]\nFormat=TabDelimited\n",
                "[,] [\"] header 7 0"},
        IniCase{"CommentsAndRubbish",
                ";[t.csv]\nrubbish\n=x\n[t.csv]\n;Format=TabDelimited\nMaxScanRows\nUnknown=1\nMaxScanRows=3",
                "[,] [\"] header 3 0"},
        IniCase{"QuotedValues", "[t.csv]\nFormat='Delimited(;)'\nColNameHeader=\"off\"\n", "[;] [\"] bare 25 0"},
        IniCase{"ByteOrderMark", "\xEF\xBB\xBF[t.csv]\nMaxScanRows=1", "[,] [\"] header 1 0"},
        IniCase{"Windows1252", "[t.csv]\nFormat=Delimited(\xA7)", "[\xC2\xA7] [\"] header 25 0"},
        IniCase{"CrOnly", "[t.csv]\rMaxScanRows=2\r", "[,] [\"] header 2 0"},
        IniCase{"NameWithBrackets", "[t.csv]\nMaxScanRows=2\n[a[1].csv]\nMaxScanRows=3", "[,] [\"] header 2 0"},
        IniCase{"WordPages", "[t.csv]\nCharacterSet=utf8\nColNameHeader=On", "[,] [\"] header 25 65001"},
        IniCase{"Oem", "[t.csv]\nCharacterSet=OEM\nColNameHeader=0", "[,] [\"] bare 25 850"},
        IniCase{"NumberPage", "[t.csv]\nCharacterSet=932", "[,] [\"] header 25 932"},
        IniCase{"LargeScan", "[t.csv]\nMaxScanRows=4000000000", "[,] [\"] header 4000000000 0"}),
    kName);

INSTANTIATE_TEST_SUITE_P(
    ColLines, FrameTest,
    testing::Values(IniCase{"Usual", "[t.csv]\nCol1=A Long\nCol2=\"Two Words\" Text Width 30\nCol3=C\n",
                            "[,] [\"] header 25 0 A:3:0 Two Words:202:30 C:0:0"},
                    IniCase{"GapEndsTheList", "[t.csv]\nCol1=A Bit\nCol3=C Long\n", "[,] [\"] header 25 0 A:11:0"},
                    IniCase{"AnyOrder", "[t.csv]\ncol2=B byte\nCOL1=A SHORT\n", "[,] [\"] header 25 0 A:2:0 B:17:0"},
                    IniCase{"WidthWithoutType", "[t.csv]\nCol1=A Width 5\n", "[,] [\"] header 25 0 A:0:5"},
                    IniCase{"DatePicture", "[t.csv]\nCol1=A Date dd mm yyyy Width 10\nCol2=B DateTime\n",
                            "[,] [\"] header 25 0 A:7:10:dd mm yyyy B:7:0"},
                    IniCase{"QuotedAsAWhole", "[t.csv]\nCol1=\"A Text\"\nCol2=\"First Name\"\n",
                            "[,] [\"] header 25 0 A:202:0 First Name:0:0"},
                    IniCase{"DoubledQuoteInName", "[t.csv]\nCol1=\"5\"\" pipe\" Long\n",
                            "[,] [\"] header 25 0 5\" pipe:3:0"},
                    IniCase{"Fixed", "[t.csv]\nFormat=FixedLength\nFixedFormat=TrueFixedLength\nCol1=A Memo Width 2\n",
                            "fixed [\"] header 25 0 A:203:2"}),
    kName);

class BrokenIniTest : public testing::TestWithParam<IniCase> {};
TEST_P(BrokenIniTest, IsRefusedInWords) {
    EXPECT_EQ(ErrorOf([&] { FormatIn(GetParam().ini); }), GetParam().words);
    EXPECT_EQ(InWords(SchemaIni(GetParam().ini).FormatOf("other.csv", {})), "[,] [\"] header 25 0");
}
constexpr const char* kFormatError = "In the text file specification 't.csv', the 'Format' option is invalid.";
INSTANTIATE_TEST_SUITE_P(
    Ini, BrokenIniTest,
    testing::Values(IniCase{"Format", "[t.csv]\nFormat=Commas", kFormatError},
                    IniCase{"OpenDelimiter", "[t.csv]\nFormat=Delimited(;", kFormatError},
                    IniCase{"QuoteAsDelimiter", "[t.csv]\nFormat=Delimited(\")", kFormatError},
                    IniCase{"Header", "[t.csv]\nColNameHeader=Maybe",
                            "In the text file specification 't.csv', the 'ColNameHeader' option is invalid."},
                    IniCase{"ScanRows", "[t.csv]\nMaxScanRows=-1",
                            "In the text file specification 't.csv', the 'MaxScanRows' option is invalid."},
                    IniCase{"UnknownPage", "[t.csv]\nCharacterSet=12345",
                            "In the text file specification 't.csv', the 'CharacterSet' option is invalid."},
                    IniCase{"UnknownPageWord", "[t.csv]\nCharacterSet=Latin",
                            "In the text file specification 't.csv', the 'CharacterSet' option is invalid."},
                    IniCase{"DecimalSymbol", "[t.csv]\nDecimalSymbol=,,",
                            "In the text file specification 't.csv', the 'DecimalSymbol' option is invalid."},
                    IniCase{"NegativeForm", "[t.csv]\nCurrencyNegFormat=16",
                            "In the text file specification 't.csv', the 'CurrencyNegFormat' option is invalid."},
                    IniCase{"QualifierInDelimiter", "[t.csv]\nFormat=Delimited(,')\nTextDelimiter='",
                            "In the text file specification 't.csv', the 'TextDelimiter' option is invalid."},
                    IniCase{"TypeWord", "[t.csv]\nCol1=A Number",
                            "In the text file specification 't.csv', the 'Col1' option is invalid."},
                    IniCase{"Width", "[t.csv]\nCol1=A Text\nCol2=B Text Width zero",
                            "In the text file specification 't.csv', the 'Col2' option is invalid."},
                    IniCase{"ZeroWidth", "[t.csv]\nCol1=A Text Width 0",
                            "In the text file specification 't.csv', the 'Col1' option is invalid."},
                    IniCase{"OpenName", "[t.csv]\nCol1=\"A Text",
                            "In the text file specification 't.csv', the 'Col1' option is invalid."},
                    IniCase{"FixedWithoutWidth", "[t.csv]\nFormat=FixedLength\nCol1=A Text Width 3\nCol2=B Long",
                            "In the fixed width specification 't.csv', column 'B' does not specify a width."},
                    IniCase{"FixedWithoutColumns", "[t.csv]\nFormat=FixedLength",
                            "In the fixed width specification 't.csv', column 'F1' does not specify a width."}),
    kName);

class OptionsTest : public testing::TestWithParam<IniCase> {};
TEST_P(OptionsTest, AreReadFromTheConnectionString) {
    EXPECT_EQ(InWords(ReadConnectionOptions(GetParam().ini)), GetParam().words);
}
INSTANTIATE_TEST_SUITE_P(
    Options, OptionsTest,
    testing::Values(IniCase{"Usual", "text;HDR=Yes;FMT=Delimited", "[,] [\"] header 25 0"},
                    IniCase{"All", " Text ; hdr = No ; fmt=TabDelimited;IMEX=1;CharacterSet=1250;MaxScanRows=0;",
                            "[\t] [\"] bare 0 1250"},
                    IniCase{"Delimiter", "text;FMT=Delimited(|);HDR=NO", "[|] [\"] bare 25 0"},
                    IniCase{"SemicolonAsDelimiter", "text;FMT=Delimited(;);HDR=NO", "[;] [\"] bare 25 0"},
                    IniCase{"ParenthesisAsDelimiter", "text;FMT=Delimited());HDR=NO", "[)] [\"] bare 25 0"},
                    IniCase{"Empty", "", "[,] [\"] header 25 0"}),
    kName);

TEST(TextOptions, GiveWayToSchemaIni) {
    EXPECT_EQ(ReadBytes("1;2\n", "", "text;HDR=No;FMT=Delimited(;)").rows, "1|2");
    EXPECT_EQ(ReadBytes("1|2\n", "Format=Delimited(|)", "text;HDR=No;FMT=Delimited(;)").rows, "1|2");
    EXPECT_EQ(ReadBytes("A;B\n1;2\n", "ColNameHeader=True", "text;HDR=No;FMT=Delimited(;)").names, "A|B");
    EXPECT_EQ(ErrorOf([] { ReadConnectionOptions("text;FMT=Xml"); }),
              "In the text file specification 'Extended Properties', the 'Format' option is invalid.");
}

TEST(TextOptions, FixedHeaderLineIsPassedOver) {
    const Shown shown = ReadBytes("A,B\r\nxy7\r\n", "Format=FixedLength\r\nCol1=N Text Width 2\r\nCol2=M Long Width 2");
    EXPECT_EQ(shown.names + " " + shown.rows, "N|M \"xy\"|7");
}

}  // namespace
}  // namespace varnel::text
