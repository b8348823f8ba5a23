// What the check foretells, and that the real program then meets it.
#include <gmock/gmock.h>

#include <filesystem>

#include "tests/session/CheckSession.h"
#include "tests/support/tds/TdsServer.h"

namespace varnel {
namespace {

using testing::HasSubstr;

/// What the real run of the session does.
enum class Really {
    Fails,         ///< exit status 1
    EndsInLog,     ///< exit status 2: Varnel.log
    LoadsNothing,  ///< exit status 0, no row anywhere
    Goes,          ///< exit status 0
    Unasked        ///< not run: it needs a server that is not there, say
};

struct Broken {
    const char* name;
    void (*breakIt)(CheckSessionTest&);
    std::vector<std::string> finding;  ///< all of them in one line
    std::string remedy;                ///< in the line below
    Really really = Really::Fails;
    std::vector<std::string> options = {};
};

using T = CheckSessionTest;

/// The target has this table already, and the session counts on it.
void HaveTarget(T& t, const std::string& create, const std::string& option = "append") {
    t.Sql("target.db", {create, "insert into OUTROWS default values"});
    t.session_.tables[0].exists = true;
    t.session_.tables[0].option = option;
}

/// In an Access database: a SQLite file keeps texts of any length.
void HaveNarrowTarget(T& t) {
    t.session_.targetConnection = AccessConnection(t.Path("target.mdb"));
    ExecuteOn(t.session_.targetConnection, "create table OUTROWS (ID LONG, NAME TEXT(4))");
    t.session_.tables[0].exists = true;
}

void MapOnly(T& t, const TestColumn& column) {
    t.session_.tables[0].columns = {column};
}

void ToFoxPro(T& t) {
    t.folder_.MakeFolder("fox");
    t.session_.targetKind = "FOXPRO";
    t.session_.targetType = "DIR";
    t.session_.targetConnection = "Provider=VFPOLEDB;Data Source=" + t.Path("fox");
    t.session_.targetFolder = t.Path("fox") + "/";
}

/// A target server that nobody answers for: what can be told without it is told.
void ToServer(T& t, const std::string& kind) {
    t.session_.targetKind = kind;
    t.session_.targetConnection =
        "Driver={MySQL ODBC 8.0 Unicode Driver};Socket=" + t.Path("none.sock") + ";User=u;Password=verschwiegen";
    t.session_.tables[0].targetOwner = "dbo";
}

void ToText(T& t, const std::string& format) {
    t.TargetIsText({",", "DQ", true, format});
    t.session_.tables[0].target = t.Path("out.txt");
    t.session_.tables[0].columns[1].targetType = "VARCHAR";
}

void Poll(T& t, const std::vector<std::string>& files) {
    t.folder_.MakeFolder("drop");
    for (const std::string& file : files) t.PutFile("drop/" + file, "ID,NAME\r\n1,a\r\n");
    t.Sql("target.db", {"create table OUTROWS (ID INTEGER, NAME VARCHAR(255))"});
    t.PollInto({"*", "OUTROWS", {{"ID", "Integer"}, {"NAME", "VarWchar", 255}}, true, "append"});
}

const Broken kBroken[] = {
    {"NullInTheRepository",
     [](T&) {},
     {"fault: SourceConnStr: ", "no value in sessions.SourceConnStr"},
     "store a value",
     Really::EndsInLog,
     {"update sessions set SourceConnStr=NULL"}},
    {"NumberOutOfRange",
     [](T&) {},
     {"fault: ", "TabID of table vrtabs"},
     "correct the value",
     Really::EndsInLog,
     {"update vrtabs set TabID=40000"}},
    {"NoTables",
     [](T&) {},
     {"fault: ", "no tables (vrtabs)"},
     "add its tables",
     Really::LoadsNothing,
     {"delete from vrtabs"}},
    {"NoColumns",
     [](T&) {},
     {"fault: ", "no columns (SrcDCols)"},
     "add the columns",
     Really::LoadsNothing,
     {"delete from SrcDCols"}},
    {"KindInOtherCase",
     [](T& t) { t.session_.targetKind = "Access"; },
     {"fault: TargetDBName: ", "'Access'"},
     "did you mean 'ACCESS'?",
     Really::Unasked},
    {"NoSourceFile",
     [](T& t) { t.session_.sourceConnection = "Provider=SQLite;Data Source=" + t.Path("no.db"); },
     {"fault: the source cannot be opened", "no.db"},
     "correct the path"},
    {"NoDrive",
     [](T& t) { t.session_.sourceConnection = "Provider=SQLite;Data Source=Q:\\x.db"; },
     {"fault: the source cannot be opened", "Q:"},
     "drives/"},
    {"UnreadableConnection",
     [](T& t) { t.session_.sourceConnection = "Provider=SQLite;Password=\"verschwiegen"; },
     {"fault: the source cannot be opened"},
     "correct the connection string"},
    {"UnknownDriver",
     [](T& t) { t.session_.sourceConnection = "Driver={No Such Driver};Server=x"; },
     {"fault: the source cannot be opened", "No Such Driver"},
     "install the driver"},
    {"NoServer",
     [](T& t) { ToServer(t, "MySQL"); },
     {"fault: the target cannot be opened", "none.sock"},
     "correct server, user and password"},
    {"NoSourceTable",
     [](T& t) { t.session_.tables[0].source = "SRCC"; },
     {"fault: ", "source table 'SRCC' cannot be read"},
     "did you mean 'SRC'?"},
    {"NoSourceColumn",
     [](T& t) { t.session_.tables[0].columns[1].source = "NAMEN"; },
     {"fault: NAMEN: ", "'SRC' has no column 'NAMEN'"},
     "did you mean 'NAME'?"},
    {"BrokenFilter",
     [](T& t) { t.session_.tables[0].where = "ID >"; },
     {"fault: ", "filter 'ID >' is refused"},
     "correct WhereCond"},
    {"FilterOnNoColumn",
     [](T& t) { t.session_.tables[0].where = "NUMMER=1"; },
     {"fault: ", "filter 'NUMMER=1' is refused", "NUMMER"},
     "correct WhereCond"},
    {"StarInLike",
     [](T& t) { t.session_.tables[0].where = "NAME LIKE 'Sm*'"; },
     {"warning: ", "LIKE 'Sm*'"},
     "write % for *",
     Really::LoadsNothing},
    {"NoTargetTable",
     [](T& t) { t.session_.tables[0].exists = true; },
     {"fault: ", "'OUTROWS' counts as existing"},
     "first_time = \"CREATE\""},
    {"TargetIsThere",
     [](T& t) { HaveTarget(t, "create table OUTROWS (ID INTEGER)"), t.session_.tables[0].exists = false; },
     {"fault: ", "'OUTROWS' exists already"},
     "set TableExists to 1"},
    {"NoTargetColumn",
     [](T& t) { HaveTarget(t, "create table OUTROWS (ID INTEGER, NAMES VARCHAR(50))"); },
     {"fault: NAME: ", "'OUTROWS' has no column 'NAME'"},
     "did you mean 'NAMES'?"},
    {"NothingForNotNull",
     [](T& t) {
         t.Sql("target.db", {"create table OUTROWS (ID INTEGER, NAME VARCHAR(50), MUST VARCHAR(9) NOT NULL)"});
         t.session_.tables[0].exists = true;
     },
     {"warning: MUST: ", "must have a value and gets none"},
     "map a source column to it"},
    {"TextTooLong",
     [](T& t) { HaveNarrowTarget(t); },
     {"warning: NAME: ", "text of 50 characters", "text of 4 characters"},
     "wider"},
    {"TextTooLongByValue",
     [](T& t) { HaveNarrowTarget(t); },
     {"fault: NAME: ", "is longer", "in 2 rows, first in row 1: 'Smith'"},
     "correct these values",
     Really::Fails,
     {"--values"}},
    {"NumberTooLarge",
     [](T& t) { HaveTarget(t, "create table OUTROWS (ID SMALLINT, NAME VARCHAR(50))"); },
     {"warning: ID: ", "-32768 to 32767"},
     "wider"},
    {"NumberTooLargeByValue",
     [](T& t) { HaveTarget(t, "create table OUTROWS (ID SMALLINT, NAME VARCHAR(50))"); },
     {"fault: ID: 'ID' does not convert", "row 2: '123456789'"},
     "filter the rows out",
     Really::Fails,
     {"--values"}},
    {"MoneyLosesItsCents",
     [](T& t) {
         HaveTarget(t, "create table OUTROWS (AMOUNT INTEGER)");
         MapOnly(t, {"AMOUNT", "Currency", 19, 4});
     },
     {"warning: AMOUNT: ", "more decimal places"},
     "with a fraction"},
    {"TextIntoNumber",
     [](T& t) {
         HaveTarget(t, "create table OUTROWS (NAME INTEGER)");
         MapOnly(t, {"NAME", "VarWchar", 50});
     },
     {"warning: NAME: ", "does not read as one"},
     "--values"},
    {"BinaryIntoNumber",
     [](T& t) {
         t.Sql("source.db", {"update SRC set PIC=x'0102'"});
         HaveTarget(t, "create table OUTROWS (PIC INTEGER)");
         MapOnly(t, {"PIC", "LongVarBinary"});
     },
     {"fault: PIC: ", "never converts"},
     "choose another target type"},
    {"TwoIntoOneColumn",
     [](T& t) { t.session_.tables[0].columns[1].target = "id"; },
     {"fault: id: two source columns go to the target column 'id'"},
     "give 'NAME' another target column"},
    {"WrongTypeWord",
     [](T& t) { t.session_.tables[0].columns[1].targetType = "GUIDX("; },
     {"fault: NAME: the target table cannot be made with it"},
     "its target type 'GUIDX('"},
    {"LongNameInAFreeTable",
     [](T& t) {
         ToFoxPro(t);
         t.session_.tables[0].columns = {{"NAME", "VarWchar", 50, 0, "CUSTOMERNAME", "Character"}};
     },
     {"fault: CUSTOMERNAME: the target table cannot be made with it"},
     "correct its name"},
    {"BlankInABareName",
     [](T& t) {
         ToFoxPro(t);
         t.session_.tables[0].columns = {{"NAME", "VarWchar", 50, 0, "MY NAME", "Character"}};
     },
     {"fault: MY NAME: ", "written without quotes"},
     "name it otherwise"},
    {"FolderWithoutSeparator",
     [](T& t) { ToFoxPro(t), t.session_.targetFolder = t.Path("fox"); },
     {"fault: DBFPath: "},
     "end it with \\",
     Really::Unasked},
    {"CharacterThatFoxProLacks",
     [](T& t) {
         ToFoxPro(t);
         t.Sql("source.db", {"update SRC set NAME='Łódź' where ID=1"});
         t.session_.tables[0].columns = {{"NAME", "VarWchar", 50, 0, "NAME", "Character"}};
     },
     {"fault: NAME: 'NAME' holds a character", "code page 1252", "'Łódź'"},
     "correct these values",
     Really::Fails,
     {"--values"}},
    {"ReservedInOracle",
     [](T& t) { ToServer(t, "ORACLE"), t.session_.tables[0].columns[0].target = "Level"; },
     {"fault: Level: ", "keeps for itself"},
     "name it otherwise",
     Really::Unasked},
    {"FlagAsOracleNumber",
     [](T& t) {
         ToServer(t, "ORACLE"), MapOnly(t, {"FLAG", "Boolean", 1, 0, "FLAG", "Number"});
     },
     {"fault: FLAG: ", "T or F"},
     "Varchar2(1)",
     Really::Unasked},
    {"ScaleBeyondMySql",
     [](T& t) {
         ToServer(t, "MySQL"), MapOnly(t, {"AMOUNT", "Currency", 12, 20, "A", "Decimal"});
     },
     {"fault: A: ", "more decimal places (20) than digits (12)"},
     "DScale",
     Really::Unasked},
    {"TimeOfDayBesideLongColumns",
     [](T& t) {
         ToServer(t, "MySQL");
         t.session_.tables[0].columns = {{"MADE", "Date", 0, 0, "MADE", "DateTime"},
                                         {"NOTE", "LongVarWChar", 0, 0, "N", "Text"}};
     },
     {"warning: MADE: ", "loses its time of day"},
     "a table entry of their own",
     Really::Unasked},
    {"DatesBeforeTimestamp",
     [](T& t) {
         ToServer(t, "MySQL"), MapOnly(t, {"MADE", "Date", 0, 0, "MADE", "Timestamp"});
     },
     {"fault: MADE: 'MADE' lies outside", "row 2"},
     "correct these values",
     Really::Unasked,
     {"--values"}},
    {"NoTypeInSqlServer",
     [](T& t) {
         ToServer(t, "MSSQL");
         t.session_.tables[0].exists = true;
         t.session_.tables[0].option = "DROP";
         MapOnly(t, {"ID", "Decimal", 10});
     },
     {"fault: ID: ", "source type 'Decimal'"},
     "make the table by hand",
     Really::Unasked},
    {"MadeTwice",
     [](T& t) { t.session_.tables.push_back(t.session_.tables[0]); },
     {"fault: ", "goes to 'OUTROWS' too"},
     "option APPEND"},
    {"EmptiedByItself",
     [](T& t) {
         t.session_.targetConnection = t.session_.sourceConnection;
         t.session_.tables[0].target = "SRC";
         t.session_.tables[0].exists = true;
         t.session_.tables[0].option = "DELETE";
     },
     {"fault: ", "emptied before it is read"},
     "name another target",
     Really::LoadsNothing},
    {"MadeAndWrittenUnderOtherNames",
     [](T& t) {
         t.session_.tables[0].columns[1].target = "WHO";
         t.session_.tables[0].option = "DROP";
     },
     {"fault: NAME: ", "no column 'NAME'"},
     "the option DROP writes under the source's names"},
    {"NoColumnSelected",
     [](T& t) {
         for (TestColumn& column : t.session_.tables[0].columns) column.selected = 0;
     },
     {"fault: ", "no selected column"},
     "select columns"},
    {"OptionInSmallLetters",
     [](T& t) { HaveTarget(t, "create table OUTROWS (ID INTEGER, NAME VARCHAR(50))", "delete"); },
     {"warning: LoadOption: ", "'delete' is not the word DELETE"},
     "in capitals",
     Really::Goes},
    {"RowsAreDropped",
     [](T& t) { HaveTarget(t, "create table OUTROWS (ID INTEGER, NAME VARCHAR(50))", "DROP"); },
     {"warning: the run drops the table 'OUTROWS' with its 1 row "},
     "keep a copy",
     Really::Goes},
    {"RowsAreDeleted",
     [](T& t) { HaveTarget(t, "create table OUTROWS (ID INTEGER, NAME VARCHAR(50))", "DELETE"); },
     {"warning: the run deletes its 1 row of the table 'OUTROWS'"},
     "keep a copy",
     Really::Goes},
    {"NoFolderForTheLog",
     [](T& t) { t.session_.log = t.Path("none/run.log"); },
     {"fault: logfilename: ", "Path not found"},
     "make the folder",
     Really::EndsInLog},
    {"NoLog", [](T& t) { t.session_.log = ""; }, {"warning: logfilename: no log"}, "store the path", Really::Unasked},
    {"NoFolderForTheFile",
     [](T& t) { ToText(t, "DELIMITED"), t.session_.tables[0].target = t.Path("none/out.txt"); },
     {"fault: ", "output file cannot be written", "Path not found"},
     "make the folder"},
    {"FileOverItself",
     [](T& t) {
         t.folder_.MakeFolder("in");
         t.PutFile("in/SRC", "ID,NAME\r\n1,a\r\n");
         ToText(t, "DELIMITED");
         t.session_.sourceKind = "TEXT";
         t.session_.sourceConnection = T::TextConnection(t.Path("in"));
         t.session_.tables[0].target = t.Path("in/SRC");
     },
     {"fault: ", "is the source itself"},
     "write to another file",
     Really::Unasked},
    {"CharacterThatTheFileLacks",
     [](T& t) { ToText(t, "DELIMITED"); },
     {"warning: ", "code page 1252", "'NAME'"},
     "CharacterSet=65001",
     Really::Goes},
    {"CharacterThatTheFileLacksByValue",
     [](T& t) {
         t.Sql("source.db", {"update SRC set NAME='Łódź' where NAME='Jones'"});
         ToText(t, "DELIMITED");
     },
     {"fault: NAME: 'NAME' holds a character", "code page 1252", "row 2: 'Łódź'"},
     "correct these values",
     Really::Fails,
     {"--values"}},
    {"LongColumnInFixedWidth",
     [](T& t) {
         ToText(t, "FIXED"), MapOnly(t, {"NOTE", "LongVarWChar"});
     },
     {"fault: NOTE: ", "the table is skipped"},
     "DELIMITED",
     Really::LoadsNothing},
    {"NumberCutInFixedWidth",
     [](T& t) { ToText(t, "FIXED"); },
     {"warning: ID: 'ID' is cut to 7", "row 2: '123456789'"},
     "look at these values",
     Really::Goes,
     {"--values"}},
    {"NoPolledFolder",
     [](T& t) { Poll(t, {"a.csv"}), std::filesystem::remove_all(t.Path("drop")); },
     {"fault: FolderName: ", "does not exist"},
     "make it",
     Really::EndsInLog},
    {"NoPolledFile",
     [](T& t) { Poll(t, {}); },
     {"warning: FPattern: no file"},
     "unless files are still to come",
     Really::LoadsNothing},
    {"LoadedAgainAndAgain",
     [](T& t) { Poll(t, {"a.csv"}), t.session_.pattern = "*.csv*"; },
     {"warning: FPattern: ", "every run loads all files again"},
     "such as *.csv",
     Really::Goes},
    {"EveryFileMakesTheTable",
     [](T& t) {
         Poll(t, {"a.csv", "b.csv"});
         t.Sql("target.db", {"drop table OUTROWS"});
         t.session_.tables[0].exists = false;
         for (TestColumn& column : t.session_.tables[0].columns) column.targetType = column.width > 0 ? "Text" : "Long";
     },
     {"fault: TableExists: 2 files go to 'OUTROWS'"},
     "make the table first"},
    {"FileOfOtherStructure",
     [](T& t) { Poll(t, {"a.csv"}), t.PutFile("drop/b.csv", "ID,NOM\r\n1,a\r\n"); },
     {"fault: NAME: ", "'b.csv' has no column 'NAME'"},
     "Its columns are 'ID', 'NOM'"},
    {"FolderListedIsNotFolderRead",
     [](T& t) {
         Poll(t, {"a.csv"});
         t.session_.sourceConnection = T::TextConnection(t.folder_.MakeFolder("other"));
     },
     {"fault: FolderName: ", "and read from"},
     "the same folder in both"},
};

class BrokenSessions : public CheckSessionTest, public testing::WithParamInterface<Broken> {
protected:
    void ExpectRun(Really really) {
        const int status = RunStored(1);
        const int expected = really == Really::Fails ? 1 : really == Really::EndsInLog ? 2 : 0;
        EXPECT_EQ(status, expected) << log_ << errorLog_;
        if (really == Really::LoadsNothing) {
            EXPECT_EQ(log_.find(" 2 Rows Loaded"), std::string::npos) << log_;
        }
    }
};

TEST_P(BrokenSessions, AreNamedWithTheirRemedyAndBehaveAsForetold) {
    const Broken& broken = GetParam();
    secrets_.emplace_back("verschwiegen");
    broken.breakIt(*this);
    repository_.Add(session_);
    std::vector<std::string> options = broken.options;
    if (!options.empty() && !options[0].starts_with("-")) {
        repository_.Execute(options[0]);
        options.clear();
    }
    Check(options);
    ExpectFinding(broken.finding, broken.remedy);
    EXPECT_EQ(report_.find("verschwiegen"), std::string::npos) << report_;
    EXPECT_EQ(checkStatus_, report_.find("fault: ") == std::string::npos ? 0 : 1) << report_;
    if (broken.really != Really::Unasked) ExpectRun(broken.really);
}

INSTANTIATE_TEST_SUITE_P(Check, BrokenSessions, testing::ValuesIn(kBroken),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace varnel
