// A server that goes away in the middle of a table: what was lost is said, and the run ends in order.
#include <csignal>

#include "ado/Ado.h"
#include "tests/session/ServerKinds.h"
#include "tests/session/SessionTest.h"

namespace varnel {
namespace {

/// A kind of server, and what differs with it.
struct Loss {
    const ServerKind* server;
    const char* limit;  ///< in the line that gives a table up which went into the server
    const char* reads;  ///< how MariaDB's list of processes shows the query of the big table
};

constexpr Loss kLosses[] = {{&kMySql, "Max Allowed", "info like 'SELECT `ID`%`big`%'"},
                            {&kOracle, "50 Allowed", "info like 'SELECT \"ID\"%.big'"},
                            {&kSqlServer, "50 Allowed", nullptr}};

void PrintTo(const Loss& loss, std::ostream* out) {
    *out << loss.server->name;
}

/// Whether the server comes back for the next table.
enum class Comes { Back, NoMore };

class ServerLossTest : public SessionTest, public testing::WithParamInterface<Loss> {
protected:
    ServerLossTest() : connection_(ConnectionTo(*GetParam().server)), server_(OpenNative(*GetParam().server)) {}
    void TearDown() override {
        Revive();
        SessionTest::TearDown();
    }
    /// The stand-in crashes by plan; MariaDB is caught in the act, so its tables are large.
    static bool IsMariaDb() { return GetParam().reads != nullptr; }
    void Revive() {
        SqlServer().Revive();
        if (killed_) Server().Start();
        killed_ = false;
    }
    void KillTheServer() {
        Server().Kill();
        killed_ = true;
    }

    void TargetIsTheServer() {
        session_.targetKind = GetParam().server->kind;
        session_.targetConnection = connection_;
        NativeSqlite source(Path("source.db"));
        const std::string rows = IsMariaDb() ? "2000000" : "2000";
        source.Run({"create table big (ID int, NAME varchar(255))",
                    "with recursive n(i) as (select 1 union all select i+1 from n where i < " + rows +
                        ") insert into big select i, 'row ' || i from n",
                    "create table small (ID int, NAME varchar(255))", "insert into small values (1,'one')"});
        for (const char* name : {"big_copy", "small_copy"}) MakeTable(*server_, name);
        AddTables();
    }
    /// With their padding the rows of MariaDB are more than any socket keeps for a reader that sleeps.
    void SourceIsTheServer() {
        session_.sourceKind = GetParam().server->kind;
        session_.sourceConnection = connection_;
        for (const char* name : {"big", "small"}) MakeTable(*server_, name);
        server_->Run({"insert into small (ID, NAME) values (1, 'one')"});
        server_->Run({IsMariaDb() ? "insert into big select seq, repeat('x', 250) from mysql.seq_1_to_400000"
                                  : "insert into big with recursive n(i) as (select 1 union all select i+1 from n "
                                    "where i < 2000) select i, hex(zeroblob(100)) from n"});
        NativeSqlite target(Path("target.db"));
        for (const char* name : {"big_copy", "small_copy"}) MakeTable(target, name);
        AddTables();
    }
    static void MakeTable(NativeDatabase& database, const std::string& name) {
        Forget(database, name);
        database.Run({"create table " + name + " (ID int, NAME varchar(255))"});
    }
    void AddTables() {
        for (const char* name : {"big", "small"}) {
            TestTable entry{
                name, std::string(name) + "_copy", {{"ID", "Integer", 11}, {"NAME", "VarWchar", 255}}, true, "append"};
            entry.sourceOwner = entry.targetOwner = GetParam().server->owner;
            session_.tables.push_back(entry);
        }
        repository_.Add(session_);
        CloseIdleSessions();
    }
    /// The log-ins of the program, as MariaDB knows them, for which condition holds too.
    static std::string LogIns(const std::string& what, const std::string& condition) {
        return Server().Ask("select " + what + " from information_schema.processlist where user='loader' and " +
                            condition);
    }
    /// Runs the session and loses its target while it writes the big table.
    int RunAndLoseTheTarget(Comes comes) {
        if (!IsMariaDb()) SqlServer().CrashAfter(1234, comes == Comes::NoMore);
        const auto program = Start();
        if (IsMariaDb()) {
            EXPECT_TRUE(program->WaitUntil([] { return Server().Ask("select 1 from shop.big_copy limit 1") == "1"; }));
            comes == Comes::NoMore ? KillTheServer() : Server().Run({"kill user loader"});
        }
        return End(*program);
    }
    /// The same with its source while it reads; the program sleeps as long as MariaDB is killed.
    int RunAndLoseTheSource(Comes comes) {
        if (!IsMariaDb()) SqlServer().CrashAfter(1234, comes == Comes::NoMore);
        const auto program = Start();
        if (IsMariaDb()) {
            EXPECT_TRUE(program->WaitUntil([] { return LogIns("count(*)", GetParam().reads) != "0"; }));
            program->Signal(SIGSTOP);
            EXPECT_TRUE(Eventually([] { return LogIns("count(*)", "state like 'Writing to net%'") != "0"; }));
            comes == Comes::NoMore ? KillTheServer()
                                   : Server().Run({"kill connection " + LogIns("id", GetParam().reads)});
            program->Signal(SIGCONT);
        }
        return End(*program);
    }
    void ExpectTheBigTableGivenUp(const char* limit) {
        EXPECT_GE(InLog("Error Loading Row\r\n"), 1) << log_.substr(0, 2000);
        EXPECT_EQ(InLog(std::string("Aborting Loading Rows for Table :big As Errors Exceeded ") + limit), 1)
            << log_.substr(0, 2000);
        EXPECT_TRUE(LogIsClosed());
        EXPECT_EQ(Outcome(), "recorded, no error");
        EXPECT_EQ(errorLog_, "");
    }
    void ExpectTheNextTableLoaded(NativeDatabase& target) {
        EXPECT_EQ(InLog(" Rows Loaded\r\n"), 1) << log_.substr(0, 2000);
        EXPECT_EQ(InLog(" 1 Rows Loaded\r\n"), 1) << log_.substr(0, 2000);
        EXPECT_EQ(target.Ask("select NAME from small_copy"), "one");
    }
    void ExpectTheNextTableFailed() {
        const std::size_t second = log_.find("About to Insert Rows in small");
        ASSERT_NE(second, std::string::npos) << log_.substr(0, 2000);
        EXPECT_NE(log_.find("Error Loading Row\r\n", second), std::string::npos) << log_.substr(second);
        EXPECT_EQ(InLog(" Rows Loaded"), 0);
    }
    /// Rows go a hundred at a time, and such a hundred is stored whole or not at all.
    void ExpectWholeHundreds() {
        server_ = OpenNative(*GetParam().server);
        EXPECT_EQ(server_->Count("big_copy") % 100, 0);
    }

