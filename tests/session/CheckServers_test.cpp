// Sound sessions, servers, and the report as data.
#include <gmock/gmock.h>

#include "ado/Ado.h"
#include "providers/foxpro/Container.h"
#include "tests/session/CheckSession.h"
#include "tests/support/tds/TdsServer.h"

namespace varnel {
namespace {

using testing::HasSubstr;
using testing::Not;

class CheckedSessions : public CheckSessionTest {
protected:
    void Admin(const std::vector<std::string>& arguments) const {
        EXPECT_EQ(RunningProgram(Path("varnel-admin"), arguments, folder_.Path(), Path("admin.txt")).Wait(), 0)
            << ReadBytes(Path("admin.txt"));
    }
    void ExpectNoFault() const {
        EXPECT_EQ(checkStatus_, 0) << report_;
        EXPECT_THAT(report_, Not(HasSubstr("fault: ")));
        EXPECT_THAT(report_, HasSubstr("; nothing was changed\n"));
    }
};

TEST_F(CheckedSessions, OfTheExamplesHaveNoFault) {
    const std::string examples = VARNEL_SOURCE "/examples/";
    folder_.MakeFolder("drives/C/shop/out");
    folder_.MakeFolder("drives/C/shop/drop");
    for (const char* file : {"cork.csv", "lodz.csv", "tokyo.csv"})
        PutFile(std::string("drives/C/shop/drop/") + file, ReadBytes(examples + "drop/" + file));
    Sql("drives/C/shop/shop.db", {ReadBytes(examples + "shop.sql")});
    Admin({"import", examples + "archive.toml", examples + "export.toml", examples + "receipts.toml", "--repository",
           Path("vrrepo.mdb")});
    for (const char* session : {"1", "3", "4", "5"})
        for (const char* option : {"--json", "--values"}) {
            SCOPED_TRACE(std::string(session) + " " + option);
            Check({option}, session);
            EXPECT_EQ(checkStatus_, 0) << report_;
            EXPECT_THAT(report_, Not(HasSubstr("fault: ")));
        }
    EXPECT_EQ(RunStored(1), 0) << errorLog_;
    Check({}, "1");
    ExpectNoFault();
    ExpectFinding({"warning: the run deletes its 333 rows of the table 'Paid Orders'"}, "keep a copy");
}

TEST_F(CheckedSessions, OfEveryFileKindHaveNoFaultAndRunWell) {
    folder_.MakeFolder("fox");
    session_.targetConnection = AccessConnection(Path("target.mdb"));
    repository_.Add(session_);
    session_.id = 2;
    session_.targetKind = "FOXPRO";
    session_.targetType = "DIR";
    session_.targetConnection = "Provider=VFPOLEDB;Data Source=" + Path("fox");
    session_.targetFolder = Path("fox") + "/";
    session_.tables[0].columns[0].targetType = "Integer";
    session_.tables[0].columns[1].targetType = "Character";
    repository_.Add(session_);
    foxpro::CreateContainer(Path("fox/shop.dbc"));
    session_.id = 3;
    session_.targetType = "DBC";
    session_.targetConnection = "Provider=VFPOLEDB;Data Source=" + Path("fox/shop.dbc");
    session_.tables[0].target = "CUSTOMERS_OF_THE_SHOP";
    session_.tables[0].columns[1].target = "CUSTOMERNAME";
    repository_.Add(session_);
    for (const char* session : {"1", "2", "3"}) {
        SCOPED_TRACE(session);
        Check({}, session);
        ExpectNoFault();
        EXPECT_THAT(report_, HasSubstr("makes the table, reads 2 rows, writes record by record"));
        EXPECT_EQ(RunStored(std::stoi(session)), 0) << log_ << errorLog_;
    }
}

TEST_F(CheckedSessions, IntoSqliteKeepTextsOfAnyLength) {
    Sql("target.db", {"create table OUTROWS (ID INTEGER, NAME VARCHAR(4))"});
    session_.tables[0].exists = true;
    repository_.Add(session_);
    Check({"--values"});
    ExpectNoFault();
    EXPECT_EQ(RunStored(1), 0) << log_;
}

TEST_F(CheckedSessions, LeaveAnUnfinishedChangeAsItIs) {
    Sql("target.db", {"create table OUTROWS (ID INTEGER, NAME VARCHAR(9))"});
    PutFile("target.db-journal", std::string(600, 'x'));
    repository_.Add(session_);
    Check();
    ExpectFinding({"warning: the target has an unfinished change", "target.db-journal"}, "the next run sets it right");
    EXPECT_EQ(checkStatus_, 0) << report_;
}

TEST_F(CheckedSessions, IntoMySqlAreJudgedByTheServersOwnColumns) {
    const std::string table = ServerTable("CHECKED");
    Server().Run({"create table shop.CHECKED (ID int auto_increment primary key, NAME varchar(4), MADE timestamp null)",
                  "insert into shop.CHECKED (NAME) values ('old')"});
    Sql("source.db", {"update SRC set NAME='NULL' where ID=1"});
    session_.targetKind = "MySQL";
    session_.targetConnection = Server().ConnectionString();
    session_.tables = {{"SRC", table, {{"NAME", "VarWchar", 50}, {"MADE", "DBTimeStamp"}}, true, "DELETE"}};
    repository_.Add(session_);
    Check();
    ExpectFinding({"warning: NAME: ", "text of 4 characters", "whole batch of up to 100 rows"}, "wider");
    ExpectFinding({"warning: MADE: ", "before 1970"}, "use DateTime");
    ExpectFinding({"warning: the run deletes its 1 row of the table 'CHECKED'"}, "keep a copy");
    Check({"--values"});
    ExpectFinding({"warning: NAME: 'NAME' reads exactly NULL"}, "look at these values");
    ExpectFinding({"fault: NAME: 'NAME' is longer", "row 2: 'Jones'"}, "correct these values");
    ExpectFinding({"fault: MADE: 'MADE' lies outside", "row 2"}, "correct these values");
    EXPECT_EQ(Server().Ask("select count(*) from shop.CHECKED"), "1");
    EXPECT_EQ(RunStored(1), 1);
    EXPECT_EQ(Server().Ask("select count(*) from shop.CHECKED"), "0") << "the batch is refused as a whole";
}

TEST_F(CheckedSessions, WithAWrongPasswordSaySoWithoutTellingIt) {
    session_.targetKind = "MySQL";
    session_.targetConnection =
        "Driver={MySQL ODBC 8.0 Unicode Driver};SERVER=127.0.0.1;PORT=" + std::to_string(Server().Port()) +
        ";DATABASE=shop;USER=loader;PASSWORD=verschwiegen";
    repository_.Add(session_);
    Check();
    ExpectFinding({"fault: the target cannot be opened", "Access denied"}, "user and password");
    EXPECT_THAT(report_, Not(HasSubstr("verschwiegen")));
}

TEST_F(CheckedSessions, FromAndIntoSqlServer) {
    TdsServer server;
    secrets_.emplace_back(TdsServer::kPassword);
    ExecuteOn(server.ConnectionString(), "create table [dbo].[SRC] ([ID] int, [NAME] nvarchar(50))");
    ExecuteOn(server.ConnectionString(), "insert into [dbo].[SRC] ([ID], [NAME]) values (1, 'a')");
    ExecuteOn(server.ConnectionString(), "create table [dbo].[OUTROWS] ([ID] int, [NAMES] nvarchar(50))");
    session_.sourceKind = session_.targetKind = "MSSQL";
    session_.sourceConnection = session_.targetConnection = server.ConnectionString();
    session_.tables[0].exists = true;
    session_.tables[0].sourceOwner = "dbo";
    repository_.Add(session_);
    Check();
    EXPECT_THAT(report_, HasSubstr("reads 1 row"));
    ExpectFinding({"fault: ", "the target table has no owner"}, "mostly dbo");
    repository_.Execute("update vrtabs set DestOwnerName='dbo'");
    Check();
    ExpectFinding({"fault: NAME: the target table 'OUTROWS' has no column 'NAME'"}, "did you mean 'NAMES'?");
    EXPECT_EQ(RunStored(1), 1);
}

TEST_F(CheckedSessions, AreToldAsData) {
    session_.tables[0].where = "NAME LIKE 'S*'";
    repository_.Add(session_);
    Check({"--json"});
    EXPECT_EQ(checkStatus_, 0);
    for (const char* part :
         {"\"session\": 1", "\"rows_to_read\": 0", "\"rows_in_target\": null", "\"severity\": \"warning\"",
          "\"faults\": 0", "\"Create Table [OUTROWS] (\\r [ID] Long,\\r [NAME] Text(50)\\r)\""})
        EXPECT_THAT(report_, HasSubstr(part));
}

TEST_F(CheckedSessions, NeedANumberThatExists) {
    repository_.Add(session_);
    Check({}, "40000");
    EXPECT_EQ(checkStatus_, 1);
    ExpectFinding({"fault: sessionid: the number 40000 is no session number"}, "-32768 to 32767");
    Check({}, "7");
    EXPECT_EQ(checkStatus_, 1);
    EXPECT_THAT(report_, HasSubstr("there is no session 7 in "));
    Check({}, "one");
    EXPECT_EQ(checkStatus_, 2);
}

}  // namespace
}  // namespace varnel
