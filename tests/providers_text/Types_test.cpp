// Types found from the values, and types that Col lines state.
#include <gtest/gtest.h>
#include <span>

#include "providers/text/TextDatabase.h"
#include "tests/providers_text/TextTest.h"

namespace varnel::text {
namespace {

/// A column of values, one a line, beside a column that keeps empty values from being empty lines.
std::string Column(std::string_view values) {
    std::string bytes = "V;X\n";
    while (!values.empty()) {
        const std::size_t end = std::min(values.find('\n'), values.size());
        bytes.append(values.substr(0, end)).append(";x\n");
        values.remove_prefix(std::min(end + 1, values.size()));
    }
    return bytes;
}

/// Type and values of the column, without the one beside it.
std::string Told(const std::string& values, const std::string& schema = "") {
    const Shown shown = ReadText(Column(values), "Format=Delimited(;)\r\n" + schema);
    std::string told = shown.types.substr(0, shown.types.find('|')) + ":";
    std::string_view rest = shown.rows;
    for (const std::string_view neighbour = "|\"x\""; !rest.empty();) {
        const std::size_t end = rest.find(neighbour);
        told += " " + std::string(rest.substr(0, end));
        rest.remove_prefix(std::min(end + neighbour.size() + 1, rest.size()));
    }
    return told;
}

struct TypeCase {
    const char* name;
    const char* values;
    const char* told;
    const char* schema = "";
};
constexpr TypeCase kNumbers[] = {{"Long", "10\n20\n\n-7\n+5\n 3 \n0", "3: 10 20 ~ -7 5 3 0"},
                                 {"LongLimits", "2147483647\n-2147483648", "3: 2147483647 -2147483648"},
                                 {"BeyondLong", "2147483648\n1", "5: 2147483648 1"},
                                 {"BelowLong", "-2147483649", "5: -2147483649"},
                                 {"Double", "1\n2.5\n.5\n3.\n1E3\n-1.5e-2", "5: 1 2.5 0.5 3 1000 -0.015"},
                                 {"FifteenDigits", "123456789012345\n0.1", "5: 123456789012345 0.1"},
                                 {"SixteenDigits", "1234567890123456\n1", "202: \"1234567890123456\" \"1\""},
                                 {"LeadingZeros", "00501\n10001", "202: \"00501\" \"10001\""},
                                 {"PaddedFraction", "0.5\n007.5", "202: \"0.5\" \"007.5\""},
                                 {"BeyondDouble", "1E400\n1", "202: \"1E400\" \"1\""},
                                 {"BelowDouble", "1E-400\n1", "202: \"1E-400\" \"1\""},
                                 {"SignAlone", "-\n1", "202: \"-\" \"1\""},
                                 {"PointAlone", ".\n1", "202: \".\" \"1\""},
                                 {"ExponentWithoutDigits", "1E\n1", "202: \"1E\" \"1\""},
                                 {"NullIsAWord", "1\nNULL", "202: \"1\" \"NULL\""},
                                 {"BooleansAreText", "True\nFalse", "202: \"True\" \"False\""},
                                 {"AllQualified", "\"1\"\n\"2\"\n", "202: \"1\" \"2\""},
                                 {"SomeQualified", "\"1\"\n2\n\"\"", "3: 1 2 ~"},
                                 {"BlanksSayNothing", "  \n5\n\t", "3: ~ 5 ~"},
                                 {"NoValue", "\n\n", "202: ~ ~"},
                                 {"DecimalComma", "1,5\n2", "5: 1.5 2", "DecimalSymbol=,"},
                                 {"PointIsNoDecimalComma", "1.5\n2", "202: \"1.5\" \"2\"", "DecimalSymbol=,"}};

constexpr TypeCase kCurrency[] = {
    {"Symbol", "$1,234.50\n7\n\n-$0.0001", "6: 1234.5 7 ~ -0.0001"},
    {"AllNegativeForms",
     "($1.1)\n-$1.1\n$-1.1\n$1.1-\n(1.1$)\n-1.1$\n1.1-$\n1.1$-\n-1.1 $\n-$ 1.1\n1.1 $-\n$ 1.1-\n$ "
     "-1.1\n1.1- $\n($ 1.1)\n(1.1 $)",
     "6: -1.1 -1.1 -1.1 -1.1 -1.1 -1.1 -1.1 -1.1 -1.1 -1.1 -1.1 -1.1 -1.1 -1.1 -1.1 -1.1"},
    {"NoSymbolAtAll", "1,234\n5", "202: \"1,234\" \"5\""},
    {"WrongGroups", "$1,23\n$5", "202: \"$1,23\" \"$5\""},
    {"FiveDecimals", "$1.00001", "202: \"$1.00001\""},
    {"ZerosBehindFourDecimals", "$1.000100", "6: 1.0001"},
    {"Limit", "$922,337,203,685,477.5807\n-$922,337,203,685,477.5808", "6: 922337203685477.5807 -922337203685477.5808"},
    {"BeyondTheLimit", "$922,337,203,685,477.5808", "202: \"$922,337,203,685,477.5808\""},
    {"TwoSigns", "-$-1\n$1", "202: \"-$-1\" \"$1\""},
    {"SymbolAlone", "$\n$1", "202: \"$\" \"$1\""},
    {"ExponentIsNoAmount", "1E2\n$1", "202: \"1E2\" \"$1\""},
    {"OtherSymbols", "\"1.234,50 \xE2\x82\xAC\"\n2,5", "6: 1234.5 2.5",
     "CurrencySymbol=\xE2\x82\xAC\r\nCurrencyThousandSymbol=.\r\nCurrencyDecimalSymbol=,\r\n"
     "CurrencyNegFormat=15\r\nCurrencyPosFormat=3\r\nDecimalSymbol=,"}};

constexpr TypeCase kDates[] = {
    {"MonthFirst", "11/18/2026\n1/2/26\n", "7: 2026-11-18 00:00:00 2026-01-02 00:00:00"},
    {"DayFirstInTheLastRow", "1-2-26\n2-3-26\n31-12-99",
     "7: 2026-02-01 00:00:00 2026-03-02 00:00:00 1999-12-31 00:00:00"},
    {"BothOrders", "13/2/2026\n2/13/2026", "202: \"13/2/2026\" \"2/13/2026\""},
    {"Iso", "2026-11-18\n2026/1/2\n2026-Nov-18", "7: 2026-11-18 00:00:00 2026-01-02 00:00:00 2026-11-18 00:00:00"},
    {"MonthNames", "18-Nov-26\n18-NOVEMBER-2026\nNov-18-26\nnov 18, 2026",
     "7: 2026-11-18 00:00:00 2026-11-18 00:00:00 2026-11-18 00:00:00 2026-11-18 00:00:00"},
    {"ThreePartsWithDots", "18.11.2026\n1.2.2026", "7: 2026-11-18 00:00:00 2026-02-01 00:00:00"},
    {"TwoPartsWithADotAreANumber", "18.11", "5: 18.11"},
    {"MixedSeparators", "1/2-2026", "202: \"1/2-2026\""},
    {"WithTimes", "2026-11-18 16:23:05\n2026-11-18T04:05\n11/18/2026 4:23:05 PM\n11/18/2026 12:00 am",
     "7: 2026-11-18 16:23:05 2026-11-18 04:05:00 2026-11-18 16:23:05 2026-11-18 00:00:00"},
    {"Fraction", "2026-11-18 16:23:05.25", "7: 2026-11-18 16:23:05.25"},
    {"TimeAlone", "16:23\n4:23:05 PM", "7: 1899-12-30 16:23:00 1899-12-30 16:23:05"},
    {"ZoneIsNoTime", "2026-11-18T16:23:05Z", "202: \"2026-11-18T16:23:05Z\""},
    {"NoSuchDay", "2026-02-29\n2026-01-01", "202: \"2026-02-29\" \"2026-01-01\""},
    {"YearsOfTwoDigits", "1/1/29\n1/1/30", "7: 2029-01-01 00:00:00 1930-01-01 00:00:00"},
    {"YearTooEarly", "0099-01-01", "202: \"0099-01-01\""},
    {"NumbersAndDates", "5\n2026-11-18", "202: \"5\" \"2026-11-18\""},
    {"Picture", "18.11.26\n1.2.26", "7: 2026-11-18 00:00:00 2026-02-01 00:00:00", "DateTimeFormat=dd.mm.yy"},
    {"PictureOnly", "2026-11-18\n18.11.26", "202: \"2026-11-18\" \"18.11.26\"", "DateTimeFormat=dd.mm.yy"},
    {"PictureWithTimeTakesTheDateAlone", "2026-11-18 16:23:05\n2026-11-18",
     "7: 2026-11-18 16:23:05 2026-11-18 00:00:00", "DateTimeFormat=yyyy-mm-dd hh:nn:ss"},
    {"PictureMinutesBehindHours", "18-Nov-2026 04:23 PM", "7: 2026-11-18 16:23:00",
     "DateTimeFormat=d-mmm-yyyy hh:mm AM/PM"},
    {"PictureWithoutSeparators", "20261118T1623\n20260102T0304", "7: 2026-11-18 16:23:00 2026-01-02 03:04:00",
     "DateTimeFormat=yyyymmdd\"T\"hhnn"}};

/// told with "@7" written out as the place of record 7.
std::string WithPlaces(std::string told) {
    for (std::size_t at = told.find('@'); at != std::string::npos; at = told.find('@', at)) {
        told.replace(at, 2, std::string(" in 't.csv', record ") + told[at + 1] + ", column 'V'");
    }
    return told;
}

constexpr TypeCase kStated[] = {
    {"Bit", "True\nno\nON\n0\n-1\n\nmaybe\n2", "11: True False True False True ~ !Type mismatch@7 !Type mismatch@8",
     "Bit"},
    {"Byte", "0\n255\n256\n-1", "17: 0 255 !Overflow@3 !Overflow@4", "Byte"},
    {"ShortRoundsTiesToEven", "2.5\n3.5\n-2.5\n00123\n32767.4\n32767.5\n1E3", "2: 2 4 -2 123 32767 !Overflow@6 1000",
     "Short"},
    {"IntegerIsShort", "40000\nx", "2: !Overflow@1 !Type mismatch@2", "Integer"},
    {"Long", "99999999999\n7\n  ", "3: !Overflow@1 7 ~", "long"},
    {"Single", "1.5\n1E39", "4: 1.5 !Overflow@2", "Single"},
    {"Double", "0.1\n12345678901234567890\n1E309", "5: 0.1 1.2345678901234567E+19 !Overflow@3", "Float"},
    {"Decimal", "12345678901234567890.5\n1E50", "131: 12345678901234567890.5 !Overflow@2", "Decimal"},
    {"CurrencyKeepsAllDecimals", "$5\n1.00005\n1,000", "6: 5 !Type mismatch@2 1000", "Currency"},
    {"DateTimeFindsItsOrder", "1/2/2026\n13/2/2026\nsoon",
     "7: 2026-02-01 00:00:00 2026-02-13 00:00:00 !Type mismatch@3", "DateTime"},
    {"DateTimeOfBothOrders", "13/2/2026\n2/13/2026", "7: !Type mismatch@1 2026-02-13 00:00:00", "DateTime"},
    {"DateWithPicture", "181126\n1/2/26", "7: 2026-11-18 00:00:00 !Type mismatch@2", "Date ddmmyy"},
    {"TextWidth", "abc\nabcd\n\xC3\xA4\xC3\xB6\xC3\xBC\n\n\"\"",
     "202: \"abc\" !The field is too small to accept the amount of data you attempted to add@2 "
     "\"\xC3\xA4\xC3\xB6\xC3\xBC\" ~ \"\"",
     "Char Width 3"},
    {"Memo", "abc", "203: \"abc\"", "LongChar Width 2"},
    {"NumbersAsText", "007\n1", "202: \"007\" \"1\"", "Text"}};

TEST(TextTypes, AreTheFirstThatAllValuesFit) {
    for (const auto& cases : std::initializer_list<std::span<const TypeCase>>{kNumbers, kCurrency, kDates})
        for (const TypeCase& row : cases) EXPECT_EQ(Told(row.values, row.schema), row.told) << row.name;
}

TEST(TextTypes, GiveValuesOrFailuresWhereTheyAreStated) {
    for (const TypeCase& row : kStated) {
        const std::string col = std::string("Col1=V ") + row.schema + "\r\nCol2=X Text Width 1";
        EXPECT_EQ(Told(row.values, col), WithPlaces(row.told)) << row.name;
    }
}

TEST(TextTypes, KeepLongTextsWhole) {
    const std::string letters255(255, 'a'), letters256(256, 'b');
    std::string umlauts;
    for (int k = 0; k < 255; ++k) umlauts += "\xC3\xA4";
    EXPECT_EQ(Told(letters255 + "\n" + umlauts), "202: \"" + letters255 + "\" \"" + umlauts + "\"");
    EXPECT_EQ(Told("x\n" + letters256), "203: \"x\" \"" + letters256 + "\"");
    EXPECT_EQ(Told("1\n" + std::string(300, '7')), "203: \"1\" \"" + std::string(300, '7') + "\"");
}

TEST(TextTypes, ReportSizes) {
    const TempFolder folder;
    folder.Write("t.csv", "1,2,3,4,5,6,7,8,9,10\n");
    folder.Write("Schema.ini",
                 "[t.csv]\nColNameHeader=False\nCol1=A Bit\nCol2=B Byte\nCol3=C Short\nCol4=D Long\nCol5=E Currency\n"
                 "Col6=F Single\nCol7=G Double\nCol8=H DateTime\nCol9=I Text Width 40\nCol10=J Memo\n");
    TextDatabase database(folder.Path());
    const auto table = database.OpenTable("t.csv");
    std::string sizes;
    for (const ColumnInfo& column : table->Columns()) {
        sizes += std::to_string(column.definedSize) + "/" + std::to_string(column.precision) + " ";
    }
    EXPECT_EQ(sizes, "2/255 1/3 2/5 4/10 8/19 4/7 8/15 8/255 40/255 536870910/255 ");
}

}  // namespace
}  // namespace varnel::text
