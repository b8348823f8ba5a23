#include "load/BatchInsert.h"

#include <gtest/gtest.h>

#include "platform/Error.h"

namespace varnel {
namespace {

Value Moment(int year, int month, int day, int hour, int minute, int second) {
    return Value::OfDateTime(FromCivil({year, month, day, hour, minute, second, 0}));
}

TEST(BatchInsert, WritesEachValueByItsFieldsTypeGroup) {
    struct Case {
        DataTypeEnum type;
        Value value;
        const char* literal;
    };
    const Case cases[] = {
        {adDate, Moment(2003, 7, 15, 13, 5, 9), "'2003-07-15-13-05-09'"},
        {adDBTimeStamp, Moment(2003, 7, 15, 0, 0, 0), "'2003-07-15-00-00-00'"},
        {adDBTime, Value::OfDateTime({0, 3600 * kMicrosPerSecond}), "'1899-12-30-01-00-00'"},
        {adDate, Value(), "NULL"},
        {adDate, Value::OfText("2003-07-15"), "'2003-07-15-00-00-00'"},
        {adVarWChar, Value::OfText("O'Brien''s"), "'O''Brien''''s'"},
        {adVarWChar, Value::OfText("'"), "''''"},
        {adVarWChar, Value::OfText(""), "''"},
        {adVarWChar, Value::OfText("a\\b\r\nc"), "'a\\b\r\nc'"},
        {adVarWChar, Value::OfText("NULL"), "NULL"},
        {adVarWChar, Value::OfText("Null"), "'Null'"},
        {adChar, Value(), "NULL"},
        {adInteger, Value::OfInteger(-7), "-7"},
        {adDouble, Value::OfDouble(1.5e-7), "1.5E-07"},
        {adDouble, Value::OfDouble(0.5), "0.5"},
        {adCurrency, Value::OfCurrency(-5), "-0.0005"},
        {adNumeric, Value::OfDecimal("12345678901234567890.5"), "12345678901234567890.5"},
        {adNumeric, Value(), "NULL"},
        {adBoolean, Value::OfBoolean(true), "1"},
        {adBoolean, Value::OfBoolean(false), "0"},
        {adGUID, Value::OfGuid("{00112233-4455-6677-8899-AABBCCDDEEFF}"), "'{00112233-4455-6677-8899-AABBCCDDEEFF}'"},
        {adInteger, Value::OfText(" 12 "), "12"},
        {adVariant, Value::OfText("x'y"), "'x''y'"},
        {adVariant, Value::OfInteger(3), "3"},
        {adVariant, Value::OfBytes("\x01\xAB"), "X'01AB'"},
    };
    for (const Case& c : cases) {
        std::string out;
        AppendLiteral(out, c.type, c.value);
        EXPECT_EQ(out, c.literal);
    }
}

TEST(BatchInsert, LeavesAFailedValueOutOfItsTuple) {
    BatchInsert batch("INSERT INTO `t` ( `a`, `b`) VALUES ");
    EXPECT_TRUE(batch.Empty());
    batch.StartRow();
    batch.AddValue(adInteger, Value::OfInteger(1));
    EXPECT_THROW(batch.AddValue(adInteger, Value::OfText("none")), Error);
    EXPECT_THROW(batch.AddValue(adDate, Value::OfText("none")), Error);
    batch.EndRow();
    EXPECT_EQ(batch.Finish(";"), "INSERT INTO `t` ( `a`, `b`) VALUES (1);");
}

TEST(BatchInsert, JoinsRowsAndStartsAnewAfterClear) {
    BatchInsert batch("INSERT INTO `customer` ( `id`, `name`) VALUES ");
    for (const char* name : {"Smith", "O'Brien"}) {
        batch.StartRow();
        batch.AddValue(adInteger, Value::OfInteger(name[0] == 'S' ? 1 : 2));
        batch.AddValue(adVarWChar, Value::OfText(name));
        batch.EndRow();
    }
    EXPECT_EQ(batch.Finish(";"), "INSERT INTO `customer` ( `id`, `name`) VALUES (1,'Smith'),(2,'O''Brien');");
    batch.Clear();
    EXPECT_TRUE(batch.Empty());
    batch.StartRow();
    batch.AddValue(adInteger, Value());
    batch.EndRow();
    EXPECT_EQ(batch.Finish(""), "INSERT INTO `customer` ( `id`, `name`) VALUES (NULL)");
}

}  // namespace
}  // namespace varnel
