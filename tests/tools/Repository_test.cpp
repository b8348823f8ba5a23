#include <gmock/gmock.h>

#include "tests/tools/AdminTest.h"

namespace varnel {
namespace {

using testing::HasSubstr;
using testing::Not;

// Every key and both forms of columns, with quotes, blanks and non-Latin letters where they may stand.
const std::string kDatabaseSession = R"toml(# never run
[[session]]
id = 12
name = "Żółte \"orders\" o'clock"
log = 'C:\logs\orders.log'

[session.source]
kind = "FOXPRO"
connection = 'Provider=VFPOLEDB.1;Data Source=C:\data'
type = "DIR"
folder = 'C:\data\'

[session.target]
kind = "MSSQL"
connection = "Provider=SQLOLEDB;Data Source=db1;User ID=sa"

[[session.table]]
source = "Order Lines"
source_owner = "me"
target = "O'Lines"
target_owner = "dbo"
where = 'name = "x" and total > 0'
exists = false
option = "DELETE"
first_time = "CREATE"
columns = [
    "ID Integer -> ID int",
    "[Ship To] VarWchar(60) -> Ziel nvarchar(80)",
    "Price Numeric(10,2) -> Price decimal(12,4)",
    {source = "Odd]name", type = "Currency", width = 19, scale = 0, source_type = "MONEY", target = "Odd", target_type = "money", target_width = 19, target_scale = 0, selected = false},
]

[[session.table]]
source = "Second"
target = "Second"
target_owner = "dbo"
exists = true
option = "APPEND"
columns = [
    "Zeta Boolean",
    "Alpha LongVarWChar -> Beta",
]
)toml";

const std::string kPollSession = R"toml(# never run
[[session]]
id = -3
name = "Drop folder"

[session.source]
kind = "TEXTPOLL"
connection = 'Provider=Microsoft.Jet.OLEDB.4.0;Data Source=C:\in;Extended Properties="text;HDR=Yes"'

[session.target]
kind = "TEXT"
connection = "Provider=Microsoft.Jet.OLEDB.4.0"

[session.polling]
folder = 'C:\in'
pattern = "*.csv"
rename = "done"

[session.target_text]
format = "FIXED"
delimiter = "|"
qualifier = "SQ"
header = false
folder = 'C:\out'
extension = ".txt"

[[session.table]]
source = "*.csv"
target = 'C:\out\all.txt'
exists = true
option = "APPEND"
source_text = {delimiter = "\t", qualifier = "", header = false}
columns = [
    "A Integer -> A Integer(7)",
]
)toml";

class Repository : public AdminTest {};

TEST_F(Repository, ShowPrintsWhatImportRead) {
    for (const auto& [id, text] : {std::pair{"12", kDatabaseSession}, std::pair{"-3", kPollSession}}) {
        const ProgramResult imported = Import(text);
        EXPECT_EQ(imported.status, 0) << imported.err;
        EXPECT_EQ(Output({"show", "--repository", "vrrepo.mdb", "--", id}), text);
    }
}

TEST_F(Repository, StoresWhatTheProgramReads) {
    ASSERT_EQ(Import(kDatabaseSession).status, 0);
    EXPECT_EQ(Sql("vrrepo.mdb", "SELECT SourceType, TargetType, SrcDBFPath, DBFPath, FPattern FROM sessions"),
              "SourceType,TargetType,SrcDBFPath,DBFPath,FPattern\r\nDIR,\"\",C:\\data\\,\"\",\"\"\r\n");
    EXPECT_EQ(Sql("vrrepo.mdb", "SELECT TabID, TableExists, LoadOption, FirstTimeLoadOpt, WhereCond FROM vrtabs"),
              "TabID,TableExists,LoadOption,FirstTimeLoadOpt,WhereCond\r\n"
              "1,False,DELETE,CREATE,\"name = \"\"x\"\" and total > 0\"\r\n2,True,APPEND,\"\",\"\"\r\n");
    EXPECT_EQ(Sql("vrrepo.mdb",
                  "SELECT TabID, SCName, DCName, SDtype, DDType, SWidth, DWidth, SScale, DScale, SOrgDtype,"
                  " SSelected, ignor FROM SrcDCols"),
              "TabID,SCName,DCName,SDtype,DDType,SWidth,DWidth,SScale,DScale,SOrgDtype,SSelected,ignor\r\n"
              "1,ID,ID,INTEGER,int,10,10,0,0,Integer,1,False\r\n"
              "1,Ship To,Ziel,VARWCHAR,nvarchar,60,80,0,0,VarWchar,1,False\r\n"
              "1,Price,Price,NUMERIC,decimal,10,12,2,4,Numeric,1,False\r\n"
              "1,Odd]name,Odd,MONEY,money,19,19,0,0,Currency,0,False\r\n"
              "2,Zeta,Zeta,BOOLEAN,\"\",1,1,0,0,Boolean,1,False\r\n"
              "2,Alpha,Beta,LONGVARWCHAR,\"\",0,0,0,0,LongVarWChar,1,False\r\n");
}

