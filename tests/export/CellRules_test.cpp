#include "export/CellRules.h"

#include <gtest/gtest.h>

#include "export/Padding.h"
#include "platform/Error.h"

namespace varnel {
namespace {

Value Moment(int hour) {
    return Value::OfDateTime(FromCivil({2026, 11, 18, hour, 0, 0, 0}));
}

std::string Blanks(int n) {
    return BlankString(n);
}

struct CellCase {
    DataTypeEnum type;
    std::int64_t size;
    Value value;
    std::string delimited, fixed;
};

TEST(CellRules, WriteEveryTypeGroupInBothLayouts) {
    const std::string noon = "11/18/2026 12:00:00 PM";
    const CellCase cases[] = {
        {adVarWChar, 10, Value::OfText("Smith "), "'Smith'", "Smith     "},
        {adVarWChar, 3, Value::OfText(" a,'b "), "'a,'b'", " a,'b "},
        {adVarWChar, 4, Value::OfText(""), "''", "    "},
        {adLongVarWChar, 4, Value(), "", "    "},
        {adVarWChar, 4, Value::OfText("\xC3\xA9"), "'\xC3\xA9'", "\xC3\xA9   "},
        {adDate, 8, Moment(0), "11/18/2026", "11/18/2026"},
        {adDate, 8, Moment(12), noon, noon},
        {adDBTime, 6, Value::OfDateTime({0, 0}), "12:00:00 AM", "12:00:00 AM"},
        {adDBDate, 6, Value(), "", Blanks(10)},
        {adDBTimeStamp, 16, Moment(0), "11/18/2026", "11/18/2026" + Blanks(12)},
        {adDBTimeStamp, 16, Moment(12), noon, noon},
        {adDBTimeStamp, 16, Value(), "", Blanks(22)},
        {adInteger, 4, Value::OfInteger(42), "42", "     42"},
        {adSmallInt, 2, Value::OfInteger(-7), "-7", "     -7"},
        {adInteger, 4, Value::OfInteger(-123456789), "-123456789", "-123456"},
        {adDouble, 8, Value::OfDouble(0.5), "0.5", Blanks(14) + "0.5"},
        {adCurrency, 8, Value::OfCurrency(125'000), "12.5", Blanks(17) + "12.5"},
        {adCurrency, 8, Value(), "", Blanks(21)},
        {adNumeric, 19, Value::OfDecimal("12.50"), "12.5", Blanks(15) + "12.5"},
        {adNumeric, 4, Value::OfDecimal("12345"), "12345", "    "},
        {adNumeric, 5, Value::OfDecimal("12345"), "12345", "12345"},
        {adNumeric, 3, Value(), "", "   "},
        {adVarNumeric, 38, Value::OfDecimal("42"), "42", Blanks(38) + "42"},
        {adVarNumeric, 38, Value(), "", Blanks(40)},
        {adBoolean, 2, Value::OfBoolean(true), "True", "True "},
        {adBoolean, 2, Value::OfBoolean(false), "False", "False"},
        {adBoolean, 2, Value(), "", "False"},
        {adSingle, 4, Value::OfSingle(2.5F), "2.5", " 2.5"},
        {adBigInt, 8, Value::OfInteger(-12), "-12", "     -12"},
        {adUnsignedTinyInt, 1, Value::OfInteger(200), "200", " 200"},
        {adVarBinary, 2, Value::OfBytes("\x01\xAB"), "01AB", "?"},
        {adGUID, 16, Value(), "", Blanks(16)},
    };
    for (const CellCase& c : cases) {
        const CellRule rule{GroupOfType(c.type), c.type, c.size, false};
        std::string delimited, fixed;
        AppendDelimitedCell(delimited, rule, c.value, "'");
        EXPECT_EQ(delimited, c.delimited) << static_cast<int>(c.type);
        if (c.fixed == "?") {
            EXPECT_THROW(AppendFixedCell(fixed, rule, c.value), Error);
        } else {
            AppendFixedCell(fixed, rule, c.value);
            EXPECT_EQ(fixed, c.fixed) << static_cast<int>(c.type);
        }
    }
}

TEST(CellRules, StandLeftWhereTextGoesToText) {
    struct Case {
        const char* typeName;
        DataTypeEnum type;
        std::int64_t size;
        Value value;
        std::string fixed;
    };
    const Case cases[] = {
        {"131", adNumeric, 6, Value::OfDecimal("12.5"), "12.5  "},
        {"131", adNumeric, 3, Value::OfDecimal("12.5"), "   "},
        {"139", adInteger, 4, Value::OfInteger(42), "42" + Blanks(38)},
        {"Currency", adCurrency, 8, Value::OfCurrency(125'000), " 12.5" + Blanks(15)},
        {"integer", adInteger, 4, Value::OfInteger(7), " 7  "},
        {"CHAR", adVarWChar, 5, Value(), Blanks(5)},
        {"Integer", adVarWChar, 255, Value::OfText("7"), ""},
        {"Integer", adInteger, 4, Value::OfInteger(7), "      7"},
        {"Char", adInteger, 4, Value::OfInteger(7), "7   "},
        {"129", adVarWChar, 3, Value::OfText("x"), "x  "},
        {"11", adBoolean, 2, Value::OfBoolean(true), "True "},
    };
    for (const Case& c : cases) {
        std::string fixed;
        AppendFixedCell(fixed, {GroupOfTypeName(c.typeName), c.type, c.size, true}, c.value);
        EXPECT_EQ(fixed, c.fixed) << c.typeName;
    }
    std::string cell;
    EXPECT_THROW(AppendFixedCell(cell, {GroupOfTypeName("CHAR"), adVarWChar, 9, true}, Value::OfText("x")), Error);
    AppendDelimitedCell(cell, {GroupOfTypeName("CHAR"), adVarWChar, 9, true}, Value::OfText("x "), "'");
    EXPECT_EQ(cell, "x ");
}

TEST(CellRules, RefuseACellBeyondAllReason) {
    const CellRule memo{CellGroup::Text, adLongVarWChar, 536'870'910, false};
    std::string cell;
    EXPECT_THROW(AppendFixedCell(cell, memo, Value()), Error);
    cell.clear();
    AppendFailedFixedCell(cell, memo);
    EXPECT_EQ(cell, "");
}

TEST(CellRules, WriteHeaderCellsByTheStoredOutputType) {
    struct Case {
        const char *name, *type;
        int width;
        const char* fixed;
    };
    const Case cases[] = {
        {"ID", "INTEGER", 0, "ID     "},
        {"NAME", "VARCHAR", 10, "NAME      "},
        {"PRICE", "CURRENCY", 0, "PRICE                "},
        {"ACTIVE", "BOOLEAN", 0, "ACTIV"},
        {"OK", "bit", 0, "OK   "},
        {"Created_on_day", "DateTime", 0, "Created_on"},
        {"N", "MEDIUMINT", 9, ""},
        {"N", "LONGINT", 9, ""},
        {"N", "SMALLINT", 9, "N      "},
        {"N", "smallint", 9, ""},
        {"LONGNAME", "TEXT", 4, "LONG"},
        {"\xC3\xA4\xC3\xB6\xC3\xBC", "TEXT", 2, "\xC3\xA4\xC3\xB6"},
        {"A", "TEXT", 0, ""},
        {"AMOUNTOFMONEYINEUROSANDCENTS", "money", 0, "AMOUNTOFMONEYINEUROSA"},
    };
    for (const Case& c : cases) {
        ColumnEntry column;
        column.DCName = c.name;
        column.DDType = c.type;
        column.DWidth = c.width;
        std::string fixed, delimited;
        AppendHeaderCell(fixed, column, false);
        AppendHeaderCell(delimited, column, true);
        EXPECT_EQ(fixed, c.fixed) << c.name << " " << c.type;
        EXPECT_EQ(delimited, c.name);
    }
}

TEST(Padding, KeepsItsWidthsByTypeNameAndByFieldType) {
    EXPECT_EQ(PadNumberByTypeName(Value::OfInteger(42), "Integer", false), "42     ");
    EXPECT_EQ(PadNumberByTypeName(Value::OfInteger(42), "text", false), "");
    EXPECT_EQ(PadNumberByTypeName(Value(), "LONG", true), Blanks(17));
    EXPECT_EQ(PadNumberByTypeName(Value::OfText("ABCDEFGHI"), "SMALLINT", true), "ABCDEFG");
    EXPECT_THROW(PadNumberByTypeName(Value::OfText("x"), "LONG", false), Error);
    EXPECT_EQ(PadNumberByFieldType(Value(), adDouble, false), Blanks(17));
    EXPECT_EQ(PadNumberByFieldType(Value::OfInteger(5), adVarWChar, false), "");
    EXPECT_EQ(PadNumberByFieldType(Value::OfText("no number"), adVarWChar, false), "");
    EXPECT_EQ(BlankString(-3), "");
}

}  // namespace
}  // namespace varnel
