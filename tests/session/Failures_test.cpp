// Runs with bad rows, bad tables and bad connection strings: all of them end in order and say what was lost.
#include <cstdlib>

#include "ado/Ado.h"
#include "tests/session/ServerKinds.h"
#include "tests/session/SessionTest.h"

namespace varnel {
namespace {

class FailuresTest : public SessionTest {
protected:
    /// A source table of count numbered rows, with a memo when asked for, and the session's entry that appends it.
    TestTable Numbered(const std::string& name, int count, bool withMemo = false) {
        MakeNumbered(source_, name, count);
        TestTable entry{name, name + "_copy", {{"ID", "Integer", 11}, {"NAME", "VarWchar", 50}}, true, "append"};
        if (withMemo) {
            source_.Run({"alter table " + name + " add column MEMO LongText", "update " + name + " set MEMO='long'"});
            entry.columns.push_back({"MEMO", "LongVarWChar"});
        }
        return entry;
    }
    void TargetIsMySql() {
        session_.targetKind = "MySQL";
        session_.targetConnection = Server().ConnectionString();
    }
    /// The target of an entry, with a key; rows from and to are in it already, named "old".
    void MakeTarget(NativeDatabase& target, const TestTable& entry, int from, int to) {
        Forget(target, entry.target);
        const std::string memo = entry.columns.size() > 2 ? ", MEMO text" : "";
        target.Run({"create table " + entry.target + " (ID int primary key, NAME varchar(50)" + memo + ")"});
        for (int k = from; k <= to; ++k) {
            target.Run({"insert into " + entry.target + " (ID, NAME) values (" + std::to_string(k) + ",'old')"});
        }
    }
    int FailedRows() const { return InLog("Error Loading Row\r\n"); }

