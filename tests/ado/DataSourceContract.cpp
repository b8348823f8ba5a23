#include "tests/ado/DataSourceContract.h"

#include <algorithm>

#include "ado/Ado.h"
#include "ado/types/ValueText.h"
#include "platform/Error.h"
#include "providers/ProviderList.h"
#include "tests/support/TestRepository.h"

namespace varnel {

void DataSourceContract::SetUp() {
    SetProviders(AllProviders());
    source_ = GetParam().make();
    try {
        ExecuteOn(source_.connection, "drop table t");
    } catch (const Error&) {  // the first test finds no table
    }
}

void DataSourceContract::TearDown() {
    CloseIdleSessions();
}

void DataSourceContract::MakeTable(int count) {
    ExecuteOn(source_.connection, GetParam().table.create);
    for (int k = 1; k <= count; ++k) {
        const std::string number = std::to_string(k);
        ExecuteOn(source_.connection, "insert into t (id, name, made, price) values (" + number + ", 'row " + number +
                                          "', '2026-11-18 16:23:05', " + number + ".50)");
    }
}

namespace {

constexpr const char* kAll = "select id, name, made, price from t";

TEST_P(DataSourceContract, ReadsForwardToAnEndThatStays) {
    MakeTable(3);
    Recordset rows;
    rows.Open(kAll, source_.connection, adOpenKeyset, adLockReadOnly);
    ASSERT_EQ(rows.FieldCount(), 4u);
    std::string seen;
    for (; !rows.Eof(); rows.MoveNext()) {
        for (std::size_t k = 0; k < 4; ++k) seen += DefaultText(rows.Fields(k).GetValue()) + ";";
    }
    EXPECT_EQ(seen,
              "1;row 1;11/18/2026 4:23:05 PM;1.5;2;row 2;11/18/2026 4:23:05 PM;2.5;3;row 3;11/18/2026 4:23:05 PM;3.5;");
    EXPECT_TRUE(rows.Eof());
    EXPECT_THROW(rows.MoveNext(), Error);
    EXPECT_THROW(rows.Fields(0).GetValue(), Error);
    rows.MoveFirst();
    EXPECT_EQ(rows.Fields("ID").GetValue().AsInteger(), 1);
    rows.Close();
    EXPECT_FALSE(rows.IsOpen());
    EXPECT_THROW(rows.Eof(), Error);
}

TEST_P(DataSourceContract, DescribesItsColumns) {
    MakeTable(0);
    Recordset rows;
    rows.Open(kAll, source_.connection);
    EXPECT_TRUE(rows.Eof());
    EXPECT_THROW(rows.MoveFirst(), Error);
    EXPECT_EQ(rows.Fields(0).Name(), "id");
    EXPECT_EQ(rows.Fields(0).Type(), adInteger);
    EXPECT_EQ(rows.Fields(0).DefinedSize(), 4);
    EXPECT_EQ(rows.Fields(1).DefinedSize(), 20);
    EXPECT_FALSE(IsLongOrBinary(rows.Fields(1).Type()));
    EXPECT_EQ(rows.Fields(3).Type(), adNumeric);
    EXPECT_EQ(rows.Fields(3).DefinedSize(), 19);
    EXPECT_EQ(rows.Fields(3).Precision(), 10);
    EXPECT_EQ(rows.Fields(3).NumericScale(), 2);
    EXPECT_THROW(rows.Fields(4), Error);
    EXPECT_THROW(rows.Fields("nobody"), Error);
}

TEST_P(DataSourceContract, TellsItsTablesAndTheirColumns) {
    MakeTable(0);
    Connection connection;
    connection.Open(source_.connection);
    const std::vector<TableInfo> tables = connection.Tables();
    const auto found = std::find_if(tables.begin(), tables.end(),
                                    [](const TableInfo& table) { return table.name == "t" && !table.isView; });
    ASSERT_NE(found, tables.end());
    Recordset rows;
    rows.Open(kAll, source_.connection);
    for (const std::string& owner : {std::string(), found->owner}) {
        const std::vector<TableColumn> columns = connection.Columns(owner, "t");
        ASSERT_EQ(columns.size(), 4u);
        for (std::size_t k = 0; k < columns.size(); ++k) {
            EXPECT_EQ(columns[k].info.name, rows.Fields(k).Name());
            EXPECT_EQ(columns[k].info.type, rows.Fields(k).Type());
            EXPECT_EQ(columns[k].info.definedSize, rows.Fields(k).DefinedSize());
            EXPECT_EQ(columns[k].info.numericScale, rows.Fields(k).NumericScale());
            EXPECT_EQ(columns[k].isKey, k == 0 && GetParam().table.hasKey);
            EXPECT_EQ(columns[k].info.nullable, k > 0);
            EXPECT_NE(columns[k].typeName, "");
        }
    }
    EXPECT_THROW(connection.Columns("", "nobody"), Error);
}

TEST_P(DataSourceContract, AppendsWhatWasSetAndLeavesTheRest) {
    MakeTable(0);
    Connection connection;
    connection.Open(source_.connection);
    Recordset rows;
    rows.Open(kAll, connection, adOpenDynamic, adLockOptimistic);
    rows.AddNew();
    rows.Fields(0).SetValue(Value::OfInteger(7));
    const std::string name =
        std::string("O'Brien \\ \xE2\x82\xAC") + (GetParam().table.hasUnicode ? " \xF0\x9F\x98\x80" : "");
    rows.Fields(1).SetValue(Value::OfText(name));
    rows.Fields(2).SetValue(Value::OfText("2003-07-15"));
    rows.Fields(3).SetValue(Value::OfText("12.25"));
    EXPECT_EQ(rows.Fields(0).GetValue().AsInteger(), 7);
    rows.Update();
    rows.AddNew();
    rows.Fields(0).SetValue(Value::OfInteger(8));
    rows.Fields(1).SetValue(Value());
    rows.Update();
    rows.Close();
    EXPECT_EQ(AskRows(source_.connection, kAll), "7|" + name + "|7/15/2003|12.25\n8|NULL|NULL|NULL");
}

TEST_P(DataSourceContract, DropsAPendingRecord) {
    MakeTable(1);
    Recordset rows;
    rows.Open(kAll, source_.connection, adOpenDynamic, adLockOptimistic);
    EXPECT_THROW(rows.Update(), Error);
    rows.CancelUpdate();
    rows.AddNew();
    rows.Fields(0).SetValue(Value::OfInteger(2));
    rows.CancelUpdate();
    EXPECT_EQ(rows.Fields(0).GetValue().AsInteger(), 1);
    EXPECT_THROW(rows.Fields(0).SetValue(Value::OfInteger(2)), Error);
    rows.AddNew();
    rows.Fields(0).SetValue(Value::OfInteger(3));
    rows.Close();
    EXPECT_EQ(AskRows(source_.connection, "select count(*) from t"), "1");
}

TEST_P(DataSourceContract, UndoesOnlyARefusedRecord) {
    MakeTable(1);
    Recordset rows;
    rows.Open(kAll, source_.connection, adOpenDynamic, adLockOptimistic);
    for (const int id : {5, 1, 6}) {
        rows.AddNew();
        rows.Fields(0).SetValue(id == 1 && !GetParam().table.hasKey ? Value() : Value::OfInteger(id));
        if (id == 1) {
            EXPECT_THROW(rows.Update(), Error);
        } else {
            rows.Update();
        }
    }
    rows.Close();
    EXPECT_EQ(AskRows(source_.connection, "select id from t"), "1\n5\n6");
}

TEST_P(DataSourceContract, RefusesAValueThatDoesNotConvertAndKeepsTheOthers) {
    MakeTable(0);
    Recordset rows;
    rows.Open(kAll, source_.connection, adOpenDynamic, adLockOptimistic);
    rows.AddNew();
    EXPECT_THROW(rows.Fields(0).SetValue(Value::OfText("seven")), Error);
    EXPECT_THROW(rows.Fields(0).SetValue(Value::OfInteger(3'000'000'000)), Error);
    EXPECT_THROW(rows.Fields(2).SetValue(Value::OfText("30 February")), Error);
    rows.Fields(0).SetValue(Value::OfInteger(1));
    rows.Update();
    rows.Close();
    EXPECT_EQ(AskRows(source_.connection, kAll), "1|NULL|NULL|NULL");
}

TEST_P(DataSourceContract, RunsAPreparedCommandRowByRow) {
    MakeTable(0);
    Command command;
    command.SetActiveConnection(source_.connection);
    command.CommandText = "INSERT INTO t (id,name,made,price) VALUES (?,?,?,?)";
    for (const DataTypeEnum type : {adInteger, adVarChar, adDBTimeStamp, adNumeric}) {
        command.Parameters.Append({"", adParamInput, type, 10, 2, 10, {}});
    }
    command.Parameters(1).Value.SetText("caf\xC3\xA9");
    command.Parameters(2).Value.SetDateTime(FromCivil({2026, 1, 2, 3, 4, 5, 0}));
    command.Parameters(3).Value.SetCurrency(12'500);
    for (int id = 1; id <= 3; ++id) {
        command.Parameters(0).Value.SetInteger(id);
        command.Execute();
    }
    if (!GetParam().table.hasKey) command.Parameters(0).Value.SetNull();
    EXPECT_THROW(command.Execute(), Error);  // id 3 again, or none
    command.Parameters(1).Value.SetText("eleven char");
    command.Parameters(0).Value.SetInteger(4);
    EXPECT_THROW(command.Execute(), Error);
    command.Commit();
    EXPECT_EQ(AskRows(source_.connection, "select id, name, made, price from t where id=3"),
              "3|caf\xC3\xA9|1/2/2026 3:04:05 AM|1.25");
    EXPECT_EQ(AskRows(source_.connection, "select count(*) from t"), "3");
}

TEST_P(DataSourceContract, ReportsAFaultyStatementAndStaysUsable) {
    MakeTable(1);
    Connection connection;
    connection.Open(source_.connection);
    EXPECT_THROW(connection.Execute("delete from nowhere"), Error);
    EXPECT_THROW(connection.Execute("no statement at all"), Error);
    Recordset rows;
    EXPECT_THROW(rows.Open("select nothing from t", connection), Error);
    EXPECT_FALSE(rows.IsOpen());
    rows.Open("select id from t", connection);
    EXPECT_EQ(rows.Fields(0).GetValue().AsInteger(), 1);
    EXPECT_THROW(connection.Open(source_.connection), Error);
}

TEST_P(DataSourceContract, LendsIdleLogInsAgain) {
    MakeTable(1);
    AskRows(source_.connection, "select id from t");
    const std::size_t before = LogInCount();
    for (int k = 0; k < 5; ++k) AskRows(source_.connection, "select id from t");
    Recordset abandoned;
    abandoned.Open(kAll, source_.connection, adOpenDynamic, adLockOptimistic);
    abandoned.AddNew();
    abandoned.Close();
    AskRows(source_.connection, "select id from t");
    EXPECT_EQ(LogInCount(), before);
    EXPECT_EQ(IdleSessionCount(), 1u);
}

TEST_P(DataSourceContract, DoublesATableThatIsAppendedToItself) {
    MakeTable(250);
    Recordset source, target;
    Connection connection;
    source.Open("select id, name from t", source_.connection, adOpenKeyset, adLockReadOnly);
    connection.Open(source_.connection);
    target.Open("select id, name from t", connection, adOpenDynamic, adLockOptimistic);
    int rows = 0;
    for (; !source.Eof(); source.MoveNext()) {
        target.AddNew();
        target.Fields(0).SetValue(Value::OfInteger(source.Fields(0).GetValue().AsInteger() + 1000));
        target.Fields(1).SetValue(source.Fields(1).GetValue());
        target.Update();
        ASSERT_LE(++rows, 250);
    }
    target.Close();
    EXPECT_EQ(AskRows(source_.connection, "select count(*), sum(id) from t"), "500|312750");
}

}  // namespace
}  // namespace varnel
