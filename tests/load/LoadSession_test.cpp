#include <gtest/gtest.h>

#include "app/RunSession.h"
#include "platform/StoredPath.h"
#include "tests/support/RecordedRun.h"
#include "tests/support/TestRepository.h"

namespace varnel {
namespace {

/// Sessions run inside the test: what their log says and, next to it, their window.
class LoadSessionTest : public RecordedRun {
protected:
    LoadSessionTest() {
        SetApplicationFolder(folder_.Path());
        repository_ = std::make_unique<TestRepository>(folder_.Path());
        session_.sourceConnection = SqliteConnection(folder_.File("source.db"));
        session_.targetConnection = SqliteConnection(folder_.File("target.db"));
        session_.log = folder_.File("run.log");
        ExecuteOn(session_.targetConnection, "Create Table [made_to_exist] ([a] Long)");
    }

    /// A source table of rows 1 to count, and the session's table for it.
    TestTable NumberedTable(const std::string& name, int count) {
        ExecuteOn(session_.sourceConnection, "Create Table [" + name + "] ([ID] Long, [NAME] Text(20))");
        for (int k = 1; k <= count; ++k) {
            const std::string id = std::to_string(k);
            ExecuteOn(session_.sourceConnection, "Insert Into [" + name + "] values (" + id + ",'row " + id + "')");
        }
        return {name, name + "_copy", {{"ID", "Integer", 4}, {"NAME", "VarWchar", 20}}, false, "", "", "", "", ""};
    }
    static TestTable& WithDefinition(TestTable& table) {
        table.columns[0].targetType = "Long";
        table.columns[1].targetType = "Text";
        return table;
    }
    void Run() {
        repository_->Add(session_);
        RunSession(static_cast<std::int16_t>(session_.id));
        if (std::filesystem::exists(session_.log)) log_ = Timeless(ReadBytes(session_.log));
        window_ = Timeless(form_->logTxt);
    }
    std::string Target(const std::string& query) { return AskRows(session_.targetConnection, query); }

