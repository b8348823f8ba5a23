// Sessions between Access databases, run from a repository that is one itself.
#include <csignal>
#include <filesystem>

#include "ado/Ado.h"
#include "tests/session/SampleColumns.h"
#include "tests/session/SessionTest.h"

namespace varnel {
namespace {

class AccessSessionTest : public SessionTest {
protected:
    AccessSessionTest() {
        CloseIdleSessions();
        std::filesystem::remove(Path("vrrepo.mdb"));
        repository_ = TestRepository(folder_.Path(), TestRepository::Form::Access);
        session_.targetConnection = AccessConnection(Path("target.mdb"));
    }
    /// A table of numbered rows in an Access file.
    void MakeNumberedTable(const std::string& connection, const std::string& table, int count) {
        ExecuteOn(connection, "create table " + table + " (ID long, NAME text(50))");
        Recordset rows;
        rows.Open("select ID, NAME from " + table, connection, adOpenKeyset, adLockOptimistic);
        for (int k = 1; k <= count; ++k) {
            rows.AddNew();
            rows.Fields(0).SetValue(Value::OfInteger(k));
            rows.Fields(1).SetValue(Value::OfText("row " + std::to_string(k)));
            rows.Update();
        }
        rows.Close();
    }
    static TestTable Numbered(const std::string& source, const std::string& target) {
        TestTable table{source, target, {{"ID", "Integer", 11}, {"NAME", "VarWchar", 50}}};
        table.columns[0].targetType = "Long";
        table.columns[1].targetType = "Text";
        return table;
    }
};

/// From a file that SQLite's own library wrote into an Access database, and from there into a file that it reads.
TEST_F(AccessSessionTest, CarriesEveryValueOfEveryTypeThereAndBack) {
    NativeSqlite source(Path("source.db")), back(Path("back.db"));
    TestSession there = session_, home = session_;
    home.id = 2;
    home.sourceConnection = there.targetConnection;
    home.targetConnection = SqliteConnection(Path("back.db"));
    struct Made {
        std::string name;
        std::vector<SampleColumn> columns;
        Rows rows;
    };
    std::vector<Made> tables;
    for (const auto& [count, withLong] : {std::pair{0, true}, {1, true}, {101, false}, {250, true}}) {
        Made& made = tables.emplace_back();
        made.name = "t" + std::to_string(count);
        made.columns = SampleColumns({"ACCESS"}, withLong);
        made.rows = SampleRows(made.columns, count);
        MakeSource(source, Engine::Sqlite, made.name, made.columns, made.rows);
        ExecuteOn(there.targetConnection, "create table [" + made.name + " in Access] (old long)");
        back.Run({"create table " + made.name + " (old int)"});
        there.tables.push_back({made.name, made.name + " in Access", MappingOf(made.columns)});
        home.tables.push_back({made.name + " in Access", made.name, MappingOf(made.columns)});
    }
    for (const TestSession& session : {there, home}) {
        session_ = session;
        EXPECT_EQ(Run(), 0) << FirstFailure();
        EXPECT_EQ(Outcome(session.id), "recorded, no error");
    }
    for (Made& made : tables) {
        const std::vector<NativeColumn> columns = NativeColumnsOf(made.columns);
        for (std::size_t k = 0; k < columns.size(); ++k) {
            for (Row& row : made.rows) {
                if (made.columns[k].type == "Boolean" && !row[k]) row[k] = "0";  // a Yes/No column knows no Null
            }
        }
        EXPECT_EQ(FirstDifference(made.rows, back.Read(made.name, columns, "id"), columns), "") << made.name;
    }
    for (const char* left : {"target.ldb", "target.mdb-journal", "vrrepo.ldb", "vrrepo.mdb-journal"})
        EXPECT_FALSE(std::filesystem::exists(Path(left))) << left;
}

TEST_F(AccessSessionTest, DropsCreatesEmptiesAndAppendsInOneFile) {
    session_.sourceConnection = session_.targetConnection;
    MakeNumberedTable(session_.targetConnection, "numbers", 300);
    for (const char* table : {"dropped", "emptied", "appended"}) MakeNumberedTable(session_.targetConnection, table, 5);
    for (const auto& [target, option] : {std::pair{"dropped", "DROP"},
                                         {"emptied", "DELETE"},
                                         {"appended", "append"},
                                         {"numbers", "append"},
                                         {"created", "CREATE"}}) {
        TestTable& table = session_.tables.emplace_back(Numbered("numbers", target));
        table.option = option;
        if (std::string(option) == "CREATE") {
            table.firstTime = "CREATE";
            table.exists = false;
        }
    }
    session_.tables[2].where = "[NAME] Like 'ROW 1%' And ID<100";
    EXPECT_EQ(Run(), 0) << FirstFailure();
    const auto count = [&](const std::string& table) {
        return AskRows(session_.targetConnection, "select count(*), sum(ID) from " + table);
    };
    EXPECT_EQ(count("dropped"), "300|45150");
    EXPECT_EQ(count("emptied"), "300|45150");
    EXPECT_EQ(count("appended"), "16|161");
    EXPECT_EQ(count("numbers"), "600|90300");
    EXPECT_EQ(count("created"), "600|90300");
    EXPECT_EQ(repository_.Ask("select TableExists, FirstTimeLoadOpt from vrtabs where TabID=5"), "1|");
}

TEST_F(AccessSessionTest, TwoThatEndTogetherBothRecordTheirOutcome) {
    NativeSqlite source(Path("source.db"));
    MakeNumbered(source, "t", 3);
    for (int k = 2; k <= 3; ++k) {
        session_.id = k;
        session_.log = Path("run" + std::to_string(k) + ".log");
        session_.targetConnection = AccessConnection(Path("target" + std::to_string(k) + ".mdb"));
        session_.tables = {Numbered("t", "t_copy")};
        session_.tables[0].exists = false;
        session_.tables[0].firstTime = "CREATE";
        repository_.Add(session_);
    }
    for (int pair = 0; pair < 10; ++pair) {
        repository_.Execute("update sessions set LastRunDate=Null, LastRunTime=Null, SessionError=Null");
        repository_.Execute("update vrtabs set TableExists=0, FirstTimeLoadOpt='CREATE'");
        CloseIdleSessions();
        for (const char* name : {"target2.mdb", "target3.mdb"}) std::filesystem::remove(Path(name));
        const auto one = Start(2), other = Start(3);
        EXPECT_EQ(End(*one), 0) << errorLog_ << output_;
        EXPECT_EQ(End(*other), 0) << errorLog_ << output_;
        for (const int id : {2, 3}) ASSERT_EQ(Outcome(id), "recorded, no error") << "pair " << pair;
        ASSERT_EQ(repository_.Ask("select count(*) from vrtabs where TableExists=1 and FirstTimeLoadOpt=''"), "2");
    }
}

TEST_F(AccessSessionTest, AKilledOneLeavesADatabaseThatOpens) {
    NativeSqlite source(Path("source.db"));
    MakeNumbered(source, "many", 200'000, 30);
    MakeNumberedTable(session_.targetConnection, "copy", 7);
    CloseIdleSessions();
    session_.tables = {Numbered("many", "copy")};
    session_.tables[0].option = "append";
    repository_.Add(session_);
    const auto before = std::filesystem::file_size(Path("target.mdb"));
    const auto running = Start();
    ASSERT_TRUE(Eventually([&] { return std::filesystem::file_size(Path("target.mdb")) > before + 2'000'000; }));
    running->Signal(SIGKILL);
    EXPECT_NE(End(*running), 0);
    const int kept = std::stoi(AskRows(session_.targetConnection, "select count(*) from copy"));
    EXPECT_GE(kept, 7);
    EXPECT_EQ(AskRows(session_.targetConnection, "select count(*) from copy where NAME is null"), "0");
    EXPECT_EQ(AskRows(session_.targetConnection, "select max(ID) from copy"), std::to_string(std::max(7, kept - 7)));
    MakeNumberedTable(session_.targetConnection, "another", 10);
    EXPECT_EQ(AskRows(session_.targetConnection, "select sum(ID) from another"), "55");
}

}  // namespace
}  // namespace varnel
