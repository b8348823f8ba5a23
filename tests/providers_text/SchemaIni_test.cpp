// Schema.ini and the options of connection strings.
#include <gtest/gtest.h>

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
    const char* words;  // of a broken one: the faulty option, or the error's text
};

const IniCase kFrames[] = {
    {"NoSection", "[other.csv]\nFormat=TabDelimited\n", "[,] [\"] header 25 0"},
    {"AsTheFolderPollingWritesIt",
     "\r\n\r\n[a.csv]\r\nFormat=TabDelimited\r\nColNameHeader=True\r\nMaxScanRows=0\r\n\r\n\r\n[t.csv]\r\n"
     "Format=Delimited(|)\r\nColNameHeader=False\r\nTextDelimiter=\"'\"\r\nMaxScanRows=0\r\n",
     "[|] ['] bare 0 0"},
    {"EmptyQualifierCode", "[t.csv]\r\nTextDelimiter=\"\"\"\"\r\n", "[,] [] header 25 0"},
    {"NullQualifierCode", "[t.csv]\r\nTextDelimiter=\"1\"\r\n", "[,] [\"] header 25 0"},
    {"LongQualifierCode", "[t.csv]\r\nTextDelimiter=\"|x\"\r\n", "[,] [|] header 25 0"},
    {"LetterQualifier", "[t.csv]\nTextDelimiter=Q\n", "[,] [\"] header 25 0"},
    {"CaseAndBlanks", "  [T.CSV]  \n  FORMAT =  tabdelimited  \n\tcolnameheader\t=\tno", "[\t] [\"] bare 25 0"},
    {"FirstSectionAndFirstKey", "[t.csv]\nMaxScanRows=7\nmaxscanrows=8\n[T.csv]\nFormat=TabDelimited\n",
     "[,] [\"] header 7 0"},
    {"CommentsAndRubbish",
     ";[t.csv]\nrubbish\n=x\n[t.csv]\n;Format=TabDelimited\nMaxScanRows\nUnknown=1\nMaxScanRows=3",
     "[,] [\"] header 3 0"},
    {"QuotedValues", "[t.csv]\nFormat='Delimited(;)'\nColNameHeader=\"off\"\n", "[;] [\"] bare 25 0"},
    {"ByteOrderMark", "\xEF\xBB\xBF[t.csv]\nMaxScanRows=1", "[,] [\"] header 1 0"},
    {"Windows1252", "[t.csv]\nFormat=Delimited(\xA7)", "[\xC2\xA7] [\"] header 25 0"},
    {"CrOnly", "[t.csv]\rMaxScanRows=2\r", "[,] [\"] header 2 0"},
    {"NameWithBrackets", "[t.csv]\nMaxScanRows=2\n[a[1].csv]\nMaxScanRows=3", "[,] [\"] header 2 0"},
    {"WordPages", "[t.csv]\nCharacterSet=utf8\nColNameHeader=On", "[,] [\"] header 25 65001"},
    {"Oem", "[t.csv]\nCharacterSet=OEM\nColNameHeader=0", "[,] [\"] bare 25 850"},
    {"NumberPage", "[t.csv]\nCharacterSet=932", "[,] [\"] header 25 932"},
    {"LargeScan", "[t.csv]\nMaxScanRows=4000000000", "[,] [\"] header 4000000000 0"}};

const IniCase kColLines[] = {
    {"Usual", "[t.csv]\nCol1=A Long\nCol2=\"Two Words\" Text Width 30\nCol3=C\n",
     "[,] [\"] header 25 0 A:3:0 Two Words:202:30 C:0:0"},
    {"GapEndsTheList", "[t.csv]\nCol1=A Bit\nCol3=C Long\n", "[,] [\"] header 25 0 A:11:0"},
    {"AnyOrder", "[t.csv]\ncol2=B byte\nCOL1=A SHORT\n", "[,] [\"] header 25 0 A:2:0 B:17:0"},
    {"WidthWithoutType", "[t.csv]\nCol1=A Width 5\n", "[,] [\"] header 25 0 A:0:5"},
    {"DatePicture", "[t.csv]\nCol1=A Date dd mm yyyy Width 10\nCol2=B DateTime\n",
     "[,] [\"] header 25 0 A:7:10:dd mm yyyy B:7:0"},
    {"QuotedAsAWhole", "[t.csv]\nCol1=\"A Text\"\nCol2=\"First Name\"\n",
     "[,] [\"] header 25 0 A:202:0 First Name:0:0"},
    {"DoubledQuoteInName", "[t.csv]\nCol1=\"5\"\" pipe\" Long\n", "[,] [\"] header 25 0 5\" pipe:3:0"},
    {"Fixed", "[t.csv]\nFormat=FixedLength\nFixedFormat=TrueFixedLength\nCol1=A Memo Width 2\n",
     "fixed [\"] header 25 0 A:203:2"}};