    std::unique_ptr<TestRepository> repository_;
    TestSession session_;
};

const std::string kLogHead = "Starting Session Test\r\n\r\nStart Time is :NOW\r\n\r\nStarter loading at :NOW\r\n";
const std::string kLogTail =
    "End of Session Test\r\nEnd Time is :NOW\r\nTotal Time Elapsed for Session:SPAN\r\n*******( F.I.N.I.S.H "
    ")*********\r\n";
const std::string kWindowHead = "Started loading at :NOW";
const std::string kWindowTail =
    "\r\nEnd Time is :NOW\r\nTotal Time Elapsed for Session:SPAN\r\n*******( F.I.N.I.S.H )*********";

TEST_F(LoadSessionTest, CreatesANewTableAndSaysSoInLogAndWindow) {
    TestTable table = NumberedTable("T", 23);
    table.firstTime = "CREATE";
    session_.tables = {WithDefinition(table)};
    Run();
    EXPECT_EQ(log_, kLogHead + "About To Create Table T\r\nT Table Created Successfully\r\n\r\n" +
                        "About to Insert Rows in T\r\n 23 Rows Loaded\r\nTime Elapsed :SPAN\r\n" + kLogTail);
    EXPECT_EQ(window_, kWindowHead + "\r\nAbout To Create Table T\r\n\r\nT_copy Table Created Successfully\r\n" +
                           "\r\nAbout to Insert Rows from T to T_copy\r\n 23 Rows Loaded Time Elapsed :SPAN" +
                           kWindowTail);
    EXPECT_EQ(form_->caption, "Varnel Runtime:Running Session :1");
    EXPECT_EQ(form_->srcDestLabel, "Source DB:ACCESS To Target DB:ACCESS");
    EXPECT_EQ(form_->rowProMin, 1);
    EXPECT_EQ(form_->rowProMax, 23);
    EXPECT_EQ(form_->rowPro.back(), 23);
    ASSERT_EQ(form_->label2.size(), 24u);
    EXPECT_EQ(form_->label2[11], "12 of 23 Rows Loaded");
    EXPECT_EQ(form_->label2.back(), "");
    EXPECT_EQ(form_->events, 2);
    EXPECT_EQ(Target("Select count(*), sum(ID) from [T_copy]"), "23|276");
    EXPECT_EQ(repository_->Ask("select SessionError from sessions"), "0");
    EXPECT_EQ(repository_->Ask("select TableExists, FirstTimeLoadOpt from vrtabs"), "1|");
    EXPECT_EQ(ExitStatus(Tally), 0);
}

TEST_F(LoadSessionTest, DropsAndRecreatesFromTheSourceAndEmptiesByDelete) {
    TestTable dropped = NumberedTable("A", 2);
    dropped.target = "made_to_exist";
    dropped.exists = true;
    dropped.option = "DROP";
    dropped.columns[1].target = "OTHER";
    TestTable emptied = NumberedTable("B", 3);
    emptied.exists = true;
    emptied.option = "DELETE";
    ExecuteOn(session_.targetConnection, "Create Table [B_copy] ([ID] Long, [NAME] Text(20))");
    ExecuteOn(session_.targetConnection, "Insert Into [B_copy] values (99,'old')");
    session_.tables = {dropped, emptied};
    Run();
    EXPECT_EQ(log_, kLogHead + "About to Drop table :made_to_exist\r\nmade_to_exist Table dropped\r\n" +
                        "About To Create Table A\r\nA Table Created Successfully\r\n\r\n" +
                        "About to Insert Rows in A\r\n 2 Rows Loaded\r\nTime Elapsed :SPAN\r\n" +
                        "About to delete existing rows from B_copy\r\n" +
                        "Existing Rows deleted succesfully from table B_copy\r\n" +
                        "About to Insert Rows in B\r\n 3 Rows Loaded\r\nTime Elapsed :SPAN\r\n" + kLogTail);
    EXPECT_NE(window_.find("\r\nAbout to Drop Table :made_to_exist\r\nmade_to_exist Table dropped\r\n"),
              std::string::npos);
    EXPECT_NE(window_.find("\r\nAbout to delete existing rows from B_copy\r\nExisting Rows deleted succesfully from "
                           "table B_copy\r\nAbout to Insert Rows from B to B_copy\r\n 3 Rows Loaded"),
              std::string::npos);
    EXPECT_EQ(Target("Select [ID],[NAME] from [made_to_exist]"), "1|row 1\n2|row 2");
    EXPECT_EQ(Target("Select count(*) from [B_copy]"), "3");
}

TEST_F(LoadSessionTest, GoesOnWithTheNextTableAfterAFailedPreparation) {
    TestTable undroppable = NumberedTable("A", 1);
    undroppable.exists = true;
    undroppable.firstTime = "CREATE";
    undroppable.option = "DROP";
    TestTable untyped = NumberedTable("B", 1);
    untyped.columns[0].type = "Decimal";
    TestTable good = NumberedTable("C", 1);
    session_.tables = {undroppable, untyped, WithDefinition(good)};
    Run();
    EXPECT_TRUE(log_.starts_with(kLogHead + "About to Drop table :A_copy\r\nA_copy Table Cannot be Dropped\r\n"))
        << log_;
    EXPECT_NE(log_.find("About To Create Table B\r\nError Creating Table B\r\n\r\n"), std::string::npos);
    EXPECT_NE(window_.find("\r\nError Creating Table B_copy\r\n\r\n"), std::string::npos) << window_;
    EXPECT_NE(log_.find(" 1 Rows Loaded\r\nTime Elapsed :SPAN\r\n" + kLogTail), std::string::npos);
    EXPECT_EQ(log_.find("Insert Rows in A"), std::string::npos);
    EXPECT_EQ(repository_->Ask("select SessionError from sessions"), "1");
    EXPECT_EQ(repository_->Ask("select FirstTimeLoadOpt from vrtabs where tabid=1"), "CREATE");
    EXPECT_EQ(ExitStatus(Tally), 1);
}

TEST_F(LoadSessionTest, StopsAfterTheCurrentRowOnACancel) {
    TestTable first = NumberedTable("A", 45);
    TestTable second = NumberedTable("B", 5);
    session_.tables = {WithDefinition(first), WithDefinition(second)};
    form_->onEvents = [this] { CancelRequested = form_->events == 2; };
    Run();
    EXPECT_EQ(Target("Select count(*) from [A_copy]"), "20");
    EXPECT_NE(window_.find(" 20 Rows Loaded\r\nUser Requested to cancel loading Time Elapsed :SPAN" + kWindowTail),
              std::string::npos)
        << window_;
    EXPECT_NE(log_.find(" 20 Rows Loaded\r\nTime Elapsed :SPAN\r\n" + kLogTail), std::string::npos);
    EXPECT_EQ(log_.find("Create Table B"), std::string::npos);
    EXPECT_EQ(ExitStatus(Tally), 3);
}

TEST_F(LoadSessionTest, SaysInTheWindowThatNothingMatchesThePattern) {
    session_.sourceKind = "TEXTPOLL";
    session_.folder = folder_.MakeFolder("in");
    session_.pattern = "*.csv";
    session_.tables = {{"template", "target", {{"a", "Integer", 4}}}};
    Run();
    EXPECT_EQ(window_, "No Files Found Matching the Pattern:*.csv in Folder:" + session_.folder);
}

}  // namespace
}  // namespace varnel
