// What a session does to its target tables before the rows come, by their options.
#include "tests/session/ServerKinds.h"
#include "tests/session/SessionTest.h"

namespace varnel {
namespace {

/// A kind of target: a SQLite file without a server. The types are its words for a number and a text.
struct Target {
    const char *name, *kind;
    const ServerKind* server;
    const char *number, *text;
};

void PrintTo(const Target& target, std::ostream* out) {
    *out << target.name;
}

constexpr Target kTargets[] = {{"Access", "ACCESS", nullptr, "Long", "Text"},
                               {"MySql", "MySQL", &kMySql, "Int", "Varchar"},
                               {"Oracle", "ORACLE", &kOracle, "Number", "Varchar2"},
                               {"SqlServer", "MSSQL", &kSqlServer, "int", "nvarchar"},
                               {"SqlServerDialect", "MSSQL", &kSqlServerDialect, "int", "nvarchar"}};

class PreparationTest : public SessionTest, public testing::WithParamInterface<Target> {
protected:
    PreparationTest() {
        session_.targetKind = GetParam().kind;
        NativeSqlite source(Path("source.db"));
        MakeNumbered(source, "t", 3);
        if (GetParam().server != nullptr) {
            session_.targetConnection = ConnectionTo(*GetParam().server);
            target_ = OpenNative(*GetParam().server);
            Forget(*target_, "t_copy");
        } else {
            target_ = std::make_unique<NativeSqlite>(Path("target.db"));
        }
        entry_.source = "t";
        entry_.target = "t_copy";
        entry_.targetOwner = "dbo";
        entry_.columns = {{"ID", "Integer", 11}, {"NAME", "VarWchar", 50}};
    }
    /// The first column's values, or the words of the failure.
    std::string Ids(const std::string& column) {
        Rows rows = target_->Read("t_copy", {{column, CellForm::Number}}, "1");
        std::string ids;
        for (const Row& row : rows) ids += row[0].value_or("NULL") + " ";
        return ids;
    }

    std::unique_ptr<NativeDatabase> target_;
    TestTable entry_;
};

TEST_P(PreparationTest, CreatesOnTheFirstRunAndAppendsOnTheNext) {
    entry_.exists = false;
    entry_.option = "append";
    entry_.firstTime = "CREATE";
    entry_.columns[0].target = "num";
    entry_.columns[0].targetType = GetParam().number;
    entry_.columns[1].targetType = GetParam().text;
    session_.tables = {entry_};
    EXPECT_EQ(Run(), 0) << log_;
    EXPECT_EQ(Ids("num"), "1 2 3 ");
    EXPECT_EQ(repository_.Ask("select TableExists, FirstTimeLoadOpt from vrtabs"), "1|");
    EXPECT_EQ(RunStored(1), 0) << log_;
    EXPECT_EQ(InLog("About To Create Table"), 1);
    EXPECT_EQ(Ids("num"), "1 1 2 2 3 3 ");
}

TEST_P(PreparationTest, DropsAndCreatesFromTheSourceWhoseNamesItWrites) {
    target_->Run({"create table t_copy (old int)"});
    entry_.columns[0].target = "num";
    entry_.firstTime = "CREATE";
    session_.tables = {entry_};
    EXPECT_EQ(Run(), 0) << log_;
    EXPECT_EQ(Ids("ID"), "1 2 3 ");
    EXPECT_EQ(repository_.Ask("select TableExists, FirstTimeLoadOpt from vrtabs"), "1|");
    EXPECT_EQ(RunStored(1), 0) << log_;
    EXPECT_EQ(Ids("ID"), "1 2 3 ");
}

TEST_P(PreparationTest, DeletesOrKeepsTheRowsThatWereThere) {
    struct Case {
        const char *option, *ids;
    };
    for (const Case& c : {Case{"DELETE", "1 2 3 "}, Case{"append", "1 2 3 99 "}, Case{"delete", "1 2 3 99 "}}) {
        SCOPED_TRACE(c.option);
        target_->Run({"drop table if exists t_copy", "create table t_copy (num int, NAME varchar(50))",
                      "insert into t_copy values (99, 'old')"});
        entry_.option = c.option;
        entry_.columns[0].target = "num";
        session_.tables = {entry_};
        EXPECT_EQ(Run(), 0) << log_;
        EXPECT_EQ(Ids("num"), c.ids);
        ++session_.id;
    }
}

TEST_P(PreparationTest, LeavesATableAloneThatItCouldNotPrepare) {
    struct Case {
        const char *option, *said;
        bool exists;
    };
    for (const Case& c : {Case{"DROP", "other Table Cannot be Dropped", true},
                          Case{"DELETE", "Error deleting rows from table other", true},
                          Case{"append", "Error Creating Table t", false}}) {
        SCOPED_TRACE(c.said);
        entry_.option = c.option;
        entry_.exists = c.exists;
        entry_.firstTime = "CREATE";
        entry_.target = "other";
        entry_.columns[0].type = entry_.columns[0].targetType = "Decimal(";
        session_.tables = {entry_};
        EXPECT_EQ(Run(), 1) << log_;
        EXPECT_EQ(InLog(c.said), 1) << log_;
        EXPECT_EQ(InLog("About to Insert Rows"), 0);
        EXPECT_TRUE(LogIsClosed());
        EXPECT_EQ(Outcome(session_.id), "recorded, error");
        EXPECT_EQ(repository_.Ask("select FirstTimeLoadOpt from vrtabs where sessionid=" + std::to_string(session_.id)),
                  "CREATE");
        ++session_.id;
    }
}

INSTANTIATE_TEST_SUITE_P(Targets, PreparationTest, testing::ValuesIn(kTargets),
                         [](const auto& target) { return std::string(target.param.name); });

}  // namespace
}  // namespace varnel
