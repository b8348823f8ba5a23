// Rows added through a SELECT of the target's columns.
#include "ado/types/ValueConvert.h"
#include "tests/providers_mysql/MySqlTest.h"

namespace varnel {
namespace {

class MySqlAppending : public MySqlTest {
protected:
    static void Add(Appender& appender, const Row& values) {
        appender.Append(values, std::vector<bool>(values.size(), true));
    }
};

TEST_F(MySqlAppending, OnlyTheColumnsThatWereSetAreNamed) {
    const auto session = LogIn();
    session->Execute(
        "CREATE OR REPLACE TABLE `odd ``name` (id INT PRIMARY KEY AUTO_INCREMENT, name VARCHAR(10) DEFAULT 'none',"
        " n INT DEFAULT 7)");
    const auto appender = session->OpenAppender("SELECT  `id`, `name`, `n` FROM `odd ``name` ");
    ASSERT_EQ(appender->Columns().size(), 3U);
    EXPECT_EQ(appender->Columns()[1].type, adVarChar);
    EXPECT_EQ(appender->Columns()[1].definedSize, 10);
    const Row values{Value::OfInteger(50), Value::OfText("a\\b"), Value()};
    appender->Append(values, {true, true, true});
    appender->Append(values, {false, true, false});
    appender->Append(values, {false, false, false});
    appender->Append(values, {false, false, true});
    appender->Commit();
    EXPECT_EQ(Server().Ask("SELECT GROUP_CONCAT(id, name, IFNULL(n, '-') ORDER BY id) FROM shop.`odd ``name`"),
              "50a\\b-,51a\\b7,52none7,53none-");
}

struct TargetCase {
    const char* declared;
    Value set;
    const char* shown;
};

TEST_F(MySqlAppending, EveryColumnTypeTakesItsValues) {
    const auto session = LogIn();
    const TargetCase cases[] = {
        {"TINYINT", Value::OfBoolean(true), "Integer 1"},
        {"BIGINT UNSIGNED", Value::OfDecimal("18446744073709551615"), "Decimal 18446744073709551615"},
        {"FLOAT", Value::OfDouble(0.1), "Single 0.1"},
        {"DECIMAL(38,4)", Value::OfDecimal("-1234567890123456789012345678901234.5678"),
         "Decimal -1234567890123456789012345678901234.5678"},
        {"DATE", Value::OfText("2003-07-15"), "DateTime 2003-07-15 00:00:00"},
        {"DATETIME(6)", Value::OfDateTime(FromCivil({1899, 12, 30, 13, 5, 9, 5})),
         "DateTime 1899-12-30 13:05:09.000005"},
        {"TIME(6)", Value::OfDateTime({0, 13 * 3'600'000'000 + 5}), "DateTime 1899-12-30 13:00:00.000005"},
        {"TIMESTAMP NULL", Value::OfDateTime(FromCivil({2003, 7, 15, 13, 5, 9, 0})), "DateTime 2003-07-15 13:05:09"},
        {"BIT(12)", Value::OfBytes("\x0A\x01"), "Bytes 0A01"},
        {"JSON", Value::OfText("{\"a\":\"ä\"}"), "Text {\"a\":\"ä\"}"},
        {"LONGTEXT", Value::OfText("grün 😀"), "Text grün 😀"},
        {"VARBINARY(4)", Value::OfBytes("\xFF\x5C'"), "Bytes FF5C27"},
        {"GEOMETRY", Value::OfBytes(std::string("\0\0\0\0\1\1\0\0\0\0\0\0\0\0\0\xF0\x3F\0\0\0\0\0\0\0\x40", 25)),
         "Bytes 000000000101000000000000000000F03F0000000000000040"},
    };
    for (const TargetCase& target : cases) {
        SCOPED_TRACE(target.declared + (" " + Shown(target.set)));
        session->Execute("CREATE OR REPLACE TABLE target (v " + std::string(target.declared) + ")");
        const auto appender = session->OpenAppender("SELECT v FROM target");
        Value converted;
        ConvertValue(target.set, appender->Columns()[0].type, converted);
        Add(*appender, {converted});
        EXPECT_EQ(Shown(First(*session, "SELECT v FROM target")), target.shown);
    }
}

TEST_F(MySqlAppending, NeedsPlainColumnsOfOneTable) {
    const auto session = LogIn();
    session->Execute("CREATE OR REPLACE TABLE one (id INT)");
    session->Execute("CREATE OR REPLACE TABLE two (id INT)");
    for (const char* select : {"SELECT id + 1 FROM one", "SELECT one.id, two.id FROM one, two", "SELECT 1",
                               "INSERT INTO one VALUES (1)", "SELECT id FROM missing"})
        EXPECT_NE(ErrorOf([&] { session->OpenAppender(select); }), "") << select;
    EXPECT_EQ(Server().Ask("SELECT COUNT(*) FROM shop.one"), "0");
}

}  // namespace
}  // namespace varnel