const IniCase kBroken[] = {{"Format", "[t.csv]\nFormat=Commas", "Format"},
                           {"OpenDelimiter", "[t.csv]\nFormat=Delimited(;", "Format"},
                           {"QuoteAsDelimiter", "[t.csv]\nFormat=Delimited(\")", "Format"},
                           {"Header", "[t.csv]\nColNameHeader=Maybe", "ColNameHeader"},
                           {"ScanRows", "[t.csv]\nMaxScanRows=-1", "MaxScanRows"},
                           {"UnknownPage", "[t.csv]\nCharacterSet=12345", "CharacterSet"},
                           {"UnknownPageWord", "[t.csv]\nCharacterSet=Latin", "CharacterSet"},
                           {"DecimalSymbol", "[t.csv]\nDecimalSymbol=,,", "DecimalSymbol"},
                           {"NegativeForm", "[t.csv]\nCurrencyNegFormat=16", "CurrencyNegFormat"},
                           {"QualifierInDelimiter", "[t.csv]\nFormat=Delimited(,')\nTextDelimiter='", "TextDelimiter"},
                           {"TypeWord", "[t.csv]\nCol1=A Number", "Col1"},
                           {"Width", "[t.csv]\nCol1=A Text\nCol2=B Text Width zero", "Col2"},
                           {"ZeroWidth", "[t.csv]\nCol1=A Text Width 0", "Col1"},
                           {"OpenName", "[t.csv]\nCol1=\"A Text", "Col1"},
                           {"FixedWithoutWidth", "[t.csv]\nFormat=FixedLength\nCol1=A Text Width 3\nCol2=B Long",
                            "In the fixed width specification 't.csv', column 'B' does not specify a width."},
                           {"FixedWithoutColumns", "[t.csv]\nFormat=FixedLength",
                            "In the fixed width specification 't.csv', column 'F1' does not specify a width."}};

const IniCase kOptions[] = {
    {"Usual", "text;HDR=Yes;FMT=Delimited", "[,] [\"] header 25 0"},
    {"All", " Text ; hdr = No ; fmt=TabDelimited;IMEX=1;CharacterSet=1250;MaxScanRows=0;", "[\t] [\"] bare 0 1250"},
    {"Delimiter", "text;FMT=Delimited(|);HDR=NO", "[|] [\"] bare 25 0"},
    {"SemicolonAsDelimiter", "text;FMT=Delimited(;);HDR=NO", "[;] [\"] bare 25 0"},
    {"ParenthesisAsDelimiter", "text;FMT=Delimited());HDR=NO", "[)] [\"] bare 25 0"},
    {"Empty", "", "[,] [\"] header 25 0"}};

TEST(SchemaIni, IsReadAsInWords) {
    for (const IniCase& row : kFrames) EXPECT_EQ(InWords(FormatIn(row.ini)), row.words) << row.name;
    for (const IniCase& row : kColLines) EXPECT_EQ(InWords(FormatIn(row.ini)), row.words) << row.name;
}

TEST(SchemaIni, IsRefusedInWords) {
    for (const IniCase& row : kBroken) {
        const bool isOption = std::string_view(row.words).find(' ') == std::string_view::npos;
        const std::string option = std::string("the '") + row.words + "' option is invalid.";
        EXPECT_EQ(ErrorOf([&] { FormatIn(row.ini); }),
                  isOption ? "In the text file specification 't.csv', " + option : row.words)
            << row.name;
        EXPECT_EQ(InWords(SchemaIni(row.ini).FormatOf("other.csv", {})), "[,] [\"] header 25 0") << row.name;
    }
}

TEST(TextOptions, AreReadFromTheConnectionString) {
    for (const IniCase& row : kOptions) EXPECT_EQ(InWords(ReadConnectionOptions(row.ini)), row.words) << row.name;
}

TEST(TextOptions, GiveWayToSchemaIni) {
    EXPECT_EQ(ReadText("1;2\n", "", "text;HDR=No;FMT=Delimited(;)").rows, "1|2");
    EXPECT_EQ(ReadText("1|2\n", "Format=Delimited(|)", "text;HDR=No;FMT=Delimited(;)").rows, "1|2");
    EXPECT_EQ(ReadText("A;B\n1;2\n", "ColNameHeader=True", "text;HDR=No;FMT=Delimited(;)").names, "A|B");
    EXPECT_EQ(ErrorOf([] { ReadConnectionOptions("text;FMT=Xml"); }),
              "In the text file specification 'Extended Properties', the 'Format' option is invalid.");
}

TEST(TextOptions, FixedHeaderLineIsPassedOver) {
    const Shown shown = ReadText("A,B\r\nxy7\r\n", "Format=FixedLength\r\nCol1=N Text Width 2\r\nCol2=M Long Width 2");
    EXPECT_EQ(shown.names + " " + shown.rows, "N|M \"xy\"|7");
}

}  // namespace
}  // namespace varnel::text
