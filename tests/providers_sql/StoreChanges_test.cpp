// Writing tables of a store: what the table is told, when it is committed, and what a refusal leaves.
#include <gtest/gtest.h>

#include <thread>

#include "tests/providers_sql/MemoryStore.h"
#include "tests/support/ErrorOf.h"

namespace varnel {
namespace {

class StoreChanges : public testing::Test {
protected:
    StoreChanges() {
        database.Run("CREATE TABLE T (ID Long NOT NULL, Name Text(20), Price Currency, Flag YesNo)");
        database.Run("INSERT INTO T VALUES (1,'Smith',10.5,True),(2,'Jones',20,False),(3,'Brown',Null,True)");
    }
    MemoryTable& Table() { return database.Store().Table("T"); }
    std::string All() { return database.Ask("SELECT * FROM T"); }

    MemoryTestDatabase database;
};

TEST_F(StoreChanges, DoWhatTheStatementSays) {
    const struct {
        const char* statement;
        const char* rows;
    } steps[] = {
        {"UPDATE T SET Price=Price*2, Name=Name & '!' WHERE Flag",
         "1|Smith!|21|True;2|Jones|20|False;3|Brown!|NULL|True"},
        {"UPDATE T SET ID=ID+1", "2|Smith!|21|True;3|Jones|20|False;4|Brown!|NULL|True"},
        {"UPDATE T SET Price=Flag, Flag=0 WHERE ID=4", "2|Smith!|21|True;3|Jones|20|False;4|Brown!|-1|False"},
        {"UPDATE T SET Name=\"ID\" WHERE ID=3", "2|Smith!|21|True;3|ID|20|False;4|Brown!|-1|False"},
        {"UPDATE T SET Name=Null WHERE ID=99", "2|Smith!|21|True;3|ID|20|False;4|Brown!|-1|False"},
        {"INSERT INTO T (Price, ID) VALUES ('1.5', 9)",
         "2|Smith!|21|True;3|ID|20|False;4|Brown!|-1|False;9|NULL|1.5|NULL"},
        {"DELETE FROM T WHERE Name Like '%!' OR Name Is Null", "3|ID|20|False"},
        {"DELETE * FROM T", ""},
    };
    for (const auto& step : steps) {
        const int commits = Table().commits;
        database.Run(step.statement);
        EXPECT_EQ(All(), step.rows) << step.statement;
        const bool changed = std::string(step.statement).find("99") == std::string::npos;
        EXPECT_EQ(Table().commits - commits, changed ? 1 : 0) << step.statement;
    }
    EXPECT_TRUE(Table().wasEmptied);
}

TEST_F(StoreChanges, AreWorkedOutBeforeTheFirstRowChanges) {
    Value bad;
    bad.SetFailure("no such cell");
    Table().Add({Value::OfInteger(4), bad, Value(), Value()});
    const std::string before = All();
    const std::size_t writes = Table().writes;
    const struct {
        const char* statement;
        const char* error;
    } cases[] = {
        {"UPDATE T SET Price=Name", "Type mismatch"},
        {"UPDATE T SET Name='x' WHERE Name Like '%'", "no such cell"},
        {"DELETE FROM T WHERE Name Like '%'", "no such cell"},
        {"UPDATE T SET Nmae='x'",
         "No value given for one or more required parameters. (There is no column 'Nmae' in table 'T'.)"},
        {"INSERT INTO T (ID,Name) VALUES (1)", "Number of query values and destination fields are not the same."},
        {"INSERT INTO T (ID) VALUES (Name)",
         "No value given for one or more required parameters. ('Name' is unknown here.)"},
    };
    for (const auto& one : cases) {
        const std::string error = ErrorOf([&] { database.Run(one.statement); });
        EXPECT_TRUE(error.starts_with(one.error)) << one.statement << ": " << error;
    }
    EXPECT_EQ(All(), before);
    EXPECT_EQ(Table().writes, writes);
}

TEST_F(StoreChanges, SayHowManyRowsARefusalLeavesChanged) {
    Table().refusesWriteAt = Table().writes + 2;
    EXPECT_EQ(ErrorOf([&] { database.Run("UPDATE T SET Name='x'"); }),
              "the row is locked (2 rows were changed before.)");
    EXPECT_EQ(database.Ask("SELECT Name FROM T"), "x;x;Brown");
    Table().refusesWriteAt = Table().writes;
    EXPECT_EQ(ErrorOf([&] { database.Run("DELETE FROM T WHERE ID>0"); }), "the row is locked");
}

TEST_F(StoreChanges, AppendersTellTheTableWhatWasSet) {
    const auto appender = database.Session().OpenAppender("SELECT Price,ID FROM T");
    ASSERT_EQ(appender->Columns().size(), 2U);
    EXPECT_EQ(appender->Columns()[0].type, adCurrency);
    appender->Append(std::vector<Value>{Value::OfCurrency(15'000), Value::OfInteger(7)}, {true, true});
    appender->Append(std::vector<Value>{Value::OfCurrency(99), Value::OfInteger(8)}, {false, true});
    Table().refusesWriteAt = Table().writes;
    const std::vector<Value> row{Value(), Value::OfInteger(9)};
    EXPECT_EQ(ErrorOf([&] { appender->Append(row, {true, true}); }), "the row is locked");
    appender->Append(row, {true, true});
    EXPECT_EQ(database.Ask("SELECT * FROM T WHERE ID>3"), "7|NULL|1.5|NULL;8|NULL|NULL|NULL;9|NULL|NULL|NULL");
    for (const char* select : {"SELECT count(*) FROM T", "SELECT ID+1 FROM T", "SELECT ID,ID FROM T"})
        EXPECT_TRUE(ErrorOf([&] { database.Session().OpenAppender(select); }).starts_with("Operation must use"))
            << select;
    EXPECT_TRUE(ErrorOf([&] { database.Session().OpenAppender("SELECT Nmae FROM T"); }).starts_with("No value given"));
}

TEST_F(StoreChanges, CommitOnceASecondOnCommitAndAtTheEnd) {
    const int before = Table().commits;
    const std::vector<Value> row{Value::OfInteger(4)};
    {
        const auto appender = database.Session().OpenAppender("SELECT ID FROM T");
        appender->Append(row, {true});
        EXPECT_EQ(Table().commits, before);
        std::this_thread::sleep_for(std::chrono::milliseconds(1'050));
        appender->Append(row, {true});
        EXPECT_EQ(Table().commits, before + 1);
        appender->Append(row, {true});
        appender->Commit();
        EXPECT_EQ(Table().commits, before + 2);
        appender->Append(row, {true});
    }
    EXPECT_EQ(Table().commits, before + 3);
}

TEST_F(StoreChanges, PreparedStatementsRunOncePerRow) {
    const int before = Table().commits;
    {
        const auto insert = database.Session().Prepare("INSERT INTO T (ID,Name,Flag) VALUES (?,?,?)", {});
        insert->Execute(std::vector<Value>{Value::OfText("4"), Value::OfText("a"), Value::OfText("True")});
        EXPECT_EQ(ErrorOf([&] {
                      insert->Execute(std::vector<Value>{Value::OfText("x"), Value(), Value()});
                  }),
                  "Type mismatch: 'x' does not convert to Integer");
        insert->Execute(std::vector<Value>{Value::OfInteger(5), Value(), Value::OfBoolean(false)});
        EXPECT_THROW(insert->Execute(std::vector<Value>{Value()}), Error);
        const auto rename = database.Session().Prepare("UPDATE T SET Name=? WHERE ID=?", {});
        rename->Execute(std::vector<Value>{Value::OfText("b"), Value::OfInteger(1)});
        rename->Execute(std::vector<Value>{Value::OfText("c"), Value::OfInteger(2)});
    }
    EXPECT_EQ(database.Ask("SELECT ID,Name,Flag FROM T"), "1|b|True;2|c|False;3|Brown|True;4|a|True;5|NULL|False");
    EXPECT_EQ(Table().commits, before + 2);
    EXPECT_EQ(ErrorOf([&] { database.Session().Prepare("SELECT ID FROM T", {}); }),
              "Only INSERT, UPDATE and DELETE statements can be prepared.");
}

TEST_F(StoreChanges, TablesComeAndGoThroughTheStore) {
    database.Run("CREATE TABLE U (A Long, B Text(5) NOT NULL, CONSTRAINT k PRIMARY KEY (A))");
    const std::vector<ColumnInfo>& columns = database.Store().Table("U").columns;
    ASSERT_EQ(columns.size(), 2U);
    EXPECT_FALSE(columns[0].nullable);
    EXPECT_FALSE(columns[1].nullable);
    EXPECT_EQ(columns[1].definedSize, 5);
    EXPECT_EQ(ErrorOf([&] { database.Run("CREATE TABLE U (A Long)"); }), "exists");
    EXPECT_EQ(ErrorOf([&] { database.Run("CREATE TABLE V (A Long, a Text)"); }),
              "Field 'a' already exists in table 'V'.");
    EXPECT_EQ(ErrorOf([&] { database.Run("CREATE TABLE V (A Long, PRIMARY KEY (B))"); }),
              "There is no column 'B' for the key.");
    database.Run("DROP TABLE U");
    EXPECT_EQ(ErrorOf([&] { database.Run("DROP TABLE U"); }), "does not exist");
}

}  // namespace
}  // namespace varnel