TEST_F(Repository, APolledTemplateIsNumberedZeroSoThatNoFileSharesItsNumber) {
    ASSERT_EQ(Import(kPollSession).status, 0);
    EXPECT_EQ(Sql("vrrepo.mdb", "SELECT TabID, TextQ, SFirstColLine, DTextQ FROM vrtabs"),
              "TabID,TextQ,SFirstColLine,DTextQ\r\n0,\"\",0,SQ\r\n");
}

// Without a target a table goes to the file that the log names; without a target type a column gets the one whose
// cells are those of its source type.
TEST_F(Repository, ATextTargetNeedsToSayLittle) {
    const std::string head =
        "[[session]]\nid = 4\nname = \"Out\"\n"
        "source = {kind = \"ACCESS\", connection = 'Provider=SQLite;Data Source=a.db'}\n"
        "target = {kind = \"TEXT\", connection = 'Provider=Microsoft.Jet.OLEDB.4.0'}\n";
    const ProgramResult imported =
        Import(head +
               "target_text = {format = \"FIXED\", folder = 'C:\\out', extension = \".txt\", delimiter = \"\"}\n"
               "[[session.table]]\nsource = \"Goods\"\ncolumns = [\"ID Integer\", \"Name VarWchar(9) -> N\", \"Price "
               "Currency\", \"Ok Boolean\", \"At DBTimeStamp\", \"Sum Numeric(9,2) -> Sum MONEY\"]\n");
    ASSERT_EQ(imported.status, 0) << imported.err;
    EXPECT_EQ(
        Sql("vrrepo.mdb", "SELECT DestTableName, FileFormat, DFormat, DTextQ, DFirstColLine, FileExt FROM vrtabs"),
        "DestTableName,FileFormat,DFormat,DTextQ,DFirstColLine,FileExt\r\n"
        "C:\\out\\Goods.txt,FIXED,\"\",DQ,1,.txt\r\n");
    EXPECT_EQ(Sql("vrrepo.mdb", "SELECT DCName, DDType, DWidth FROM SrcDCols"),
              "DCName,DDType,DWidth\r\nID,Integer,7\r\nN,VarWchar,9\r\nPrice,6,21\r\nOk,11,5\r\nAt,135,22\r\n"
              "Sum,MONEY,9\r\n");
}