    NativeSqlite source_{Path("source.db")};
};

TEST_F(FailuresTest, ADuplicateKeyCostsItsBatchInMySql) {
    TargetIsMySql();
    NativeMySql target(Server());
    session_.tables = {Numbered("t", 250)};
    MakeTarget(target, session_.tables[0], 130, 130);
    EXPECT_EQ(Run(), 1);
    EXPECT_EQ(target.Ask("select group_concat(ID order by ID) = (select group_concat(seq order by seq) from "
                         "seq_1_to_250 where seq not between 101 and 200 or seq = 130) from t_copy"),
              "1");
    EXPECT_EQ(target.Ask("select NAME from t_copy where ID=130"), "old");
    EXPECT_EQ(FailedRows(), 1) << log_;
    EXPECT_EQ(InLog("Duplicate entry '130'"), 1) << log_;
    EXPECT_EQ(InLog(" 250 Rows Loaded\r\n"), 1) << log_;
    EXPECT_TRUE(LogIsClosed());
    EXPECT_EQ(Outcome(), "recorded, no error");
}

TEST_F(FailuresTest, ABatchThatTheServerRefusesLeavesNoRowOfItself) {
    TargetIsMySql();
    NativeMySql target(Server());
    session_.tables = {Numbered("t", 150)};
    MakeTarget(target, session_.tables[0], 0, -1);
    source_.Run({"update t set NAME = printf('%.60c', 'x') where ID = 120"});
    EXPECT_EQ(Run(), 1);
    EXPECT_EQ(target.Count("t_copy"), 100);
    EXPECT_EQ(target.Ask("select max(ID) from t_copy"), "100");
    EXPECT_EQ(FailedRows(), 1);
    EXPECT_EQ(InLog("Data too long for column 'NAME'"), 1) << log_;
    EXPECT_EQ(InLog(" 150 Rows Loaded\r\n"), 1);
}

/// The ways that write row by row, each with its end of a table given up; into a SQLite file without a server.
struct Way {
    const char *name, *targetKind;
    const ServerKind* server;
    bool withMemo;
    const char* abort;
};

const Way kWays[] = {
    {"Parameters", "ORACLE", nullptr, false, "Aborting Loading Rows for Table :t As Errors Exceeded 50 Allowed\r\n"},
    {"RecordsInSqlite", "ACCESS", nullptr, false,
     "Aborting Loading Rows for Table :t As Errors Exceeded 50 Allowed\r\n"},
    {"RecordsInMySql", "MySQL", &kMySql, true, "Aborting Loading Rows for Table :t As Errors Exceeded Max Allowed\r\n"},
    {"ParametersInOracle", "ORACLE", &kOracle, false,
     "Aborting Loading Rows for Table :t As Errors Exceeded 50 Allowed\r\n"},
    {"RecordsInOracle", "ORACLE", &kOracle, true,
     "Aborting Loading Rows for Table :t As Errors Exceeded 50 Allowed\r\n"},
    {"RecordsInSqlServer", "MSSQL", &kSqlServer, true,
     "Aborting Loading Rows for Table :t As Errors Exceeded 50 Allowed\r\n"},
    {"ArraysInSqlServer", "MSSQL", &kSqlServer, false,
     "Aborting Loading Rows for Table :t As Errors Exceeded 50 Allowed\r\n"},
};

void PrintTo(const Way& way, std::ostream* out) {
    *out << way.name;
}

class RowByRowTest : public FailuresTest, public testing::WithParamInterface<Way> {
protected:
    RowByRowTest() {
        session_.targetKind = GetParam().targetKind;
        if (GetParam().server != nullptr) {
            session_.targetConnection = ConnectionTo(*GetParam().server);
            target_ = OpenNative(*GetParam().server);
        } else {
            target_ = std::make_unique<NativeSqlite>(Path("target.db"));
        }
    }
    /// 120 rows of which the rows from and to are in the target already.
    void LoadOver(int from, int to) {
        session_.tables = {Numbered("t", 120, GetParam().withMemo), Numbered("after", 3, GetParam().withMemo)};
        MakeTarget(*target_, session_.tables[0], from, to);
        MakeTarget(*target_, session_.tables[1], 0, -1);
        for (TestTable& table : session_.tables) table.targetOwner = "dbo";
        CloseIdleSessions();
        EXPECT_EQ(Run(), 1) << log_;
        EXPECT_EQ(FailedRows(), to - from + 1) << log_;
        EXPECT_TRUE(LogIsClosed());
        EXPECT_EQ(Outcome(), "recorded, no error");
        EXPECT_EQ(target_->Count("after_copy"), 3);
        EXPECT_EQ(InLog(" 3 Rows Loaded\r\n"), 1);
    }
    std::unique_ptr<NativeDatabase> target_;
};

TEST_P(RowByRowTest, ADuplicateKeyCostsItsRow) {
    LoadOver(60, 60);
    EXPECT_EQ(target_->Count("t_copy"), 120);
    EXPECT_EQ(target_->Ask("select NAME from t_copy where ID=60"), "old");
    EXPECT_EQ(InLog(" 119 Rows Loaded\r\n"), 1);
}

TEST_P(RowByRowTest, FiftyBadRowsAreSurvived) {
    LoadOver(21, 70);
    EXPECT_EQ(target_->Count("t_copy"), 120);
    EXPECT_EQ(InLog(" 70 Rows Loaded\r\n"), 1);
    EXPECT_EQ(InLog("Aborting"), 0);
}

TEST_P(RowByRowTest, TheFiftyFirstBadRowEndsTheTableAndNotTheRun) {
    LoadOver(21, 71);
    EXPECT_EQ(target_->Ask("select count(*) from t_copy where NAME <> 'old'"), "20");
    EXPECT_EQ(target_->Count("t_copy"), 71);
    EXPECT_EQ(InLog(GetParam().abort), 1) << log_;
}

INSTANTIATE_TEST_SUITE_P(Ways, RowByRowTest, testing::ValuesIn(kWays),
                         [](const auto& way) { return std::string(way.param.name); });

TEST_F(FailuresTest, ASourceTableThatDoesNotExistIsSaidByName) {
    for (const char* kind : {"ACCESS", "MySQL"}) {
        SCOPED_TRACE(kind);
        session_.sourceKind = kind;
        if (kind == std::string("MySQL")) session_.sourceConnection = Server().ConnectionString();
        TestTable missing{"nowhere", "target_of_nowhere", {{"ID", "Integer", 11}}, true, "append"};
        missing.sourceOwner = "shop";
        session_.tables = {missing};
        if (session_.id == 1) NativeSqlite(Path("target.db")).Run({"create table target_of_nowhere (ID int)"});
        EXPECT_EQ(Run(), 1);
        const std::size_t failure = log_.rfind("Error Loading Row\r\n");
        ASSERT_NE(failure, std::string::npos) << log_;
        EXPECT_LT(log_.find("nowhere", failure), log_.find("Aborting", failure)) << log_;
        EXPECT_EQ(InLog("Aborting Loading Rows for Table :nowhere"), session_.id) << log_;
        EXPECT_EQ(InLog("Rows Loaded"), 0);
        EXPECT_TRUE(LogIsClosed());
        EXPECT_EQ(Outcome(session_.id++), "recorded, no error");
    }
}

/// A connection string that cannot be opened, on one side of a session.
struct Faulty {
    const char *name, *kind, *connection;  ///< PORT stands for the running server's port, TDS for the stand-in's
    const char* said;                      ///< in the log
    bool noDrivers = false;                ///< on a machine where no ODBC driver is registered
};

constexpr const char* kSecret = "k33p-me-out";

const Faulty kFaulty[] = {
    {"UnknownProvider", "ACCESS", "Provider=Nobody.Knows.1;Data Source=x;Password=k33p-me-out",
     "Provider cannot be found"},
    {"NoProvider", "ACCESS", "Data Source=x;Password=k33p-me-out", "Provider cannot be found"},
    {"NoConnectionString", "ACCESS", "k33p-me-out", "connection string"},
    {"MissingFile", "ACCESS",
     "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=/nowhere/x.mdb;Jet OLEDB:Database "
     "Password=k33p-me-out",
     "/nowhere/x.mdb"},
    {"MissingDrive", "ACCESS", "Provider=SQLite;Data Source=Q:\\data\\x.db;Password=k33p-me-out", "drives/Q"},
    {"WrongPassword", "MySQL",
     "Driver={MySQL ODBC 8.0 Unicode Driver};Server=127.0.0.1;Port=PORT;Database=shop;"
     "Uid=loader;Pwd=k33p-me-out",
     "Access denied"},
    {"UnknownDatabase", "MySQL",
     "Driver={MySQL ODBC 8.0 Unicode Driver};Server=127.0.0.1;Port=PORT;Database=nowhere;"
     "Uid=loader;Pwd=pa55 w'ord",
     "Unknown database 'nowhere'"},
    {"ServerDown", "MySQL",
     "Driver={MySQL ODBC 8.0 Unicode Driver};Server=127.0.0.1;Port=1;Database=shop;Uid=loader;"
     "Pwd=k33p-me-out",
     "127.0.0.1"},
    {"WrongPasswordInSqlServer", "MSSQL",
     "Provider=SQLOLEDB;Data Source=127.0.0.1,TDS;Initial Catalog=shop;User ID=sa;Password=k33p-me-out",
     "Login failed for user 'sa'"},
    {"WrongPasswordInOracle", "ORACLE", "DSN=oracle;UID=loader;PWD=k33p-me-out", "Access denied for user 'loader'"},
    {"SqlServerDown", "MSSQL", "Provider=SQLOLEDB;Data Source=127.0.0.1,1;User ID=sa;Password=k33p-me-out",
     "Unable to connect"},
    {"NoSqlServerDriver", "MSSQL", "Provider=SQLOLEDB;Data Source=h;User ID=sa;Password=k33p-me-out", "Debian: tdsodbc",
     true},
    {"NoOracleDriver", "ORACLE", "Provider=MSDAORA;Data Source=ORCL;User ID=scott;Password=k33p-me-out",
     "Instant Client", true},
    {"UnknownDriver", "MSSQL", "Driver={No Such Driver};Server=h;UID=sa;PWD=k33p-me-out", "'odbcinst -q -d' lists"},
    {"UnknownDataSource", "ORACLE", "DSN=nowhere;UID=scott;PWD=k33p-me-out", "'odbcinst -q -s' lists"},
};

void PrintTo(const Faulty& faulty, std::ostream* out) {
    *out << faulty.name;
}

class FaultyConnectionTest : public FailuresTest, public testing::WithParamInterface<Faulty> {
protected:
    FaultyConnectionTest() {
        secrets_.emplace_back(kSecret);
        ConnectionTo(kOracle);
        folder_.MakeFolder("none");
        if (GetParam().noDrivers) setenv("ODBCSYSINI", Path("none").c_str(), 1);
    }
    ~FaultyConnectionTest() override { unsetenv("ODBCSYSINI"); }
    static std::string Connection() {
        std::string text = GetParam().connection;
        if (const auto at = text.find("PORT"); at != std::string::npos)
            text.replace(at, 4, std::to_string(Server().Port()));
        if (const auto at = text.find("TDS"); at != std::string::npos)
            text.replace(at, 3, std::to_string(SqlServer().Port()));
        return text;
    }
    void ExpectAnOrderlyEnd(const std::string& outcome) {
        EXPECT_EQ(Run(), 1);
        EXPECT_GE(InLog(GetParam().said), 1) << log_;
        EXPECT_EQ(InLog(" Rows Loaded"), 0) << log_;
        EXPECT_TRUE(LogIsClosed());
        EXPECT_EQ(Outcome(session_.id), outcome);
        EXPECT_EQ(errorLog_, "");
        EXPECT_EQ(output_, "");
    }
};

TEST_P(FaultyConnectionTest, AsSource) {
    NativeSqlite(Path("target.db")).Run({"create table t_copy (ID int, NAME varchar(50))"});
    session_.tables = {Numbered("t", 3)};
    session_.sourceKind = GetParam().kind;
    session_.sourceConnection = Connection();
    ExpectAnOrderlyEnd("recorded, no error");
}

TEST_P(FaultyConnectionTest, AsTarget) {
    session_.tables = {Numbered("t", 3)};
    session_.targetKind = GetParam().kind;
    session_.targetConnection = Connection();
    ExpectAnOrderlyEnd("recorded, no error");
    ++session_.id;
    session_.tables[0].option = "DELETE";
    ExpectAnOrderlyEnd("recorded, error");
}

INSTANTIATE_TEST_SUITE_P(Strings, FaultyConnectionTest, testing::ValuesIn(kFaulty),
                         [](const auto& faulty) { return std::string(faulty.param.name); });

TEST_F(FailuresTest, ALogThatCannotBeWrittenEndsTheRunThroughTheErrorLog) {
    struct Case {
        const char *log, *said;
    };
    NativeSqlite target(Path("target.db"));
    target.Run({"create table t_copy (ID int, NAME varchar(50))"});
    session_.tables = {Numbered("t", 3)};
    std::string before;
    for (const Case& c : {Case{"/nowhere/run.log", "Path not found: '/nowhere/run.log'"},
                          Case{"/dev/full", "Disk full: '/dev/full'"}}) {
        SCOPED_TRACE(c.log);
        session_.log = c.log;
        EXPECT_EQ(Run(), 2);
        const std::string head = "Error Occurred in Running Session ID:" + std::to_string(session_.id) + "\r\n\r\n";
        EXPECT_EQ(errorLog_, before + head + c.said + "\r\n");
        EXPECT_EQ(Outcome(session_.id++), "not recorded");
        EXPECT_EQ(target.Count("t_copy"), 0);
        before = errorLog_;
    }
}

}  // namespace
}  // namespace varnel
