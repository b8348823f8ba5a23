// The statements that the programs above send, as they send them, and what goes wrong with them.
#include <gtest/gtest.h>

#include "platform/Clock.h"
#include "tests/providers_sql/SqlTestDatabase.h"
#include "tests/support/ErrorOf.h"

namespace varnel {
namespace {

TEST(Statements, MakeFillEmptyAndDropATargetTable) {
    SqlTestDatabase database;
    database.Run(
        "Create Table [Order Lines] (\r [ID] Long,\r [Name] Text(50),\r [Flag]  yesno,\r [Pic]  oleobject,\r [Rate] "
        "Double\r)");
    EXPECT_EQ(ErrorOf([&] { database.Run("Create Table [order lines] (\r [ID] Long\r)"); }),
              "Table 'order lines' already exists.");
    database.Run("insert into [Order Lines] values (1, \"it's\", True, Null, 1.5)");
    database.Run("INSERT INTO `Order Lines` (Rate, ID) VALUES (-2, 2), (3+4, 3)");
    EXPECT_EQ(database.Ask("SELECT [ID],[Name],[Flag],[Rate] FROM [Order Lines]"),
              "1|it's|True|1.5;2|NULL|NULL|-2;3|NULL|NULL|7");
    EXPECT_EQ(ErrorOf([&] { database.Run("insert into [Order Lines] (ID) values ('many')"); }),
              "Type mismatch: 'many' does not convert to Integer");
    EXPECT_EQ(ErrorOf([&] { database.Run("insert into [Order Lines] (ID) values (1,2)"); }),
              "Number of query values and destination fields are not the same.");
    database.Run("UPDATE [Order Lines] SET Rate=Rate*2, Name=Name & '!' WHERE ID>1");
    EXPECT_EQ(database.Ask("SELECT ID, Name, Rate FROM [Order Lines] WHERE ID>1"), "2|!|-4;3|!|14");
    database.Run("DELETE * FROM [Order Lines] WHERE Name Like '!'");
    EXPECT_EQ(database.Ask("SELECT count(*) FROM [Order Lines]"), "1");
    database.Run("delete from [Order Lines];");
    EXPECT_EQ(database.Ask("SELECT count(*) FROM [Order Lines]"), "0");
    database.Run("drop table [Order Lines]");
    EXPECT_EQ(ErrorOf([&] { database.Run("drop table [Order Lines]"); }), "Table 'Order Lines' does not exist.");
    EXPECT_EQ(ErrorOf([&] { database.Run("delete from [Order Lines]"); }),
              "The Jet database engine cannot find the input table or query 'Order Lines'.");
}

TEST(Statements, ReportRefusedRowsInKnownWords) {
    SqlTestDatabase database;
    database.Run("CREATE TABLE T (ID Integer PRIMARY KEY, N Text(9) NOT NULL, U Long UNIQUE)");
    database.Run("INSERT INTO T VALUES (1,'a',1)");
    const std::string duplicate =
        "The changes were not successful because they would create duplicate values in the index, primary key, or "
        "relationship. (UNIQUE constraint failed: T.";
    const struct {
        const char* statement;
        std::string error;
    } cases[] = {
        {"INSERT INTO T VALUES (1,'b',2)", duplicate + "ID)"},
        {"INSERT INTO T VALUES (2,'b',1)", duplicate + "U)"},
        {"INSERT INTO T VALUES (2,NULL,2)", "The field 'N' cannot contain a Null value."},
        {"INSERT INTO T VALUES (NULL,'b',2)", "The field 'ID' cannot contain a Null value."},
        {"INSERT INTO T VALUES (2,'b',2),(1,'c',3)", duplicate + "ID)"},
        {"UPDATE T SET U='x'", "Type mismatch: 'x' does not convert to Integer"},
    };
    for (const auto& one : cases) EXPECT_EQ(ErrorOf([&] { database.Run(one.statement); }), one.error) << one.statement;
    EXPECT_EQ(database.Ask("SELECT * FROM T"), "1|a|1");
}

TEST(Statements, NumberTheRowsOfACounter) {
    SqlTestDatabase database;
    database.Run("CREATE TABLE T (N Text(9), ID Counter, K Long, PRIMARY KEY (K))");
    const auto appender = database.Session().OpenAppender("SELECT N, ID, K FROM T");
    appender->Append(std::vector<Value>{Value::OfText("a"), Value(), Value::OfInteger(7)}, {true, false, true});
    appender->Append(std::vector<Value>{Value::OfText("b"), Value::OfInteger(10), Value::OfInteger(8)},
                     {true, true, true});
    appender->Append(std::vector<Value>{Value::OfText("c"), Value(), Value::OfInteger(9)}, {true, false, true});
    EXPECT_THROW(
        appender->Append(std::vector<Value>{Value::OfText("d"), Value(), Value::OfInteger(9)}, {true, false, true}),
        Error);
    EXPECT_EQ(database.Ask("SELECT ID, N FROM T ORDER BY ID"), "1|a;10|b;11|c");
}

TEST(Statements, NumbersOfOpenPrecisionTakeWhatNoDecimalHolds) {
    SqlTestDatabase database;
    database.Run("CREATE TABLE T (V Number)");
    const auto insert = database.Session().Prepare("INSERT INTO T (V) VALUES (?)", std::vector<ParameterInfo>(1));
    std::vector<Value> row(1);
    for (const double number : {5e-324, 1.7976931348623157e308, 0.1, 1e37}) {
        row[0].SetDouble(number);
        insert->Execute(row);
    }
    EXPECT_EQ(database.Ask("SELECT V FROM T"),
              "5E-324;1.7976931348623157E+308;0.1;10000000000000000000000000000000000000");
}

TEST(Statements, LookUpAKeyWithoutReadingTheTable) {
    SqlTestDatabase database;
    database.Run("CREATE TABLE T (ID Integer PRIMARY KEY, N Long)");
    {
        const auto appender = database.Session().OpenAppender("SELECT ID, N FROM T");
        for (int i = 0; i < 200'000; ++i)
            appender->Append(std::vector<Value>{Value::OfInteger(i), Value::OfInteger(i)}, {true, true});
    }
    const std::int64_t start = SteadyMilliseconds();
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(database.Ask("SELECT N FROM T WHERE N>0 AND T.ID=" + std::to_string(i + 1)), std::to_string(i + 1));
    EXPECT_LT(SteadyMilliseconds() - start, 2'000);
}

}  // namespace
}  // namespace varnel
