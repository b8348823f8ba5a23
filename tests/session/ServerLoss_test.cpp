// A server that goes away in the middle of a table: what was lost is said, and the run ends in order.
#include <csignal>

#include "tests/session/SessionTest.h"

namespace varnel {
namespace {

constexpr int kRows = 400'000;  // with their padding more than any socket keeps for a reader that sleeps

/// How the server's list of processes shows the query of the big table.
constexpr const char* kReadsBig = "info like 'SELECT `ID`%`big`%'";

class ServerLossTest : public SessionTest {
protected:
    void TearDown() override {
        if (killed_) Server().Start();
        SessionTest::TearDown();
    }
    void KillTheServer() {
        Server().Kill();
        killed_ = true;
    }

    void TargetIsTheServer() {
        session_.targetKind = "MySQL";
        session_.targetConnection = Server().ConnectionString();
        NativeSqlite source(Path("source.db"));
        source.Run({"create table big (ID int, NAME varchar(255))",
                    "with recursive n(i) as (select 1 union all select i+1 from n where i < 2000000) insert into big "
                    "select i, 'row ' || i from n",
                    "create table small (ID int, NAME varchar(255))", "insert into small values (1,'one')"});
        for (const char* name : {"big", "small"}) {
            ServerTable(name + std::string("_copy"));
            Server().Run({std::string("create table shop.") + name + "_copy (ID int, NAME varchar(255))"});
        }
    }
    void SourceIsTheServer() {
        session_.sourceKind = "MySQL";
        session_.sourceConnection = Server().ConnectionString();
        for (const char* name : {"big", "small"}) ServerTable(name);
        Server().Run({"create table shop.big as select seq as ID, repeat('x', 250) as NAME from mysql.seq_1_to_" +
                          std::to_string(kRows),
                      "create table shop.small as select 1 as ID, 'one' as NAME"});
        NativeSqlite target(Path("target.db"));
        for (const char* name : {"big", "small"}) {
            target.Run({std::string("create table ") + name + "_copy (ID int, NAME varchar(255))"});
        }
    }
    void AddTables() {
        for (const char* name : {"big", "small"}) {
            TestTable entry{
                name, std::string(name) + "_copy", {{"ID", "Integer", 11}, {"NAME", "VarWchar", 255}}, true, "append"};
            entry.sourceOwner = "shop";
            session_.tables.push_back(entry);
        }
        repository_.Add(session_);
    }
    /// The log-ins of the program, as the server knows them, for which condition holds too.
    static std::string LogIns(const std::string& what, const std::string& condition) {
        return Server().Ask("select " + what + " from information_schema.processlist where user='loader' and " +
                            condition);
    }
    /// Stops the program once it streams the big table from the server; the server then waits for it.
    static bool StopWhileReading(RunningProgram& program) {
        if (!program.WaitUntil([] { return LogIns("count(*)", kReadsBig) != "0"; })) return false;
        program.Signal(SIGSTOP);
        return Eventually([] { return LogIns("count(*)", "state like 'Writing to net%'") != "0"; });
    }
    void ExpectTheBigTableGivenUp(const char* limit) {
        EXPECT_GE(InLog("Error Loading Row\r\n"), 1) << log_.substr(0, 2000);
        EXPECT_EQ(InLog(std::string("Aborting Loading Rows for Table :big As Errors Exceeded ") + limit), 1)
            << log_.substr(0, 2000);
        EXPECT_TRUE(LogIsClosed());
        EXPECT_EQ(Outcome(), "recorded, no error");
        EXPECT_EQ(errorLog_, "");
    }

    bool killed_ = false;
};

TEST_F(ServerLossTest, ATargetServerKilledInTheMiddle) {
    TargetIsTheServer();
    AddTables();
    const auto program = Start();
    ASSERT_TRUE(program->WaitUntil([] { return Server().Ask("select 1 from shop.big_copy limit 1") == "1"; }));
    KillTheServer();
    EXPECT_EQ(End(*program), 1);
    ExpectTheBigTableGivenUp("Max Allowed");
    const std::size_t second = log_.find("About to Insert Rows in small");
    ASSERT_NE(second, std::string::npos);
    EXPECT_NE(log_.find("Error Loading Row\r\n", second), std::string::npos) << log_.substr(second);
    EXPECT_EQ(InLog(" Rows Loaded"), 0);
    Server().Start();
    killed_ = false;
    EXPECT_EQ(Server().Ask("select count(*) % 100 from shop.big_copy"), "0");
    EXPECT_EQ(Server().Ask("select count(*) from shop.small_copy"), "0");
}

TEST_F(ServerLossTest, TheNextTableLogsInAnewWhenTheTargetLogInIsLost) {
    TargetIsTheServer();
    AddTables();
    const auto program = Start();
    ASSERT_TRUE(program->WaitUntil([] { return Server().Ask("select 1 from shop.big_copy limit 1") == "1"; }));
    Server().Run({"kill user loader"});
    EXPECT_EQ(End(*program), 1);
    ExpectTheBigTableGivenUp("Max Allowed");
    EXPECT_EQ(InLog(" 1 Rows Loaded\r\n"), 1) << log_.substr(0, 2000);
    EXPECT_EQ(Server().Ask("select NAME from shop.small_copy"), "one");
    EXPECT_EQ(Server().Ask("select count(*) % 100 from shop.big_copy"), "0");
}

TEST_F(ServerLossTest, ASourceServerKilledInTheMiddle) {
    SourceIsTheServer();
    AddTables();
    const auto program = Start();
    ASSERT_TRUE(StopWhileReading(*program));
    KillTheServer();
    program->Signal(SIGCONT);
    EXPECT_EQ(End(*program), 1);
    ExpectTheBigTableGivenUp("50 Allowed");
    EXPECT_EQ(InLog("Aborting Loading Rows for Table :small"), 1) << log_.substr(0, 2000);
    EXPECT_EQ(InLog(" Rows Loaded"), 0);
    const std::int64_t arrived = NativeSqlite(Path("target.db")).Count("big_copy");
    EXPECT_GT(arrived, 0);
    EXPECT_LT(arrived, kRows);
}

TEST_F(ServerLossTest, TheNextTableLogsInAnewWhenTheSourceLogInIsLost) {
    SourceIsTheServer();
    AddTables();
    const auto program = Start();
    ASSERT_TRUE(StopWhileReading(*program));
    Server().Run({"kill connection " + LogIns("id", kReadsBig)});
    program->Signal(SIGCONT);
    EXPECT_EQ(End(*program), 1);
    ExpectTheBigTableGivenUp("50 Allowed");
    EXPECT_EQ(InLog(" 1 Rows Loaded\r\n"), 1) << log_.substr(0, 2000);
    EXPECT_EQ(NativeSqlite(Path("target.db")).Ask("select NAME from small_copy"), "one");
}

}  // namespace
}  // namespace varnel