    std::string connection_;
    std::unique_ptr<NativeDatabase> server_;
    bool killed_ = false;
};

TEST_P(ServerLossTest, ATargetKilledInTheMiddle) {
    TargetIsTheServer();
    EXPECT_EQ(RunAndLoseTheTarget(Comes::NoMore), 1);
    ExpectTheBigTableGivenUp(GetParam().limit);
    ExpectTheNextTableFailed();
    Revive();
    ExpectWholeHundreds();
    EXPECT_EQ(server_->Count("small_copy"), 0);
}

TEST_P(ServerLossTest, TheNextTableLogsInAnewWhenTheTargetComesBack) {
    TargetIsTheServer();
    EXPECT_EQ(RunAndLoseTheTarget(Comes::Back), 1);
    ExpectTheBigTableGivenUp(GetParam().limit);
    ExpectWholeHundreds();
    EXPECT_GT(server_->Count("big_copy"), 0);
    ExpectTheNextTableLoaded(*server_);
}

TEST_P(ServerLossTest, ASourceKilledInTheMiddle) {
    SourceIsTheServer();
    EXPECT_EQ(RunAndLoseTheSource(Comes::NoMore), 1);
    ExpectTheBigTableGivenUp("50 Allowed");
    ExpectTheNextTableFailed();
    EXPECT_EQ(InLog("Aborting Loading Rows for Table :small"), 1) << log_.substr(0, 2000);
}

TEST_P(ServerLossTest, TheNextTableLogsInAnewWhenTheSourceComesBack) {
    SourceIsTheServer();
    EXPECT_EQ(RunAndLoseTheSource(Comes::Back), 1);
    ExpectTheBigTableGivenUp("50 Allowed");
    NativeSqlite target(Path("target.db"));
    ExpectTheNextTableLoaded(target);
    // MariaDB's ODBC driver takes a result whole before it hands over a row.
    const std::int64_t arrived = target.Count("big_copy");
    EXPECT_LT(arrived, 400'000);
    EXPECT_EQ(arrived > 0, GetParam().server != &kOracle) << arrived;
}

INSTANTIATE_TEST_SUITE_P(Servers, ServerLossTest, testing::ValuesIn(kLosses),
                         [](const auto& loss) { return std::string(loss.param.server->name); });

}  // namespace
}  // namespace varnel
