#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <regex>

#include "ado/SessionLease.h"
#include "app/RunSession.h"
#include "app/flags/SharedFlags.h"
#include "app/shared/RunTally.h"
#include "app/shared/SessionLog.h"
#include "platform/Signals.h"
#include "platform/StoredPath.h"
#include "providers/ProviderList.h"
#include "repository/model/SessionModel.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestRepository.h"
#include "ui/RecordingForm.h"

namespace varnel {
namespace {

const std::string kEnd = "\r\n";

/// Sessions run inside the test, with a recording window.
class LoadSessionTest : public testing::Test {
protected:
    void SetUp() override {
        SetProviders(AllProviders());
        SetApplicationFolder(folder_.Path());
        repository_ = std::make_unique<TestRepository>(folder_.Path());
        auto form = std::make_unique<RecordingForm>();
        form_ = form.get();
        UseProgressForm(std::move(form));
        ShowOutput = true;
        Tally = {};
        session_.sourceConnection = SqliteConnection(folder_.File("source.db"));
        session_.targetConnection = SqliteConnection(folder_.File("target.db"));
        session_.log = folder_.File("run.log");
        ExecuteOn(session_.targetConnection, "Create Table [made_to_exist] ([a] Long)");
    }
    void TearDown() override {
        CloseLog();
        ResetSessionModel();
        ResetSharedFlags();
        UseProgressForm(nullptr);
        CloseIdleSessions();
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
    TestTable& WithDefinition(TestTable& table) {
        table.columns[0].targetType = "Long";
        table.columns[1].targetType = "Text";
        return table;
    }

    /// Runs the session and returns the log and the window with every moment as NOW and every span as SPAN.
    void Run() {
        repository_->Add(session_);
        RunSession(static_cast<std::int16_t>(session_.id));
        log_ = Timeless(FileExistsIn(session_.log) ? ReadBytes(session_.log) : "");
        window_ = Timeless(form_->logTxt);
    }
    static bool FileExistsIn(const std::string& path) { return std::filesystem::is_regular_file(path); }
    static std::string Timeless(const std::string& text) {
        static const std::regex moment("[0-9]+/[0-9]+/[0-9]{4}( [0-9]+:[0-9]+:[0-9]+ [AP]M)?");
        static const std::regex span("[0-9]+ Hrs [0-9]+ Min [0-9]+ Sec");
        return std::regex_replace(std::regex_replace(text, moment, "NOW"), span, "SPAN");
    }
    std::string Target(const std::string& query) { return AskRows(session_.targetConnection, query); }
    std::string ErrorLog() {
        return FileExistsIn(folder_.File("Varnel.log")) ? ReadBytes(folder_.File("Varnel.log")) : "";
    }

    TempFolder folder_;
    std::unique_ptr<TestRepository> repository_;
    RecordingForm* form_ = nullptr;
    TestSession session_;
    std::string log_, window_;
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

TEST_F(LoadSessionTest, SurvivesFiftyBadRowsAndGivesUpAtTheNext) {
    for (const int bad : {50, 51}) {
        const std::string name = "bad" + std::to_string(bad);
        TestTable table = NumberedTable(name, 60);
        table.exists = true;
        table.option = "append";
        ExecuteOn(session_.targetConnection,
                  "Create Table [" + name + "_copy] ([ID] Long PRIMARY KEY, [NAME] Text(20))");
        for (int k = 1; k <= bad; ++k) {
            ExecuteOn(session_.targetConnection,
                      "Insert Into [" + name + "_copy] values (" + std::to_string(k) + ",'old')");
        }
        session_.tables.push_back(table);
    }
    Run();
    EXPECT_NE(log_.find(" 10 Rows Loaded\r\n"), std::string::npos);
    EXPECT_EQ(Target("Select count(*) from [bad50_copy]"), "60");
    const std::string aborting = "\r\nAborting Loading Rows for Table :bad51 As Errors Exceeded 50 Allowed\r\n";
    EXPECT_NE(log_.find(aborting + "Time Elapsed :SPAN\r\n" + kLogTail), std::string::npos)
        << log_.substr(log_.size() - 800);
    EXPECT_EQ(Target("Select count(*) from [bad51_copy]"), "51");
    EXPECT_NE(window_.find("\r\nError Loading Row:50\r\n0 "), std::string::npos);
    EXPECT_EQ(Tally.failures, 101);
    EXPECT_EQ(repository_->Ask("select SessionError from sessions"), "0");
}

TEST_F(LoadSessionTest, ReportsATableThatCannotBeOpenedOnceAndLoadsTheRest) {
    TestTable missing{"nowhere", "made_to_exist", {{"a", "Integer", 4}}, true, "append", "", "", "", ""};
    TestTable good = NumberedTable("C", 1);
    session_.tables = {missing, WithDefinition(good)};
    Run();
    const std::size_t aborting =
        log_.find("Aborting Loading Rows for Table :nowhere As Errors Exceeded 50 Allowed\r\n");
    ASSERT_NE(aborting, std::string::npos) << log_;
    EXPECT_EQ(log_.find(" 0 Rows Loaded"), std::string::npos);
    EXPECT_NE(log_.find(" 1 Rows Loaded", aborting), std::string::npos);
    EXPECT_EQ(Tally.failures, 2);  // the count and the rows
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

TEST_F(LoadSessionTest, WritesAnOracleTargetByParametersAndItsLongTablesByRecords) {
    session_.targetKind = "ORACLE";
    ExecuteOn(session_.sourceConnection, "Create Table [S] ([ID] Long, [OK] YesNo, [P] Currency)");
    ExecuteOn(session_.sourceConnection, "Insert Into [S] values (1,1,12.5)");
    ExecuteOn(session_.sourceConnection, "Insert Into [S] values (2,0,NULL)");
    ExecuteOn(session_.sourceConnection, "Insert Into [S] values (3,NULL,0.0001)");
    ExecuteOn(session_.sourceConnection, "Create Table [L] ([OK] YesNo, [M] Memo)");
    ExecuteOn(session_.sourceConnection, "Insert Into [L] values (1,'long')");
    TestTable plain{"S",  "S2",   {{"ID", "Integer", 4}, {"OK", "Boolean", 1}, {"P", "Currency", 19, 4}},
                    true, "DROP", "",
                    "",   "",     ""};
    TestTable longTable{"L", "L2", {{"OK", "Boolean", 1}, {"M", "LongVarWChar", 0}}, true, "DROP", "", "", "", ""};
    ExecuteOn(session_.targetConnection, "Create Table S2 (x Long)");
    ExecuteOn(session_.targetConnection, "Create Table L2 (x Long)");
    session_.tables = {plain, longTable};
    Run();
    EXPECT_EQ(Target("Select * from S2"), "1|T|12.5\n2|F|NULL\n3|NULL|0.0001") << log_;
    EXPECT_EQ(Target("Select * from L2"), "T|long") << log_;
    EXPECT_EQ(ExitStatus(Tally), 0);
}

TEST_F(LoadSessionTest, CountsARunWithoutALogAsOneWithErrors) {
    session_.log = "";
    TestTable table = NumberedTable("A", 1);
    session_.tables = {WithDefinition(table)};
    Run();
    EXPECT_EQ(repository_->Ask("select SessionError from sessions"), "1");
    EXPECT_EQ(Target("Select count(*) from [A_copy]"), "1");
    EXPECT_EQ(ExitStatus(Tally), 0);
}

TEST_F(LoadSessionTest, EndsThroughTheErrorLogWhenTheSessionLogCannotBeWritten) {
    session_.log = "/dev/full";
    TestTable table = NumberedTable("A", 1);
    session_.tables = {WithDefinition(table)};
    Run();
    EXPECT_TRUE(ErrorLog().starts_with("Error Occurred in Running Session ID:1\r\n\r\nDisk full")) << ErrorLog();
    EXPECT_EQ(repository_->Ask("select LastRunDate from sessions"), "NULL");
    EXPECT_EQ(ExitStatus(Tally), 2);
}

TEST_F(LoadSessionTest, NamesSessionTableAndColumnOfABadDefinition) {
    struct Case {
        const char *change, *said;
    };
    const Case cases[] = {
        {"update sessions set SourceConnStr=Null",
         "Invalid use of Null (column SourceConnStr of table sessions, session 1)"},
        {"update vrtabs set TabID=70000", "Overflow (column TabID of table vrtabs, session 1)"},
        {"update SrcDCols set SDtype=Null", "Invalid use of Null (column SDtype of table SrcDCols, session 1)"},
    };
    TestTable table = NumberedTable("A", 1);
    session_.tables = {WithDefinition(table)};
    repository_->Add(session_);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.change);
        const std::string before = ErrorLog();
        repository_->Execute(c.change);
        RunSession(1);
        EXPECT_EQ(ErrorLog(), before + "Error Occurred in Running Session ID:1\r\n\r\n" + c.said + "\r\n");
        EXPECT_FALSE(FileExistsIn(session_.log));
        repository_->Execute("delete from sessions");
        repository_->Execute("delete from vrtabs");
        repository_->Execute("delete from SrcDCols");
        ResetSessionModel();
        repository_->Add(session_);
    }
}

TEST_F(LoadSessionTest, OnlyRecordsTheDateOfASessionWithoutTables) {
    repository_->Add(session_);
    RunSession(1);
    RunSession(2);
    EXPECT_FALSE(FileExistsIn(session_.log));
    EXPECT_EQ(ErrorLog(), "");
    EXPECT_EQ(repository_->Ask("select SessionError from sessions"), "0");
    EXPECT_EQ(ExitStatus(Tally), 0);
}

TEST_F(LoadSessionTest, RefusesAnAbsentAnEmptyAndAForeignRepository) {
    ResetSessionModel();
    CloseIdleSessions();
    const std::string path = folder_.File("vrrepo.mdb");
    std::filesystem::remove(path);
    RunSession(1);
    WriteBytes(path, "");
    RunSession(1);
    WriteBytes(path, std::string(4096, 'x'));
    RunSession(1);
    const std::string head = "Error Occurred in Running Session ID:1\r\n\r\n";
    const std::string log = ErrorLog();
    EXPECT_TRUE(log.starts_with(head + "Could not find file")) << log;
    EXPECT_NE(log.find("\r\n" + head + "Unrecognized database format"), std::string::npos) << log;
    EXPECT_EQ(std::count(log.begin(), log.end(), '\r'), 9) << log;
}

}  // namespace
}  // namespace varnel
