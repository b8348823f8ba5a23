// A second opinion on Oracle's names: HSQLDB folds bare ones to upper case, as Oracle does and MariaDB does not.
#include <cctype>

#include "ado/Ado.h"
#include "tests/session/SessionTest.h"
#include "tests/support/HsqlServer.h"

namespace varnel {
namespace {

class OracleFoldingTest : public SessionTest {
protected:
    void SetUp() override {
        if (const std::string missing = HsqlServer::Missing(); !missing.empty()) GTEST_SKIP() << missing;
        server_ = std::make_unique<HsqlServer>();
        secrets_.emplace_back(HsqlServer::kPassword);
    }
    std::string Ask(const std::string& query) const { return AskRows(server_->ConnectionString(), query); }

    std::unique_ptr<HsqlServer> server_;
    const std::vector<TestColumn> columns_{
        {"Id", "Integer", 11}, {"Name", "VarWchar", 50}, {"Amount", "Numeric", 10, 2}, {"Born", "DBTimeStamp", 16}};
};

TEST_F(OracleFoldingTest, BareNamesOfATargetAreFolded) {
    NativeSqlite source(Path("source.db"));
    source.Run({"create table people (Id Long, Name Text(50), Amount Decimal(10,2), Born Timestamp)",
                "with recursive n(i) as (select 1 union all select i+1 from n where i < 250) insert into people select "
                "i, 'name ' || i, i + 0.25, '2003-07-15 13:05:09' from n",
                "insert into people values (251, Null, Null, Null)"});
    ExecuteOn(server_->ConnectionString(), "create table people_copy (old int)");
    session_.targetKind = "ORACLE";
    session_.targetConnection = server_->ConnectionString();
    session_.tables = {{"people", "people_copy", columns_}};
    CloseIdleSessions();
    EXPECT_EQ(Run(), 0) << FirstFailure();
    EXPECT_EQ(InLog(" 251 Rows Loaded\r\n"), 1) << log_;
    EXPECT_EQ(Ask("select \"ID\",\"NAME\",\"AMOUNT\",\"BORN\" from PUBLIC.\"PEOPLE_COPY\" where \"ID\" in (1,251) "
                  "order by 1"),
              "1|name 1|1.25|7/15/2003 1:05:09 PM\n251|NULL|NULL|NULL");
    session_.id = 2;
    session_.tables[0].option = "DELETE";
    CloseIdleSessions();
    EXPECT_EQ(Run(), 0) << FirstFailure();
    EXPECT_EQ(Ask("select count(*), sum(\"ID\") from PUBLIC.\"PEOPLE_COPY\""), "251|31626");
}

TEST_F(OracleFoldingTest, QuotedNamesOfASourceAreNot) {
    for (const char* statement :
         {"create table people (Id Number(10), Name Varchar2(50), Amount Number(10,2), Born Date)",
          "insert into people values (7, 'seven', 7.5, TIMESTAMP '2003-07-15 13:05:09')"}) {
        ExecuteOn(server_->ConnectionString(), statement);
    }
    session_.sourceKind = "ORACLE";
    session_.sourceConnection = server_->ConnectionString();
    TestTable table{"people", "people_copy", columns_, true, "append"};
    table.sourceOwner = "PUBLIC";
    table.where = "Id = 7";
    for (const bool upper : {false, true}) {
        session_.id = upper ? 2 : 1;
        for (TestColumn& column : table.columns) {
            for (char& c : column.source) c = static_cast<char>(upper ? std::toupper(c) : c);
        }
        session_.tables = {table};
        NativeSqlite target(Path("target.db"));
        Forget(target, "people_copy");
        target.Run({"create table people_copy (ID Long, NAME Text(50), AMOUNT Decimal(10,2), BORN DateTime)"});
        CloseIdleSessions();
        EXPECT_EQ(Run(), upper ? 0 : 1) << log_;
        EXPECT_EQ(InLog("not found: Id"), 1) << log_;  // of the first run, whose lines stay
        EXPECT_EQ(target.Ask("select ID || NAME || AMOUNT || BORN from people_copy"),
                  upper ? "7seven7.52003-07-15 13:05:09" : "");
    }
}

}  // namespace
}  // namespace varnel
