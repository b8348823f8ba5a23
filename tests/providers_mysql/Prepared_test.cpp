// Prepared statements: every kind of value reaches its column, and a statement serves row after row.
#include <limits>

#include "tests/providers_mysql/MySqlTest.h"

namespace varnel {
namespace {

class MySqlPrepared : public MySqlTest {};

TEST_F(MySqlPrepared, EveryKindOfValueArrives) {
    const auto session = LogIn();
    session->Execute(
        "CREATE OR REPLACE TABLE kinds (a TINYINT, b BIGINT, c FLOAT, d DOUBLE, e DECIMAL(19,4), f DECIMAL(38,10),"
        " g DATETIME(6), h TEXT, i BLOB, j CHAR(38))");
    const auto insert = session->Prepare("INSERT INTO kinds VALUES (?,?,?,?,?,?,?,?,?,?)", {});
    const DateTime moment = FromCivil({2003, 7, 15, 13, 5, 9, 123456});
    const Row full{Value::OfBoolean(true),
                   Value::OfInteger(std::numeric_limits<std::int64_t>::min()),
                   Value::OfSingle(0.1F),
                   Value::OfDouble(0.1 + 0.2),
                   Value::OfCurrency(-12345),
                   Value::OfDecimal("1234567890123456789012345678.0123456789"),
                   Value::OfDateTime(moment),
                   Value::OfText("it's \\ 😀"),
                   Value::OfBytes(std::string("\0'\\\xff", 4)),
                   Value::OfGuid("{0123ABCD-0000-1111-2222-333344445555}")};
    insert->Execute(full);
    insert->Execute(Row(10));
    insert->Execute(full);
    const auto rows = Rows(*session, "SELECT * FROM kinds");
    ASSERT_EQ(rows.size(), 3U);
    for (const std::size_t k : {0U, 2U}) {
        EXPECT_EQ(Shown(rows[k][0]), "Integer 1");
        EXPECT_EQ(rows[k][1], full[1]);
        EXPECT_EQ(rows[k][2], full[2]);
        EXPECT_EQ(rows[k][3], full[3]);
        EXPECT_EQ(Shown(rows[k][4]), "Decimal -1.2345");
        EXPECT_EQ(rows[k][5], full[5]);
        EXPECT_EQ(rows[k][6], full[6]);
        EXPECT_EQ(rows[k][7], full[7]);
        EXPECT_EQ(rows[k][8], full[8]);
        EXPECT_EQ(Shown(rows[k][9]), "Text {0123ABCD-0000-1111-2222-333344445555}");
    }
    for (const Value& value : rows[1]) EXPECT_TRUE(value.IsNull());
}

TEST_F(MySqlPrepared, LongValuesGoInPieces) {
    const auto session = LogIn();
    session->Execute("CREATE OR REPLACE TABLE pieces (id INT, t LONGTEXT, b LONGBLOB)");
    const auto insert = session->Prepare("INSERT INTO pieces VALUES (?, ?, ?)", {});
    std::string text, bytes;
    for (int k = 0; k < 300'000; ++k) text += k % 3 == 0 ? "ä" : "x'";
    for (int k = 0; k < 3'000'000; ++k) bytes += static_cast<char>(k * 7);
    const Row rows[] = {{Value::OfInteger(1), Value::OfText(text), Value::OfBytes(bytes)},
                        {Value::OfInteger(2), Value::OfText("short"), Value()},
                        {Value::OfInteger(3), Value::OfText(""), Value::OfBytes(bytes)}};
    for (const Row& row : rows) insert->Execute(row);
    const auto stored = Rows(*session, "SELECT * FROM pieces ORDER BY id");
    ASSERT_EQ(stored.size(), 3U);
    for (std::size_t k = 0; k < 3; ++k) EXPECT_TRUE(stored[k] == rows[k]) << k;
}

TEST_F(MySqlPrepared, ARefusedRowLeavesTheStatementUsable) {
    const auto session = LogIn();
    session->Execute("CREATE OR REPLACE TABLE refused (id INT PRIMARY KEY, f DOUBLE)");
    const auto insert = session->Prepare("INSERT INTO refused VALUES (?, ?)", {});
    const auto run = [&](Value id, Value f) { return ErrorOf([&] { insert->Execute(Row{id, f}); }); };
    EXPECT_EQ(run(Value::OfInteger(1), Value::OfDouble(1)), "");
    EXPECT_EQ(run(Value::OfInteger(1), Value::OfDouble(2)), "Duplicate entry '1' for key 'PRIMARY'");
    EXPECT_NE(run(Value::OfInteger(2), Value::OfDouble(std::numeric_limits<double>::infinity())), "");
    Value failure;
    failure.SetFailure("unreadable");
    EXPECT_EQ(run(Value::OfInteger(3), failure), "unreadable");
    EXPECT_NE(ErrorOf([&] { insert->Execute(Row{Value::OfInteger(9)}); }), "");
    EXPECT_EQ(run(Value::OfInteger(4), Value::OfDouble(4)), "");
    EXPECT_EQ(Server().Ask("SELECT GROUP_CONCAT(id ORDER BY id) FROM shop.refused"), "1,4");
}

}  // namespace
}  // namespace varnel