TEST_F(Repository, ShowSaysWhatANullMeansAndHowTheLastRunEnded) {
    ASSERT_EQ(Import(kPollSession).status, 0);
    Output({"sql", "Provider=SQLite;Data Source=vrrepo.mdb",
            "UPDATE sessions SET LastRunDate='11/18/2026', LastRunTime='04:23:05 PM', SessionError=1"});
    EXPECT_THAT(Output({"show", "--repository", "vrrepo.mdb", "--", "-3"}),
                testing::StartsWith("# last run 11/18/2026 04:23:05 PM, with errors\n[[session]]\n"));
    EXPECT_EQ(Output({"list", "--repository", "vrrepo.mdb"}),
              "id  name         source    target  last run                outcome\n"
              "--  -----------  --------  ------  ----------------------  -----------\n"
              "-3  Drop folder  TEXTPOLL  TEXT    11/18/2026 04:23:05 PM  with errors\n");
    const std::string run = "\"last_run\": \"2026-11-18 16:23:05\",";
    EXPECT_THAT(Output({"list", "--json", "--repository", "vrrepo.mdb"}),
                testing::AllOf(HasSubstr("\"id\": -3,"), HasSubstr(run), HasSubstr("\"outcome\": \"with errors\"")));
    EXPECT_THAT(Output({"show", "--json", "--repository", "vrrepo.mdb", "--", "-3"}),
                testing::AllOf(HasSubstr(run), HasSubstr("\"pattern\": \"*.csv\""), HasSubstr("\"number\": 0,")));
    Output({"sql", "Provider=SQLite;Data Source=vrrepo.mdb", "UPDATE sessions SET SessionError=0"});
    EXPECT_THAT(Output({"list", "--repository", "vrrepo.mdb"}), testing::EndsWith("PM  good\n"));
}

TEST_F(Repository, PasswordsAreNeverPrinted) {
    const std::string shop =
        "[[session]]\nid = 1\nname = \"a\"\n"
        "source = {kind = \"ACCESS\", connection = 'Provider=SQLite;Data Source=a.db;Jet OLEDB:Database "
        "Password=geheim1'}\n"
        "target = {kind = \"MySQL\", connection = 'Driver={MySQL};Server=127.0.0.1;Port=1;Uid=u; Pwd = geheim2'}\n"
        "[[session.table]]\nsource = \"T\"\ncolumns = [\"A Integer\"]\n";
    const ProgramResult imported = Import(shop);
    ASSERT_EQ(imported.status, 0) << imported.err;
    const std::string shown = Output({"show", "1", "--repository", "vrrepo.mdb"});
    EXPECT_THAT(shown, HasSubstr("Password=***"));
    EXPECT_THAT(shown, Not(HasSubstr("geheim")));
    EXPECT_THAT(Output({"show", "1", "--json", "--repository", "vrrepo.mdb"}),
                testing::AllOf(HasSubstr("Password=***"), Not(HasSubstr("geheim"))));
    const ProgramResult refused =
        Admin({"sql", "Driver={MySQL};Server=127.0.0.1;Port=1;Uid=u;Pwd=geheim2", "SELECT 1"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_NE(refused.err, "");
    EXPECT_THAT(refused.err, Not(HasSubstr("geheim")));
    // What show printed cannot be imported by mistake: the hidden password would be lost.
    EXPECT_THAT(Import(shown, {"--replace"}).err, HasSubstr("which only hides a password"));
}

TEST_F(Repository, NothingIsOverwrittenAndAMissingFileHasARemedy) {
    WriteFile("vrrepo.mdb", "precious");
    const ProgramResult refused = Admin({"new", "vrrepo.mdb"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err, HasSubstr("vrrepo.mdb exists already and is left as it is"));
    EXPECT_THAT(Admin({"list", "--repository", "none.mdb"}).err, HasSubstr("make one with: varnel-admin new none.mdb"));
}

TEST_F(Repository, NoneIsMadeByAccidentAmongThePrograms) {
    const ProgramResult refused =
        RunIn(Folder(), "/bin/sh", {"-c", "ln -s '" VARNEL_ADMIN "' . && PATH=$PWD:$PATH varnel-admin new"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err, HasSubstr("is a folder of programs; name the file to make"));
    EXPECT_EQ(Admin({"list", "--repository", "vrrepo.mdb"}).status, 1);
}

TEST_F(Repository, UsageErrorsAreToldApartFromFailures) {
    EXPECT_EQ(Admin({}).status, 2);
    EXPECT_EQ(Admin({"show", "x"}).status, 2);
    EXPECT_EQ(Admin({"show", "40000"}).status, 2);
    EXPECT_EQ(Admin({"--help"}).status, 0);
    EXPECT_THAT(Admin({"--version"}).out, testing::StartsWith("varnel-admin "));
}

}  // namespace
}  // namespace varnel
