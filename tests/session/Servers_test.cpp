// Rows that go to servers in arrays: a failure in the middle costs its row alone, as when every row is sent by itself.
#include "ado/Ado.h"
#include "tests/session/SessionTest.h"
#include "tests/support/OdbcNames.h"
#include "tests/support/tds/TdsServer.h"

namespace varnel {
namespace {

constexpr int kRows = 250;

class ServersTest : public SessionTest {
protected:
    ServersTest() {
        MakeNumbered(source_, "SRC", kRows);
        session_.tables = {{"SRC", "OUTROWS", {{"ID", "Integer", 11}, {"NAME", "VarWchar", 50}}, true, "append"}};
    }
    /// Rows of the target before the session; their keys are taken.
    void Take(const std::string& connection, const std::string& table, const std::vector<int>& keys) {
        for (const int key : keys) {
            ExecuteOn(connection, "insert into " + table + " (ID, NAME) values (" + std::to_string(key) + ",'old')");
        }
    }
    /// Runs the session into a target with these rows: each of them costs one row of the source, and no other.
    void ExpectOnlyTheseFail(const std::string& connection, const std::string& table, const std::vector<int>& keys,
                             const std::string& report) {
        CloseIdleSessions();
        EXPECT_EQ(Run(), 1) << FirstFailure();
        const std::string count = std::to_string(keys.size()), loaded = std::to_string(kRows - keys.size());
        EXPECT_EQ(InLog("Error Loading Row\r\n"), keys.size()) << log_;
        EXPECT_EQ(InLog(report), keys.size()) << log_;
        EXPECT_EQ(InLog(" " + loaded + " Rows Loaded\r\n"), 1) << log_;
        EXPECT_EQ(AskRows(connection, "select count(*), sum(ID) from " + table), std::to_string(kRows) + "|31375");
        EXPECT_EQ(AskRows(connection, "select count(*) from " + table + " where NAME='old'"), count);
        EXPECT_TRUE(LogIsClosed());
    }

    NativeSqlite source_{Path("source.db")};
    const std::vector<int> taken_{1, 7, 99, 100, 101, 130, 131, 132, 200, 250};
};

TEST_F(ServersTest, OracleByParameters) {
    OdbcNames names;
    names.AddMariaDb("oracle", Server(), "shop", "ORACLE");
    session_.targetKind = "ORACLE";
    session_.targetConnection =
        std::string("DSN=oracle;UID=") + MariaDbServer::kUser + ";PWD={" + MariaDbServer::kPassword + "}";
    ServerTable("OUTROWS");
    ExecuteOn(session_.targetConnection, "create table OUTROWS (ID Number(10,0) primary key, NAME Varchar2(50))");
    Take(session_.targetConnection, "OUTROWS", taken_);
    ExpectOnlyTheseFail(session_.targetConnection, "OUTROWS", taken_, "Duplicate entry '");
    for (const int key : taken_) EXPECT_EQ(InLog("Duplicate entry '" + std::to_string(key) + "'"), 1) << key;
}

TEST_F(ServersTest, SqlServerRecordByRecord) {
    TdsServer server;
    secrets_.emplace_back(TdsServer::kPassword);
    session_.targetKind = "MSSQL";
    session_.targetConnection = server.ConnectionString();
    session_.tables[0].targetOwner = "dbo";
    ExecuteOn(session_.targetConnection, "create table [dbo].[OUTROWS] ([ID] int primary key, [NAME] nvarchar(50))");
    Take(session_.targetConnection, "[dbo].[OUTROWS]", taken_);
    ExpectOnlyTheseFail(session_.targetConnection, "[dbo].[OUTROWS]", taken_, "Violation of UNIQUE KEY constraint");
}

}  // namespace
}  // namespace varnel
