#include <gmock/gmock.h>

#include "tests/tools/AdminTest.h"

namespace varnel {
namespace {

// A session file that is right, cut where the cases change it.
const std::string kHead = "[[session]]\nid = 7\nname = \"Shop\"\n";
const std::string kSides =
    "source = {kind = \"ACCESS\", connection = 'Provider=SQLite;Data Source=a.db'}\n"
    "target = {kind = \"MSSQL\", connection = 'Provider=SQLOLEDB;Password=geheim'}\n";
const std::string kTable = "[[session.table]]\nsource = \"T\"\ntarget_owner = \"dbo\"\n";
const std::string kColumns = "columns = [\"A Integer\"]\n";

const std::string kPolled =
    "source = {kind = \"TEXTPOLL\", connection = 'Provider=Microsoft.Jet.OLEDB.4.0'}\n"
    "target = {kind = \"TEXT\", connection = 'Provider=Microsoft.Jet.OLEDB.4.0'}\n";

struct Fault {
    const char* name;
    std::string text;
    std::vector<std::string> messages;  ///< each must stand in the error output
};

std::vector<Fault> Faults() {
    return {
        {"BrokenToml", "[[session]]\nid = \n", {"s.toml:2: "}},
        {"NoSession", "# nothing\n", {"s.toml:1: the file holds no session; write [[session]]"}},
        {"OneBracket",
         "[session]\nid = 1\n",
         {"s.toml:1: session must be a list; write [[session]] with two brackets"}},
        {"UnknownKey",
         kHead + "lgo = \"x\"\n" + kSides + kTable + kColumns,
         {"s.toml:4: unknown key \"lgo\"; a session has the keys id, name, log"}},
        {"MissingKeys",
         "[[session]]\n",
         {"s.toml:1: a session needs id; write id = 12", "a session needs name; write name = \"Nightly orders\"",
          "a session needs source; write source = {", "a session needs target; write target = {",
          "a session needs table; write [[session.table]]"}},
        {"WrongKindOfValue",
         "[[session]]\nid = \"7\"\nname = 3\n" + kSides + kTable + kColumns,
         {"s.toml:2: id must be a whole number from -32768 to 32767; write id = 12",
          "s.toml:3: name must be a text in quotes"}},
        {"IdOutOfRange",
         "[[session]]\nid = 32768\nname = \"a\"\n" + kSides + kTable + kColumns,
         {"s.toml:2: id must be"}},
        {"IdZero", "[[session]]\nid = 0\nname = \"a\"\n" + kSides + kTable + kColumns, {"s.toml:2: id must not be 0"}},
        {"SameIdTwice",
         kHead + kSides + kTable + kColumns + kHead + kSides + kTable + kColumns,
         {"s.toml:10: id 7 is already used at s.toml:1"}},
        {"KindInOtherCase",
         kHead + "source = {kind = \"MYSQL\", connection = 'a=b'}\n",
         {"s.toml:4: kind is \"MYSQL\"; write \"MySQL\""}},
        {"UnknownKind",
         kHead + "source = {kind = \"DB2\", connection = 'a=b'}\n",
         {"s.toml:4: kind is \"DB2\"; write one of \"ACCESS\""}},
        {"BadConnectionString",
         kHead + "source = {kind = \"ACCESS\", connection = 'Password=\"geheim'}\n",
         {"s.toml:4: "}},
        {"HiddenPassword",
         kHead + "source = {kind = \"ACCESS\", connection = 'a=b;PWD=***'}\n",
         {"s.toml:4: PWD is ***, which only hides a password; write the password"}},
        {"FoxProWithoutType",
         kHead + "source = {kind = \"FOXPRO\", connection = 'a=b'}\n",
         {"s.toml:4: source needs type; write type = \"DIR\""}},
        {"PollingOfATable",
         kHead + kSides + "polling = {folder = 'a', pattern = \"*\", rename = \"x\"}\n",
         {"s.toml:6: polling belongs to a source of kind TEXTPOLL"}},
        {"NoOwner",
         kHead + kSides + "[[session.table]]\nsource = \"T\"\n" + kColumns,
         {"s.toml:6: a table needs target_owner; write target_owner = \"dbo\""}},
        {"UnknownOption",
         kHead + kSides + kTable + "option = \"TRUNCATE\"\n" + kColumns,
         {"s.toml:9: option is \"TRUNCATE\"; write one of \"DROP\", \"DELETE\", \"APPEND\""}},
        {"FlagAsText",
         kHead + kSides + kTable + "exists = \"yes\"\n" + kColumns,
         {"s.toml:9: exists must be true or false; write exists = true"}},
        {"NoColumns", kHead + kSides + kTable + "columns = []\n", {"a table needs columns; write columns = ["}},
        {"ColumnWithoutType",
         kHead + kSides + kTable + "columns = [\n\"A\",\n]\n",
         {"s.toml:10: column \"A\" needs the type of its source; write \"A Integer\""}},
        {"UnknownType",
         kHead + kSides + kTable + "columns = [\"A Integr\"]\n",
         {"s.toml:9: column \"A\" has the unknown type \"Integr\"; write one of BigInt, Binary"}},
        {"NoWidth",
         kHead + kSides + kTable + "columns = [\"A VarWchar\", \"B Numeric\"]\n",
         {"column \"A\" needs a width; write VarWchar(50)", "column \"B\" needs a width; write Numeric(10,2)"}},
        {"ScaleOutOfRange",
         kHead + kSides + kTable + "columns = [\"A Numeric(10,40000)\"]\n",
         {"scale 40000 is out of range; write a number from -32768 to 32767"}},
        {"OpenParenthesis", kHead + kSides + kTable + "columns = [\"A Numeric(10\"]\n", {"a ( without its )"}},
        {"NoTargetType",
         kHead + kSides + kTable + "first_time = \"CREATE\"\n" + kColumns,
         {"column \"A\" needs a target type", "write \"A Integer -> A Long\""}},
        {"TextKeysWithoutText",
         kHead + kSides + "source_text = {}\ntarget_text = {}\n" + kTable + kColumns,
         {"s.toml:6: source_text belongs to a source of kind TEXT or TEXTPOLL; remove it",
          "s.toml:7: target_text belongs to a target of kind TEXT; remove it"}},
        {"PolledWithoutTarget",
         kHead + kPolled + "source_text = {delimiter = \"\"}\n[[session.table]]\n" + kColumns,
         {"s.toml:1: a session needs polling; write polling = {folder", "s.toml:6: delimiter must not be empty",
          "s.toml:7: a table needs target; write target = 'C:\\out\\Orders.csv', the file to write"}},
        {"PollingHalfSaid",
         kHead + kPolled + "polling = {folder = 'a'}\n[[session.table]]\ntarget = 'a.txt'\n" + kColumns,
         {"polling needs pattern; write pattern = \"*.csv\"", "polling needs rename; write rename = \"done\""}},
        {"TextTargetWithoutFile",
         kHead + "source = {kind = \"ACCESS\", connection = 'a=b'}\ntarget = {kind = \"TEXT\", connection = 'a=b'}\n" +
             "[[session.table]]\nsource = \"T\"\n" + kColumns,
         {"s.toml:6: a table needs target; write target = "}},
        {"TwoTablesWithOneNumber",
         kHead + kSides + kTable + kColumns + kTable + "number = 1\n" + kColumns,
         {"s.toml:10: number 1 is that of a table above; write another one"}},
        {"StoredValuesOfNoColumn",
         kHead + "stored = {Nmae = 1, at = 2026-11-18}\nstored_null = [1]\n" + kSides + kTable + kColumns,
         {"s.toml:4: at must be a text, a number, true or false",
          "s.toml:5: stored_null must be a list of column names"}},
        {"UnknownStoredColumn",
         kHead + "stored = {Nmae = 1}\n" + kSides + kTable + kColumns,
         {"s.toml:4: the table sessions has no column Nmae; write one of sessionid, SessionName"}},
        {"StoredFraction",
         kHead + kSides + kTable + "stored = {SFirstColLine = 0.5}\n" + kColumns,
         {"s.toml:9: vrtabs.SFirstColLine takes whole numbers only; write SFirstColLine = 0"}},
        {"StoredNumberOfTheSession",
         "[[stored_session]]\nid = 3\nsessions = {sessionid = 4}\n",
         {"s.toml:3: sessionid is the number of the session; write id = 12"}},
        {"StoredSessionWithHiddenPassword",
         "[[stored_session]]\nid = 3\nsessions = {TargetConnStr = \"a='b;PWD=***\"}\nvrtabs = [1]\n",
         {"s.toml:3: TargetConnStr holds ***, which only hides a password", "s.toml:4: a row must be a table"}},
        {"EveryFaultAtOnce",
         kHead + "lgo = 1\n" + kSides + kTable + "wher = 1\n" + kColumns,
         {"s.toml:4: unknown key \"lgo\"", "s.toml:10: unknown key \"wher\""}},
    };
}

class ImportFaults : public AdminTest {};

TEST_F(ImportFaults, AreNamedWithLineAndRemedyAndNothingIsWritten) {
    for (const Fault& fault : Faults()) {
        SCOPED_TRACE(fault.name);
        const ProgramResult result = Import(fault.text);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.out, "");
        for (const std::string& message : fault.messages) EXPECT_THAT(result.err, testing::HasSubstr(message));
        EXPECT_THAT(result.err, testing::StartsWith("varnel-admin: nothing was imported:\n"));
        EXPECT_THAT(result.err, testing::Not(testing::HasSubstr("geheim")));
        EXPECT_EQ(Sql("vrrepo.mdb", "SELECT sessionid FROM sessions"), "sessionid\r\n");
    }
}

TEST_F(ImportFaults, OneBadFileKeepsTheGoodOnesOut) {
    ASSERT_EQ(Admin({"new", "vrrepo.mdb"}).status, 0);
    WriteFile("good.toml", kHead + kSides + kTable + kColumns);
    WriteFile("bad.toml", "x = 1\n");
    EXPECT_EQ(Admin({"import", "good.toml", "bad.toml", "--repository", "vrrepo.mdb"}).status, 1);
    EXPECT_EQ(Admin({"show", "7", "--repository", "vrrepo.mdb"}).status, 1);
}

TEST_F(ImportFaults, AnExistingNumberIsReplacedOnlyOnRequest) {
    const std::string text = kHead + kSides + kTable + kColumns;
    ASSERT_EQ(Import(text).status, 0);
    const ProgramResult refused = Import(text);
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err, testing::HasSubstr("s.toml:1: session 7 exists already in vrrepo.mdb"));
    EXPECT_EQ(Import("[[session]]\nid = 7\nname = \"New\"\n" + kSides + kTable + kColumns, {"--replace"}).status, 0);
    EXPECT_EQ(Sql("vrrepo.mdb", "SELECT SessionName FROM sessions"), "SessionName\r\nNew\r\n");
    EXPECT_EQ(Sql("vrrepo.mdb", "SELECT SCName FROM SrcDCols WHERE sessionid=7"), "SCName\r\nA\r\n");
}

}  // namespace
}  // namespace varnel
