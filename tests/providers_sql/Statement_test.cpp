// The statements that the programs above send, as they send them, and what goes wrong with them.
#include <gtest/gtest.h>

#include "platform/Clock.h"
#include "tests/providers_sql/SqlTestDatabase.h"
#include "tests/support/ErrorOf.h"

namespace varnel {
namespace {

TEST(Statements, RecordTheOutcomeOfARun) {
    SqlTestDatabase database;
    database.Run(
        "CREATE TABLE sessions (SessionID Long, LastRunDate Text(50), LastRunTime Text(50), SessionError Long)");
    database.Run(
        "CREATE TABLE vrtabs (SessionId Long, TabID Short, TableExists YesNo, FirstTimeLoadOpt Text(20), PRIMARY KEY "
        "(SessionId, TabID))");
    for (const char* row : {"(5,'','',9)", "(6,NULL,NULL,9)"})
        database.Run(std::string("INSERT INTO sessions VALUES ") + row);
    database.Run(
        "INSERT INTO vrtabs (SessionId, TabID, TableExists, FirstTimeLoadOpt) VALUES "
        "(5,3,0,'CREATE'),(5,2,0,'CREATE'),(6,3,0,'CREATE')");
    database.Run(
        "update sessions set LastRunDate=\"11/18/2026\",LastRunTime=\"04:23:05 PM\",SessionError=1 where sessionid=5");
    database.Run("Update vrtabs set TableExists=1,FirstTimeLoadOpt=\"\" where vrtabs.SessionId=5 and vrtabs.tabid= 3");
    EXPECT_EQ(database.Ask("select * from sessions where sessionid=5"), "5|11/18/2026|04:23:05 PM|1");
    EXPECT_EQ(database.Ask("select * from sessions where sessionid=6"), "6|NULL|NULL|9");
    // rows come in the order of the key
    EXPECT_EQ(database.Ask("select * from vrtabs where sessionid=5"), "5|2|False|CREATE;5|3|True|");
    EXPECT_EQ(database.Ask("select count(*) from vrtabs where sessionid=-5"), "0");
}

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
    const struct {
        const char* statement;
        const char* error;
    } cases[] = {
        {"INSERT INTO T VALUES (1,'b',2)",
         "The changes were not successful because they would create duplicate values in the index, primary key, or "
         "relationship. (UNIQUE constraint failed: T.ID)"},
        {"INSERT INTO T VALUES (2,'b',1)",
         "The changes were not successful because they would create duplicate values in the index, primary key, or "
         "relationship. (UNIQUE constraint failed: T.U)"},
        {"INSERT INTO T VALUES (2,NULL,2)", "The field 'N' cannot contain a Null value."},
        {"INSERT INTO T VALUES (NULL,'b',2)", "The field 'ID' cannot contain a Null value."},
        {"INSERT INTO T VALUES (2,'b',2),(1,'c',3)",
         "The changes were not successful because they would create duplicate values in the index, primary key, or "
         "relationship. (UNIQUE constraint failed: T.ID)"},
        {"UPDATE T SET X=1",
         "No value given for one or more required parameters. (There is no column 'X' in table 'T'.)"},
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

TEST(Statements, RunPreparedWithMarkers) {
    SqlTestDatabase database;
    database.Run("CREATE TABLE T (ID Long PRIMARY KEY, N Text(9), D DateTime, P Currency)");
    const std::vector<ParameterInfo> described(4);
    const auto insert = database.Session().Prepare("INSERT INTO T (ID,N,D,P) VALUES (?,?,?,?)", described);
    std::vector<Value> row = {Value::OfInteger(1), Value::OfText("007"),
                              Value::OfDateTime(FromCivil({2026, 11, 18, 0, 0, 0, 0})), Value::OfCurrency(INT64_MAX)};
    insert->Execute(row);
    EXPECT_THROW(insert->Execute(row), Error);
    row[0].SetInteger(2);
    row[1].SetNull();
    insert->Execute(row);
    EXPECT_EQ(database.Ask("SELECT * FROM T"),
              "1|007|11/18/2026|922337203685477.5807;2|NULL|11/18/2026|922337203685477.5807");
    const auto update = database.Session().Prepare("UPDATE T SET N=? & 'x', P=? WHERE ID=?", described);
    update->Execute(std::vector<Value>{Value::OfText("y"), Value::OfText("1.5"), Value::OfInteger(2)});
    const auto remove = database.Session().Prepare("DELETE FROM T WHERE ID=?", described);
    remove->Execute(std::vector<Value>{Value::OfInteger(1)});
    EXPECT_EQ(database.Ask("SELECT ID, N, P FROM T"), "2|yx|1.5");
    EXPECT_THROW(remove->Execute(std::vector<Value>{}), Error);
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
