// Signals in the middle of a table: the first is a cancel request, the second ends the process, and neither leaves a
// target that contradicts the log or does not open.
#include <csignal>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>

#include "tests/session/SessionTest.h"

namespace varnel {
namespace {

/// A table that no way of writing finishes before a signal comes, made once.
const std::string& BigSource() {
    static const TempFolder folder;
    static const std::string path = [] {
        const std::string file = folder.Path() + "/big.db";
        NativeSqlite(file).Run({"pragma synchronous=off", "create table big (ID int, NAME varchar(50), MEMO LongText)",
                                "with recursive n(i) as (select 1 union all select i+1 from n where i < 3000000) "
                                "insert into big select i, "
                                "'row ' || i, 'a memo' from n"});
        return file;
    }();
    return path;
}

struct Way {
    const char *name, *targetKind;
    bool withMemo;
    int signal;
};

void PrintTo(const Way& way, std::ostream* out) {
    *out << way.name;
}

class SignalsTest : public SessionTest {
protected:
    void PrepareFor(const Way& way) {
        session_.sourceConnection = SqliteConnection(BigSource());
        session_.targetKind = way.targetKind;
        if (session_.targetKind == "MySQL") {
            session_.targetConnection = Server().ConnectionString();
            ServerTable("big_copy");
            target_ = std::make_unique<NativeMySql>(Server());
        } else {
            target_ = std::make_unique<NativeSqlite>(Path("target.db"));
        }
        target_->Run({"create table big_copy (ID int, NAME varchar(50), MEMO text)",
                      "create table if not exists never (ID int, NAME varchar(50))"});
        TestTable big{"big", "big_copy", {{"ID", "Integer", 11}, {"NAME", "VarWchar", 50}}, true, "append"};
        TestTable never = big;
        never.target = "never";
        if (way.withMemo) big.columns.push_back({"MEMO", "LongVarWChar"});
        session_.tables = {big, never};
        repository_.Add(session_);
    }
    /// Rows are on their way: seen in the target, or held in the journal of a SQLite file.
    bool IsWriting() {
        if (session_.targetKind == "MySQL") return target_->Ask("select 1 from big_copy limit 1") == "1";
        return std::filesystem::exists(Path("target.db-journal"));
    }
    std::int64_t LoadedByTheLog() const {
        static const std::regex line(" ([0-9]+) Rows Loaded\r\n");
        std::smatch found;
        return std::regex_search(log_, found, line) ? std::stoll(found[1]) : -1;
    }
    /// The target's rows are the first of the source, without a gap.
    void ExpectAPrefix(std::int64_t count) {
        EXPECT_EQ(target_->Count("big_copy"), count);
        EXPECT_EQ(target_->Ask("select max(ID) from big_copy"), std::to_string(count));
        EXPECT_EQ(target_->Ask("select count(distinct ID) from big_copy"), std::to_string(count));
    }
    std::unique_ptr<NativeDatabase> target_;
};

class CancelTest : public SignalsTest, public testing::WithParamInterface<Way> {};

TEST_P(CancelTest, LeavesWhatTheLogCounts) {
    PrepareFor(GetParam());
    const auto program = Start();
    ASSERT_TRUE(program->WaitUntil([&] { return IsWriting(); }));
    program->Signal(GetParam().signal);
    EXPECT_EQ(End(*program), 3) << log_;
    const std::int64_t loaded = LoadedByTheLog();
    EXPECT_GT(loaded, 0);
    EXPECT_LT(loaded, 3'000'000) << "the table was finished before the signal came";
    ExpectAPrefix(loaded);
    EXPECT_EQ(target_->Count("never"), 0);
    EXPECT_EQ(InLog("About to Insert Rows"), 1);
    EXPECT_EQ(InLog("Error Loading Row"), 0);
    EXPECT_TRUE(LogIsClosed());
    EXPECT_EQ(Outcome(), "recorded, no error");
    EXPECT_EQ(errorLog_, "");
}

INSTANTIATE_TEST_SUITE_P(Ways, CancelTest,
                         testing::Values(Way{"ParametersTerm", "ORACLE", false, SIGTERM},
                                         Way{"RecordsInSqliteTerm", "ACCESS", true, SIGTERM},
                                         Way{"RecordsInSqliteInt", "ACCESS", false, SIGINT},
                                         Way{"RecordsInMySqlTerm", "MySQL", true, SIGTERM},
                                         Way{"BatchesInMySqlTerm", "MySQL", false, SIGTERM},
                                         Way{"BatchesInMySqlHup", "MySQL", false, SIGHUP}),
                         [](const auto& way) { return std::string(way.param.name); });

/// Whether a signal stands in one of the sets of signals that the system shows for a process.
bool HasBit(const RunningProgram& program, const std::string& set, int signal) {
    std::ifstream status("/proc/" + std::to_string(program.Id()) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (!line.starts_with(set)) continue;
        return (std::stoull(line.substr(set.size()), nullptr, 16) >> (signal - 1) & 1) != 0;
    }
    return false;
}

TEST_F(SignalsTest, ASignalBeforeTheFirstTableIsNotForgotten) {
    PrepareFor({"", "ACCESS", false, SIGTERM});
    NativeSqlite repository(Path("vrrepo.mdb"));
    repository.Run({"begin exclusive"});
    const auto program = Start();
    ASSERT_TRUE(program->WaitUntil([&] { return HasBit(*program, "SigCgt:", SIGTERM); }));
    program->Signal(SIGTERM);
    repository.Run({"rollback"});
    EXPECT_EQ(End(*program), 3) << log_ << errorLog_;
    EXPECT_TRUE(LogIsClosed());
    EXPECT_EQ(target_->Count("big_copy"), std::max<std::int64_t>(LoadedByTheLog(), 0));
    EXPECT_EQ(target_->Count("never"), 0);
}

TEST_F(SignalsTest, ASecondSignalEndsARunThatHangs) {
    PrepareFor({"", "MySQL", false, SIGTERM});
    const auto program = Start();
    ASSERT_TRUE(program->WaitUntil([&] { return IsWriting(); }));
    target_->Run({"lock tables big_copy write"});
    ASSERT_TRUE(Eventually([] {
        return Server().Ask(
                   "select count(*) from information_schema.processlist where user='loader' and state like "
                   "'Waiting for table%'") != "0";
    }));
    program->Signal(SIGTERM);
    ASSERT_TRUE(Eventually([&] { return !HasBit(*program, "ShdPnd:", SIGTERM); }));
    program->Signal(SIGTERM);
    EXPECT_EQ(End(*program), 128 + SIGTERM);
    EXPECT_FALSE(LogIsClosed());
    target_->Run({"unlock tables"});
    EXPECT_EQ(target_->Count("big_copy") % 100, 0);
}

/// Ends a run in the middle of its writing, and asks the SQLite target afterwards.
TEST_F(SignalsTest, ASqliteTargetSurvivesASuddenEnd) {
    struct Case {
        const char* name;
        std::vector<int> signals;
    };
    for (const Case& c : {Case{"two at once", {SIGSTOP, SIGTERM, SIGINT, SIGCONT}}, Case{"killed", {SIGKILL}}}) {
        SCOPED_TRACE(c.name);
        PrepareFor({"", "ACCESS", false, 0});
        const auto program = Start(session_.id);
        ASSERT_TRUE(program->WaitUntil([&] { return target_->Count("big_copy") > 0; }));
        ASSERT_TRUE(program->WaitUntil([&] { return IsWriting(); }));
        for (const int signal : c.signals) program->Signal(signal);
        EXPECT_GT(End(*program), 128);
        EXPECT_EQ(target_->Ask("pragma integrity_check"), "ok");
        const std::int64_t count = target_->Count("big_copy");
        EXPECT_GT(count, 0);
        ExpectAPrefix(count);
        EXPECT_EQ(Outcome(session_.id++), "not recorded");
        target_->Run({"drop table big_copy", "drop table never"});
    }
}

}  // namespace
}  // namespace varnel
