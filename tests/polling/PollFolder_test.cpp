#include "polling/PollFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "ado/SessionLease.h"
#include "app/flags/SharedFlags.h"
#include "app/shared/SessionLog.h"
#include "platform/Error.h"
#include "polling/RenameProcessedFile.h"
#include "polling/SchemaIniWriter.h"
#include "providers/ProviderList.h"
#include "repository/ReadSession.h"
#include "repository/model/SessionModel.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestRepository.h"
#include "ui/RecordingForm.h"

namespace varnel {
namespace {

TEST(SchemaIniSection, WritesDelimiterHeaderAndQualifier) {
    struct Case {
        const char* delimiter;
        std::int16_t header;
        const char *qualifier, *lines;
    };
    const Case cases[] = {
        {",", 1, "DQ", "Format=CSVDelimited\r\nColNameHeader=True\r\n"},
        {"\t", 0, "SQ", "Format=TabDelimited\r\nColNameHeader=False\r\nTextDelimiter=\"'\"\r\n"},
        {"|", 2, "", "Format=Delimited(|)\r\nColNameHeader=False\r\nTextDelimiter=\"\"\"\"\r\n"},
        {")", 1, "1", "Format=Delimited())\r\nColNameHeader=True\r\nTextDelimiter=\"1\"\r\n"},
    };
    for (const Case& c : cases) {
        TableEntry table;
        table.TableName = "a.csv";
        table.SFormat = c.delimiter;
        table.SFirstColLine = c.header;
        table.TextQ = c.qualifier;
        EXPECT_EQ(SchemaIniSection(table), std::string("\r\n\r\n[a.csv]\r\n") + c.lines + "MaxScanRows=0\r\n");
    }
}

class PollFolderTest : public testing::Test {
protected:
    void SetUp() override {
        SetProviders(AllProviders());
        auto form = std::make_unique<RecordingForm>();
        form_ = form.get();
        UseProgressForm(std::move(form));
        ShowOutput = RepoOk = true;
        std::filesystem::create_directory(folder_.File("in"));
        repository_ = std::make_unique<TestRepository>(folder_.Path());
        TestSession session;
        session.sourceKind = "TEXTPOLL";
        session.tables = {{"template", "target", {{"a", "Integer", 4}, {"b", "VarWchar", 20}}}};
        repository_->Add(session);
        repository_->Execute("update vrtabs set TabID=99, SFormat=\";\", SFirstColLine=1, TextQ=\"SQ\"");
        repository_->Execute("update SrcDCols set TabID=99");
        repository_->Execute("update sessions set FPattern=\"*.csv\", FRename=\"done\", FolderName=\"" + In() + "\"");
        RepoConn = std::make_unique<Connection>();
        RepoRs = std::make_unique<Recordset>();
        RepoConn->Open(repository_->ConnectionText());
    }
    void TearDown() override {
        CloseLog();
        ResetSessionModel();
        ResetSharedFlags();
        UseProgressForm(nullptr);
        CloseIdleSessions();
    }
    std::string In() const { return folder_.File("in"); }
    void ReadAll() {
        ReadSession(1);
        ReadTables(1);
        ReadColumns(1);
    }

    TempFolder folder_;
    std::unique_ptr<TestRepository> repository_;
    RecordingForm* form_ = nullptr;
};

TEST_F(PollFolderTest, MakesOneTablePerFileWithItsOwnColumns) {
    for (const char* name : {"/c.csv", "/A.CSV", "/b.csv", "/.hidden.csv", "/d.txt"}) WriteBytes(In() + name, "a;b\r\n");
    ReadAll();
    ASSERT_EQ(SourceTables.Count(), 3);
    const char* const names[] = {"A.CSV", "b.csv", "c.csv"};
    const int numbers[] = {99, 1, 2};
    for (std::int16_t i = 0; i < 3; ++i) {
        EXPECT_EQ(SourceTables(i).TableName, names[i]);
        EXPECT_EQ(SourceTables(i).TabID, numbers[i]);
        EXPECT_EQ(DestTables(i).TableName, "target");
        EXPECT_EQ(DestTables(i).TabID, numbers[i]);
        EXPECT_EQ(SourceTables(i).TextQ, "SQ");
        EXPECT_EQ(SourceTables(i).LoadOption, "DROP");
    }
    ASSERT_EQ(Columns.Count(), 6);
    EXPECT_EQ(Columns(4).TabID, 2);
    EXPECT_EQ(Columns(4).TName, "c.csv");
    EXPECT_EQ(Columns(5).SCName, "b");
    const std::string schema = ReadBytes(In() + "/Schema.ini");
    EXPECT_EQ(schema, SchemaIniSection(SourceTables(0)) + SchemaIniSection(SourceTables(1)) +
                          SchemaIniSection(SourceTables(2)));
    EXPECT_FALSE(RepoRs->IsOpen());
    EXPECT_TRUE(RepoOk);
}

TEST_F(PollFolderTest, SaysThatNothingMatchesAndLeavesSchemaIniAlone) {
    WriteBytes(In() + "/schema.ini", "[old]\r\n");
    form_->logTxt = "last line";
    ReadSession(1);
    ReadTables(1);
    EXPECT_FALSE(RepoOk);
    EXPECT_EQ(form_->logTxt, "last lineNo Files Found Matching the Pattern:*.csv in Folder:" + In());
    EXPECT_EQ(ReadBytes(In() + "/schema.ini"), "[old]\r\n");
}

TEST_F(PollFolderTest, RaisesWithoutATemplateOrAFolder) {
    WriteBytes(In() + "/a.csv", "a;b\r\n");
    repository_->Execute("delete from vrtabs");
    ReadSession(1);
    EXPECT_THROW(ReadTables(1), Error);
    SessionDef.FolderName = In() + "\\missing";
    EXPECT_THROW(PollFolderTables(1), Error);
}

TEST_F(PollFolderTest, RenamesALoadedFileAndNeverOverwrites) {
    WriteBytes(In() + "/orders.csv", "x");
    ReadSession(1);
    EngineLogFile = folder_.File("run.log");
    WriteLog(EngineLogFile, "VROPEN");
    SessionDef.FolderName = In() + "\\";
    RenameProcessedFile("orders.csv");
    std::string renamed;
    for (const auto& entry : std::filesystem::directory_iterator(In())) renamed = entry.path().filename().string();
    EXPECT_TRUE(renamed.starts_with("orders.csv.done_On_")) << renamed;
    EXPECT_EQ(form_->logTxt, "");
    RenameProcessedFile("gone.csv");
    EXPECT_TRUE(form_->logTxt.starts_with("\r\nUnable to Rename File:gone.csv\r\nFile not found")) << form_->logTxt;
    EXPECT_NE(ReadBytes(EngineLogFile).find("\r\nUnable to Rename File:gone.csv\r\nFile not found"), std::string::npos);
}

}  // namespace
}  // namespace varnel
