// What a session does to its target tables before the rows come, by their options.
#include "tests/session/SessionTest.h"

namespace varnel {
namespace {

/// Both kinds of target that have a way of their own.
class PreparationTest : public SessionTest, public testing::WithParamInterface<const char*> {
protected:
    PreparationTest() {
        session_.targetKind = GetParam();
        NativeSqlite source(Path("source.db"));
        MakeNumbered(source, "t", 3);
        if (session_.targetKind == "MySQL") {
            session_.targetConnection = Server().ConnectionString();
            ServerTable("t_copy");
            target_ = std::make_unique<NativeMySql>(Server());
        } else {
            target_ = std::make_unique<NativeSqlite>(Path("target.db"));
        }
        entry_.source = "t";
        entry_.target = "t_copy";
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
    entry_.columns[0].target = "number";
    entry_.columns[0].targetType = GetParam() == std::string("MySQL") ? "Int" : "Long";
    entry_.columns[1].targetType = GetParam() == std::string("MySQL") ? "Varchar" : "Text";
    session_.tables = {entry_};
    EXPECT_EQ(Run(), 0) << log_;
    EXPECT_EQ(Ids("number"), "1 2 3 ");
    EXPECT_EQ(repository_.Ask("select TableExists, FirstTimeLoadOpt from vrtabs"), "1|");
    EXPECT_EQ(RunStored(1), 0) << log_;
    EXPECT_EQ(InLog("About To Create Table"), 1);
    EXPECT_EQ(Ids("number"), "1 1 2 2 3 3 ");
}

TEST_P(PreparationTest, DropsAndCreatesFromTheSourceWhoseNamesItWrites) {
    target_->Run({"create table t_copy (old int)"});
    entry_.columns[0].target = "number";
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
        target_->Run({"drop table if exists t_copy", "create table t_copy (number int, NAME varchar(50))",
                      "insert into t_copy values (99, 'old')"});
        entry_.option = c.option;
        entry_.columns[0].target = "number";
        session_.tables = {entry_};
        EXPECT_EQ(Run(), 0) << log_;
        EXPECT_EQ(Ids("number"), c.ids);
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

INSTANTIATE_TEST_SUITE_P(Targets, PreparationTest, testing::Values("ACCESS", "MySQL"),
                         [](const auto& kind) { return std::string(kind.param); });

}  // namespace
}  // namespace varnel
