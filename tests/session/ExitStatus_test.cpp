// What the program answers to its command line and to the end of its run.
#include <filesystem>

#include "tests/session/SessionTest.h"

namespace varnel {
namespace {

class ExitStatusTest : public SessionTest {
protected:
    int RunWith(const std::vector<std::string>& arguments) {
        return RunningProgram(Path("varnel"), arguments, folder_.Path(), Path("output.txt")).Wait();
    }
};

TEST_F(ExitStatusTest, ACommandLineThatNamesNoSessionTouchesNothing) {
    repository_.Add(session_);
    WriteBytes(Path("output.txt"), "");
    const auto before = Snapshot(folder_.Path());
    const std::vector<std::vector<std::string>> tails = {
        {},
        {""},
        {" "},
        {"abc"},
        {"0"},
        {"0.4"},
        {"1x"},
        {"32768"},
        {"-0"},
        {"1,"},
        {"0x1"},
        {"12345678"},
        {"session", "1"},
        {"7"},
        {"-1"},
        {"32767", "hidden"},
    };
    for (const auto& tail : tails) {
        SCOPED_TRACE(testing::PrintToString(tail));
        EXPECT_EQ(RunWith(tail), 0);
        EXPECT_EQ(Content("output.txt"), "");
        EXPECT_EQ(Changed(before, Snapshot(folder_.Path())), "");
    }
}

TEST_F(ExitStatusTest, ASessionWithoutTablesOrColumnsRecordsItsRunAndIsNoFailure) {
    repository_.Add(session_);
    EXPECT_EQ(RunStored(1), 0);
    EXPECT_EQ(Outcome(1), "recorded, no error");
    session_.id = 2;
    session_.tables = {{"t", "t", {}}};
    repository_.Add(session_);
    EXPECT_EQ(RunStored(2), 0);
    EXPECT_EQ(Outcome(2), "recorded, no error");
    EXPECT_FALSE(std::filesystem::exists(session_.log));
    EXPECT_EQ(errorLog_, "");
}

TEST_F(ExitStatusTest, AnySpellingOfTheNumberRunsTheSession) {
    NativeSqlite source(Path("source.db"));
    MakeNumbered(source, "t", 1);
    NativeSqlite target(Path("target.db"));
    target.Run({"create table t_copy (ID int)"});
    session_.id = 12;
    session_.tables = {{"t", "t_copy", {{"ID", "Integer", 4}}, true, "append"}};
    repository_.Add(session_);
    int runs = 0;
    for (const auto& tail : std::vector<std::vector<std::string>>{
             {"12"}, {"+12"}, {"12.4"}, {" 12 "}, {"1.2e1"}, {"12 hidden"}, {"12", "x", "y", "z"}}) {
        SCOPED_TRACE(testing::PrintToString(tail));
        EXPECT_EQ(RunWith(tail), 0);
        EXPECT_EQ(target.Count("t_copy"), ++runs);
    }
}

TEST_F(ExitStatusTest, ARunWithoutALogCountsAsOneWithErrorsInTheRepositoryOnly) {
    NativeSqlite source(Path("source.db"));
    MakeNumbered(source, "t", 5);
    NativeSqlite target(Path("target.db"));
    target.Run({"create table t_copy (ID int)"});
    session_.log = "";
    session_.tables = {{"t", "t_copy", {{"ID", "Integer", 4}}, true, "append"}};
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(target.Count("t_copy"), 5);
    EXPECT_EQ(Outcome(), "recorded, error");
}

}  // namespace
}  // namespace varnel
