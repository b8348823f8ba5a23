// Repositories that cannot be read, repositories in use, and the repository as source or target.
#include <algorithm>
#include <filesystem>

#include "ado/SessionLease.h"
#include "tests/session/SessionTest.h"

namespace varnel {
namespace {

const std::string kHead = "Error Occurred in Running Session ID:1\r\n\r\n";

class RepositoryTest : public SessionTest {
protected:
    RepositoryTest() {
        NativeSqlite source(Path("source.db"));
        MakeNumbered(source, "t", 3);
        NativeSqlite(Path("target.db")).Run({"create table t_copy (ID int, NAME varchar(50))"});
        session_.tables = {{"t", "t_copy", {{"ID", "Integer", 11}, {"NAME", "VarWchar", 50}}, true, "DELETE"}};
        repository_.Add(session_);
        CloseIdleSessions();
    }
    /// Runs session 1, which must end through the error log with one entry that holds said, and touch nothing else.
    void ExpectOneEntry(const std::vector<std::string>& said) {
        const auto before = Snapshot(folder_.Path());
        EXPECT_EQ(RunStored(1), 2);
        EXPECT_TRUE(errorLog_.starts_with(kHead)) << errorLog_;
        EXPECT_EQ(std::count(errorLog_.begin(), errorLog_.end(), '\n'), 3) << errorLog_;
        for (const std::string& part : said)
            EXPECT_NE(errorLog_.find(part), std::string::npos) << part << "\n" << errorLog_;
        EXPECT_EQ(output_, "");
        std::string changed = Changed(before, Snapshot(folder_.Path()));
        EXPECT_TRUE(changed == "Varnel.log output.txt " || changed == "Varnel.log ") << changed;
    }
    void Change(const std::string& statement) { NativeSqlite(Path("vrrepo.mdb")).Run({statement}); }
};

TEST_F(RepositoryTest, AnAbsentOne) {
    std::filesystem::remove(Path("vrrepo.mdb"));
    ExpectOneEntry({"vrrepo.mdb", "Could not find file"});
    EXPECT_FALSE(std::filesystem::exists(Path("vrrepo.mdb")));
}

TEST_F(RepositoryTest, AnEmptyOne) {
    WriteBytes(Path("vrrepo.mdb"), "");
    ExpectOneEntry({"vrrepo.mdb", "nrecognized database format"});
}

TEST_F(RepositoryTest, AForeignOne) {
    WriteBytes(Path("vrrepo.mdb"), "This is a letter, and no database at all.\r\n" + std::string(5000, '.'));
    ExpectOneEntry({"vrrepo.mdb", "nrecognized database format"});
}

TEST_F(RepositoryTest, AFolderInItsPlace) {
    std::filesystem::remove(Path("vrrepo.mdb"));
    std::filesystem::create_directory(Path("vrrepo.mdb"));
    ExpectOneEntry({"vrrepo.mdb"});
}

TEST_F(RepositoryTest, DamagedOnes) {
    const std::string whole = Content("vrrepo.mdb");
    ASSERT_GT(whole.size(), 4096u);
    for (const std::size_t kept : {std::size_t{100}, std::size_t{1000}, whole.size() / 2}) {
        for (const bool cut : {false, true}) {
            SCOPED_TRACE(std::to_string(kept) + (cut ? " bytes" : " bytes and garbage"));
            std::filesystem::remove(Path("Varnel.log"));
            std::string damaged = whole.substr(0, kept);
            if (!cut) {
                for (std::size_t k = kept; k < whole.size(); ++k) damaged += static_cast<char>(k * 31 + k / 7);
            }
            WriteBytes(Path("vrrepo.mdb"), damaged);
            ExpectOneEntry({"vrrepo.mdb"});
        }
    }
}

struct BadValue {
    const char *name, *statement;
    std::vector<std::string> said;
};

void PrintTo(const BadValue& value, std::ostream* out) {
    *out << value.name;
}

class BadDefinitionTest : public RepositoryTest, public testing::WithParamInterface<BadValue> {};

TEST_P(BadDefinitionTest, IsNamedInOneEntry) {
    Change(GetParam().statement);
    ExpectOneEntry(GetParam().said);
}

const BadValue kBadValues[] = {
    {"NullInSessions", "update sessions set SrcDBFPath=Null", {"Null", "SrcDBFPath", "sessions", "session 1"}},
    {"NullName", "update sessions set SessionName=Null", {"Null", "SessionName", "sessions"}},
    {"NullInTables", "update vrtabs set WhereCond=Null", {"Null", "WhereCond", "vrtabs", "session 1"}},
    {"NullTableExists", "update vrtabs set TableExists=Null", {"Null", "TableExists", "vrtabs"}},
    {"NullInLaterColumn", "update SrcDCols set SOrgDtype=Null where SCName='NAME'", {"Null", "SOrgDtype", "SrcDCols"}},
    {"TabIdTooLarge", "update vrtabs set TabID=32768", {"Overflow", "TabID", "vrtabs"}},
    {"TabIdTooSmall", "update vrtabs set TabID=-32769", {"Overflow", "TabID", "vrtabs"}},
    {"ScaleTooLarge", "update SrcDCols set SScale=40000", {"Overflow", "SScale", "SrcDCols"}},
    {"WidthTooLarge", "update SrcDCols set SWidth=3000000000", {"Overflow", "SWidth", "SrcDCols"}},
    {"TextForANumber", "update SrcDCols set SSelected='yes'", {"SSelected", "SrcDCols", "session 1"}},
    {"MissingColumn", "alter table SrcDCols drop column CPos", {"CPos", "SrcDCols"}},
    {"MissingTable", "drop table vrtabs", {"vrtabs"}},
    {"MissingSessions", "drop table sessions", {"sessions"}},
    {"TooManyTables",
     "with recursive n(i) as (select 2 union all select i+1 from n where i < 32767) insert into vrtabs select "
     "SessionId, i, SourceTableName, SourceOwnerName, DestTableName, DestOwnerName, TableExists, WhereCond, "
     "LoadOption, "
     "FirstTimeLoadOpt, TrimTname, FileName, SFormat, TextQ, SFirstColLine, DFormat, TextDirDest, FileFormat, FileExt, "
     "DFirstColLine, DTextQ from vrtabs, n",
     {"32767 tables", "32766"}},
    {"TooManyColumns",
     "with recursive n(i) as (select 3 union all select i+1 from n where i < 32767) insert into SrcDCols (sessionid, "
     "TabID, SCName) select 1, 1, 'c' || i from n",
     {"32767 columns", "32766"}},
};

INSTANTIATE_TEST_SUITE_P(Values, BadDefinitionTest, testing::ValuesIn(kBadValues),
                         [](const auto& value) { return std::string(value.param.name); });

TEST_F(RepositoryTest, TheMostColumnsThatASessionCanHoldAreRead) {
    Change(
        "with recursive n(i) as (select 3 union all select i+1 from n where i < 32766) insert into SrcDCols select "
        "sessionid, TabID, TName, 'c' || i, 'c' || i, SCCount, DCCount, SDtype, DDType, SWidth, DWidth, SScale, "
        "DScale, SOrgDtype, Pos, CPos, ignor, 0 from SrcDCols, n where SCName='ID'");
    EXPECT_EQ(RunStored(1), 0) << errorLog_ << log_;
    EXPECT_EQ(NativeSqlite(Path("target.db")).Count("t_copy"), 3);
}

TEST_F(RepositoryTest, BoundaryValuesAreRead) {
    Change("update vrtabs set TabID=-32768");
    Change("update SrcDCols set TabID=-32768, SScale=32767.4, SCCount=-32768.5, SWidth=2147483647, ignor=7");
    EXPECT_EQ(RunStored(1), 0) << errorLog_ << log_;
    EXPECT_EQ(NativeSqlite(Path("target.db")).Count("t_copy"), 3);
}

TEST_F(RepositoryTest, TablesRunInTheOrderOfTheirKeyWhateverOrderTheyAreStoredIn) {
    std::filesystem::remove(Path("vrrepo.mdb"));
    TestRepository access(folder_.Path(), TestRepository::Form::Access);
    session_.tables.push_back(session_.tables[0]);
    session_.tables[1].where = "ID = 1";
    access.Add(session_);
    access.Execute("update SrcDCols set TabID=9 where TabID=1");
    access.Execute("update vrtabs set TabID=9 where TabID=1");
    EXPECT_EQ(RunStored(1), 0) << errorLog_ << log_;
    EXPECT_LT(log_.find(" 1 Rows Loaded"), log_.find(" 3 Rows Loaded")) << log_;
}

TEST_F(RepositoryTest, AnEntryIsAppendedToTheEarlierOnes) {
    Change("update sessions set SrcDBFPath=Null");
    EXPECT_EQ(RunStored(1), 2);
    const std::string first = errorLog_;
    EXPECT_EQ(RunStored(1), 2);
    EXPECT_EQ(errorLog_, first + first);
}

TEST_F(RepositoryTest, AnErrorLogThatCannotBeWrittenGoesToStandardError) {
    std::filesystem::create_directory(Path("Varnel.log"));
    Change("update sessions set SrcDBFPath=Null");
    EXPECT_EQ(RunStored(1), 2);
    EXPECT_NE(output_.find("Varnel.log"), std::string::npos) << output_;
    EXPECT_NE(output_.find(kHead + "Invalid use of Null"), std::string::npos) << output_;
}

TEST_F(RepositoryTest, TwoSessionsAtOnceBothRecordTheirOutcome) {
    constexpr int kPairs = 25;
    for (int k = 2; k <= 3; ++k) {
        session_.id = k;
        session_.name = "Session " + std::to_string(k);
        session_.log = Path("run" + std::to_string(k) + ".log");
        session_.targetConnection = SqliteConnection(Path("target" + std::to_string(k) + ".db"));
        session_.tables[0].exists = false;
        session_.tables[0].firstTime = "CREATE";
        session_.tables[0].columns[0].targetType = "Long";
        session_.tables[0].columns[1].targetType = "Text";
        repository_.Add(session_);
    }
    for (int pair = 0; pair < kPairs; ++pair) {
        repository_.Execute("update sessions set LastRunDate=Null, LastRunTime=Null, SessionError=Null");
        repository_.Execute("update vrtabs set TableExists=0, FirstTimeLoadOpt='CREATE'");
        for (const char* name : {"target2.db", "target3.db"}) std::filesystem::remove(Path(name));
        const auto one = Start(2);
        const auto other = Start(3);
        EXPECT_EQ(End(*one), 0) << errorLog_ << output_;
        EXPECT_EQ(End(*other), 0) << errorLog_ << output_;
        for (const int id : {2, 3}) ASSERT_EQ(Outcome(id), "recorded, no error") << "pair " << pair;
        EXPECT_EQ(repository_.Ask("select count(*) from vrtabs where TableExists=1 and FirstTimeLoadOpt='' and "
                                  "sessionid>1"),
                  "2");
    }
}

TEST_F(RepositoryTest, TwoSessionsAtOnceMayWriteIntoOneFile) {
    constexpr int kRows = 30'000;
    NativeSqlite source(Path("source.db"));
    MakeNumbered(source, "many", kRows);
    for (int k = 2; k <= 3; ++k) {
        session_.id = k;
        session_.log = Path("run" + std::to_string(k) + ".log");
        session_.tables[0].source = "many";
        session_.tables[0].target = "t" + std::to_string(k);
        session_.tables[0].exists = false;
        session_.tables[0].columns[0].targetType = "Long";
        session_.tables[0].columns[1].targetType = "Text";
        repository_.Add(session_);
    }
    const auto one = Start(2);
    const auto other = Start(3);
    EXPECT_EQ(End(*one), 0) << Content("run2.log") << errorLog_;
    EXPECT_EQ(End(*other), 0) << Content("run3.log") << errorLog_;
    NativeSqlite target(Path("target.db"));
    for (const char* table : {"t2", "t3"}) EXPECT_EQ(target.Count(table), kRows);
    EXPECT_EQ(target.Ask("pragma integrity_check"), "ok");
}

TEST_F(RepositoryTest, APolledFolderThatDoesNotExistEndsTheRun) {
    Change("update sessions set SourceDBName='TEXTPOLL', FolderName='/nowhere/in', FPattern='*.csv'");
    Change("update vrtabs set SFormat=',', SFirstColLine=1");
    ExpectOneEntry({"Path not found", "/nowhere/in"});
}

TEST_F(RepositoryTest, APolledFolderWithoutFilesLoadsNothingAndIsNoFailure) {
    const std::string folder = folder_.MakeFolder("in");
    Change("update sessions set SourceDBName='TEXTPOLL', FolderName='" + folder + "', FPattern='*.csv'");
    Change("update vrtabs set SFormat=',', SFirstColLine=1");
    EXPECT_EQ(RunStored(1), 0) << errorLog_;
    EXPECT_EQ(Outcome(), "recorded, no error");
    EXPECT_FALSE(std::filesystem::exists(session_.log));
}

TEST_F(RepositoryTest, ATextTargetIsWrittenByTheExport) {
    Change("update sessions set TargetDBName='TEXT'");
    Change(
        "update vrtabs set FirstTimeLoadOpt='CREATE', DFormat=',', FileFormat='DELIMITED', DFirstColLine=1, "
        "DTextQ='DQ', TextDirDest='" +
        folder_.Path() + "', FileExt='csv', DestTableName='" + Path("out.csv") + "'");
    EXPECT_EQ(RunStored(1), 0) << errorLog_ << log_;
    EXPECT_NE(Content("out.csv").find("\"row 2\""), std::string::npos) << Content("out.csv");
    EXPECT_EQ(Outcome(), "recorded, no error");
    EXPECT_EQ(repository_.Ask("select FirstTimeLoadOpt from vrtabs"), "CREATE");
}

TEST_F(RepositoryTest, TheRepositoryItselfMayBeTheSourceAndTheTarget) {
    session_.id = 2;
    session_.sourceConnection = session_.targetConnection =
        "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + Path("vrrepo.mdb");
    TestTable list{
        "sessions", "session_list", {{"sessionid", "Integer", 11}, {"SessionName", "VarWchar", 255}}, false, "",
        "",         "CREATE"};
    list.columns[0].targetType = "Long";
    list.columns[1].targetType = "Text";
    TestTable again{"vrtabs", "vrtabs", {{"SessionId", "Integer"}, {"DestTableName", "VarWchar"}},
                    true,     "append", "SessionId=1"};
    session_.tables = {list, again};
    EXPECT_EQ(Run(), 0) << log_ << errorLog_;
    EXPECT_EQ(repository_.Ask("select sessionid, SessionName from session_list order by sessionid"), "1|Test\n2|Test");
    EXPECT_EQ(repository_.Ask("select count(*) from vrtabs where SessionId=1 and DestTableName='t_copy'"), "2");
    EXPECT_EQ(repository_.Ask("select TableExists, FirstTimeLoadOpt from vrtabs where SessionId=2 and TabID=1"), "1|");
    EXPECT_EQ(Outcome(2), "recorded, no error");
}

}  // namespace
}  // namespace varnel
