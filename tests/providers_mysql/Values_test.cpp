// Every column type: how it is described, and that its values arrive whole.
#include <algorithm>

#include "tests/providers_mysql/MySqlTest.h"

namespace varnel {
namespace {

struct TypeCase {
    const char* declared;
    DataTypeEnum type;
    std::int64_t size;
    int precision = kNotStated, scale = kNotStated;
};

constexpr TypeCase kTypes[] = {{"TINYINT", adTinyInt, 1, 3},
                               {"TINYINT UNSIGNED", adUnsignedTinyInt, 1, 3},
                               {"SMALLINT", adSmallInt, 2, 5},
                               {"SMALLINT UNSIGNED", adUnsignedSmallInt, 2, 5},
                               {"YEAR", adSmallInt, 2, 5},
                               {"MEDIUMINT", adInteger, 4, 10},
                               {"INT", adInteger, 4, 10},
                               {"INT UNSIGNED", adUnsignedInt, 4, 10},
                               {"BIGINT", adBigInt, 8, 19},
                               {"BIGINT UNSIGNED", adUnsignedBigInt, 8, 20},
                               {"FLOAT", adSingle, 4, 7},
                               {"DOUBLE", adDouble, 8, 15},
                               {"DATE", adDBDate, 6},
                               {"TIME", adDBTime, 6},
                               {"DATETIME(6)", adDBTimeStamp, 16},
                               {"VARCHAR(50)", adVarChar, 50},
                               {"SET('a','b')", adChar, 3},
                               {"TEXT", adLongVarChar, 65535},
                               {"LONGTEXT", adLongVarChar, 2147483647},
                               {"JSON", adLongVarChar, 2147483647},
                               {"BINARY(4)", adBinary, 4},
                               {"BLOB", adLongVarBinary, 65535},
                               {"GEOMETRY", adLongVarBinary, 2147483647},
                               {"BIT(1)", adBoolean, 2},
                               {"BIT(12)", adBinary, 2}};

class MySqlValues : public MySqlTest {};

TEST_F(MySqlValues, ColumnsAreDescribed) {
    const auto session = LogIn();
    session->Execute("DROP TABLE IF EXISTS described");
    std::string columns = "id INT NOT NULL";
    for (std::size_t k = 0; k < std::size(kTypes); ++k) columns += ", c" + std::to_string(k) + " " + kTypes[k].declared;
    session->Execute("CREATE TABLE described (" + columns + ")");
    const auto reader = session->Query("SELECT * FROM described");
    ASSERT_EQ(reader->Columns().size(), std::size(kTypes) + 1);
    EXPECT_FALSE(reader->Columns()[0].nullable);
    for (std::size_t k = 0; k < std::size(kTypes); ++k) {
        const ColumnInfo& column = reader->Columns()[k + 1];
        SCOPED_TRACE(kTypes[k].declared);
        EXPECT_EQ(column.name, "c" + std::to_string(k));
        EXPECT_EQ(column.type, kTypes[k].type);
        EXPECT_EQ(column.definedSize, kTypes[k].size);
        EXPECT_EQ(column.precision, kTypes[k].precision);
        EXPECT_EQ(column.numericScale, kTypes[k].scale);
        EXPECT_TRUE(column.nullable);
    }
    Row row(reader->Columns().size());
    EXPECT_FALSE(reader->Next(row));
}

struct ValueCase {
    const char* declared;
    const char* literal;
    const char* shown;
};

constexpr ValueCase kValues[] = {
    {"TINYINT", "-128", "Integer -128"},
    {"TINYINT UNSIGNED", "255", "Integer 255"},
    {"INT UNSIGNED ZEROFILL", "42", "Integer 42"},
    {"INT UNSIGNED", "4294967295", "Integer 4294967295"},
    {"BIGINT UNSIGNED", "18446744073709551615", "Decimal 18446744073709551615"},
    {"DOUBLE", "0.1e0 + 0.2e0", "Double 0.30000000000000004"},
    {"DOUBLE", "1.7976931348623157e308", "Double 1.7976931348623157E+308"},
    {"FLOAT", "16777217", "Single 16777216"},
    {"FLOAT", "1234567.9", "Single 1234567.9"},
    {"DECIMAL(12,4)", "-12345678.5", "Decimal -12345678.5"},
    {"DECIMAL(38,10)", "-1234567890123456789012345678.0123456789", "Decimal -1234567890123456789012345678.0123456789"},
    {"DECIMAL(65,30)", "12345678901.5", "Decimal 12345678901.5"},
    {"DECIMAL(65,0)", "123456789012345678901234567890123456789",
     "Failure The number 123456789012345678901234567890123456789 in column 'v' has more than 38 digits"},
    {"DATE", "'0001-01-01'", "DateTime 0001-01-01 00:00:00"},
    {"DATE", "'9999-12-31'", "DateTime 9999-12-31 00:00:00"},
    {"DATE", "'0000-00-00'", "Null"},
    {"DATE", "'2003-05-00'", "Failure The value 2003-05-00 in column 'v' is not a date"},
    {"DATETIME(6)", "'2003-07-15 13:05:09.123456'", "DateTime 2003-07-15 13:05:09.123456"},
    {"DATETIME", "'2003-07-15-13-05-09'", "DateTime 2003-07-15 13:05:09"},
    {"DATETIME", "'0000-00-00 00:00:00'", "Null"},
    {"TIMESTAMP NULL", "'2003-07-15 13:05:09'", "DateTime 2003-07-15 13:05:09"},
    {"TIME(6)", "'00:00:00.000001'", "DateTime 1899-12-30 00:00:00.000001"},
    {"TIME", "'24:00:00'", "Failure The time 24:00:00 in column 'v' is not a time of day"},
    {"TIME", "'-800:00:01'", "Failure The time -800:00:01 in column 'v' is not a time of day"},
    {"CHAR(10)", "'ab'", "Text ab"},
    {"VARCHAR(50)", "''", "Text "},
    {"VARCHAR(50)", "'a\\\\b'", "Text a\\b"},
    {"VARCHAR(50)", "'grün 😀 漢'", "Text grün 😀 漢"},
    {"VARCHAR(50) CHARACTER SET latin1", "'grün'", "Text grün"},
    {"ENUM('small','large')", "'large'", "Text large"},
    {"SET('a','b')", "'a,b'", "Text a,b"},
    {"TEXT", "'a\r\nb\tc'", "Text a\r\nb\tc"},
    {"JSON", "'{\"a\": 1}'", "Text {\"a\": 1}"},
    {"BINARY(4)", "x'00FF27'", "Bytes 00FF2700"},
    {"VARBINARY(20)", "x'00FF5C27'", "Bytes 00FF5C27"},
    {"BLOB", "x''", "Bytes "},
    {"BIT(1)", "b'1'", "Boolean True"},
    {"BIT(12)", "b'101000000001'", "Bytes 0A01"},
    {"GEOMETRY", "ST_GeomFromText('POINT(1 2)')", "Bytes 000000000101000000000000000000F03F0000000000000040"},
};

TEST_F(MySqlValues, ValuesArriveWhole) {
    const auto session = LogIn("INITSTMT={SET sql_mode=''}");
    for (const ValueCase& value : kValues) {
        SCOPED_TRACE(std::string(value.declared) + " " + value.literal);
        session->Execute("CREATE OR REPLACE TABLE whole (v " + std::string(value.declared) + ")");
        session->Execute("SET sql_mode=''");
        Server().Run({"SET sql_mode=''", "INSERT INTO shop.whole VALUES (" + std::string(value.literal) + ")"});
        EXPECT_EQ(Shown(First(*session, "SELECT v FROM whole")), value.shown);
    }
}

TEST_F(MySqlValues, LongValuesOfManySizesArriveWhole) {
    const auto session = LogIn();
    session->Execute("CREATE OR REPLACE TABLE longs (id INT, t LONGTEXT, b LONGBLOB)");
    const int sizes[] = {0, 95, 96, 97, 8191, 8192, 8193, 70000, 5'000'000};
    for (const int size : sizes)
        session->Execute("INSERT INTO longs VALUES (" + std::to_string(size) + ", REPEAT('ä', " + std::to_string(size) +
                         "), REPEAT(x'00', " + std::to_string(size) + "))");
    const auto rows = Rows(*session, "SELECT id, t, b, t IS NULL FROM longs ORDER BY id");
    ASSERT_EQ(rows.size(), std::size(sizes));
    for (const Row& row : rows) {
        const auto size = static_cast<std::size_t>(row[0].AsInteger());
        EXPECT_EQ(row[1].AsText().size(), 2 * size);
        EXPECT_TRUE(size == 0 || row[1].AsText().substr(2 * size - 2) == "ä");
        EXPECT_EQ(row[2].AsBytes().size(), size);
        EXPECT_TRUE(std::ranges::all_of(row[2].AsBytes(), [](auto byte) { return byte == 0; }));
    }
}

TEST_F(MySqlValues, OptionsChangeHowColumnsAreRead) {
    const auto session = LogIn("OPTION=16793600");  // no bigint, zero dates to the minimum
    session->Execute("SET sql_mode=''");
    session->Execute("CREATE OR REPLACE TABLE zeros (d DATE, n BIGINT)");
    session->Execute("INSERT INTO zeros VALUES (20030700, 5000000000)");
    Server().Run({"SET sql_mode=''", "INSERT INTO shop.zeros VALUES ('0000-00-00', 1)"});
    const auto reader = session->Query("SELECT d, n FROM zeros ORDER BY n DESC");
    EXPECT_EQ(reader->Columns()[1].type, adInteger);
    EXPECT_EQ(reader->Columns()[1].definedSize, 4);
    Row row(2);
    ASSERT_TRUE(reader->Next(row));
    EXPECT_EQ(Shown(row[0]), "DateTime 2003-07-01 00:00:00");
    EXPECT_EQ(Shown(row[1]), "Integer 5000000000");
    ASSERT_TRUE(reader->Next(row));
    EXPECT_EQ(Shown(row[0]), "DateTime 0100-01-01 00:00:00");
}

}  // namespace
}  // namespace varnel
