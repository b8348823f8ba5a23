#include "export/DBToText.h"

#include <gtest/gtest.h>

#include "tests/support/RecordedRun.h"
#include "tests/support/TestRepository.h"

namespace varnel {
namespace {

/// Exports from a SQLite file, with the session model filled by hand: what the log says and, next to it, the window.
class ExportToTextTest : public RecordedRun {
protected:
    ExportToTextTest() {
        SessionDef.SessionName = "Out";
        SessionDef.SourceDBName = "ACCESS";
        SessionDef.TargetDBName = "TEXT";
        SessionDef.SourceConnStr = SqliteConnection(folder_.File("source.db"));
        SessionDef.FileFormat = "DELIMITED";
        SessionDef.DFormat = ",";
        SessionDef.DTextQ = "'";
        SessionDef.TextDirDest = "C:\\Out";
        SessionDef.FileExt = ".txt";
        SessionDef.DFirstColLine = true;
        Execute("Create Table [Goods] ([ID] Long, [NAME] Text(10), [PRICE] Currency, [ACTIVE] YesNo)");
        Execute("Insert Into [Goods] values (42,'Smith ',12.5,True)");
    }

    void Execute(const std::string& statement) { ExecuteOn(SessionDef.SourceConnStr, statement); }
    /// Adds a table; columns are name, output type and width.
    void AddTable(const std::string& name, const std::vector<std::tuple<const char*, const char*, int>>& columns) {
        const auto i = static_cast<std::size_t>(SourceTables.Count());
        SourceTables.Resize(i + 1);
        DestTables.Resize(i + 1);
        SourceTables(i).TabID = DestTables(i).TabID = static_cast<std::int16_t>(i + 1);
        SourceTables(i).TableName = name;
        DestTables(i).TableName = folder_.File(name + ".txt");
        for (const auto& [column, type, width] : columns) {
            const auto j = static_cast<std::size_t>(Columns.Count());
            Columns.Resize(j + 1);
            Columns(j).TabID = static_cast<double>(i + 1);
            Columns(j).SSelected = 1;
            Columns(j).SCName = Columns(j).DCName = column;
            Columns(j).DDType = type;
            Columns(j).DWidth = width;
        }
    }
    void AddGoods() {
        AddTable("Goods",
                 {{"ID", "INTEGER", 0}, {"NAME", "VARCHAR", 10}, {"PRICE", "CURRENCY", 0}, {"ACTIVE", "BOOLEAN", 0}});
    }
    void Run() {
        ExportToText(folder_.File("run.log"));
        log_ = Timeless(ReadBytes(folder_.File("run.log")));
        window_ = Timeless(form_->logTxt);
    }
    std::string Output(const std::string& table) { return ReadBytes(folder_.File(table + ".txt")); }
};

const std::string kHead = "Starting Session Out\r\n\r\nStart Time is :NOW\r\n\r\n";
const std::string kTail = "End Time is :NOW\r\n******( FINISH )*******\r\n";

TEST_F(ExportToTextTest, WritesTheDelimitedLayout) {
    AddGoods();
    Run();
    EXPECT_EQ(Output("Goods"), "ID,NAME,PRICE,ACTIVE\r\n42,'Smith',12.5,True\r\n");
    EXPECT_EQ(log_, kHead + "About to Start Loading Rows in :C:\\Out\\Goods.txt\r\n1 Rows Loaded\r\n" + kTail);
    EXPECT_EQ(window_,
              "Started Loading at NOW\r\nAbout to Start Loading Rows in :C:\\Out\\Goods.txt\r\n1 Rows Loaded\r\n"
              "End Time is :NOW\r\n******( FINISH )*******");
    EXPECT_EQ(form_->label2, std::vector<std::string>{"1 of 1 Rows Loaded"});
    EXPECT_EQ(form_->events, 1);
}

TEST_F(ExportToTextTest, SkipsLongColumnsInTheFixedLayoutAndEmptyTables) {
    SessionDef.FileFormat = "FIXED";
    SessionDef.TextDirDest = "C:\\Out\\";
    Execute("Create Table [Long] ([ID] Long, [M] Memo)");
    Execute("Insert Into [Long] values (1,'m')");
    Execute("Create Table [Empty] ([ID] Long)");
    AddTable("Long", {{"ID", "INTEGER", 0}, {"M", "TEXT", 3}});
    AddTable("Empty", {{"ID", "INTEGER", 0}});
    Run();
    EXPECT_EQ(Output("Long"), "ID     M  \r\n");
    EXPECT_EQ(Output("Empty"), "ID     \r\n");
    const std::string refusal =
        "Table Contains Long Datatypes. Cannot Create Fixed Length File. Pl Choose Delimited Format or De-Select the "
        "Long Columns.\r\n";
    EXPECT_EQ(log_, kHead + "About to Start Loading Rows in :C:\\Out\\Long.txt\r\n" + refusal + "Skipping Table\r\n" +
                        "About to Start Loading Rows in :C:\\Out\\Empty.txt\r\n" + kTail);
    EXPECT_NE(window_.find("\r\nSkipping table\r\n"), std::string::npos);
    EXPECT_EQ(Tally.failures, 0);
}

TEST_F(ExportToTextTest, EndsTheRunAtTheFiftyFirstFailure) {
    for (int k = 0; k < 60; ++k) Execute("Insert Into [Goods] values (1,'\xC5\x81',1,False)");
    AddGoods();
    AddTable("Goods2", {{"ID", "INTEGER", 0}});
    Run();
    EXPECT_TRUE(log_.ends_with("Aborting loading as Errors exceed 50 allowed\r\n"));
    EXPECT_TRUE(window_.ends_with("\r\nAborting loading as Errors exceed 50 allowed"));
    EXPECT_EQ(Tally.failures, 51);
    EXPECT_FALSE(std::filesystem::exists(folder_.File("Goods2.txt")));
    EXPECT_TRUE(Output("Goods").starts_with("ID,NAME,PRICE,ACTIVE\r\n42,'Smith',12.5,True\r\n1,,1,False\r\n"));
}

TEST_F(ExportToTextTest, StopsAfterTheLineAtHandOnACancel) {
    for (int k = 0; k < 300; ++k) Execute("Insert Into [Goods] values (1,'x',1,False)");
    AddGoods();
    AddTable("Goods2", {{"ID", "INTEGER", 0}});
    form_->onEvents = [this] { CancelRequested = form_->events == 3; };
    Run();
    EXPECT_NE(log_.find("\r\n200 Rows Loaded\r\n" + kTail), std::string::npos) << log_;
    EXPECT_TRUE(window_.ends_with("******( FINISH )*******\r\nUser Requested to abort loading"));
    EXPECT_FALSE(std::filesystem::exists(folder_.File("Goods2.txt")));
}

TEST_F(ExportToTextTest, FollowsTheStoredTypesWhenTextGoesToText) {
    SessionDef.SourceDBName = "TEXT";
    AddTable("Goods", {{"ID", "Char", 0}, {"NAME", "VARCHAR", 10}, {"PRICE", "6", 0}, {"ACTIVE", "CHAR", 0}});
    Run();
    EXPECT_EQ(Output("Goods"), "ID,NAME,PRICE,ACTIVE\r\n'42',Smith ,12.5,True\r\n");
    EXPECT_NE(window_.find("\r\nAbout to Start Loading Rows in :C:\\Out\\Goods\r\n"), std::string::npos);
    EXPECT_NE(log_.find("About to Start Loading Rows in :C:\\Out\\Goods.txt\r\n"), std::string::npos);
}

}  // namespace
}  // namespace varnel
