// Sessions with FoxPro tables on one side or both: folders and containers, under the paths that Windows wrote.
#include <filesystem>

#include "ado/Ado.h"
#include "providers/foxpro/Container.h"
#include "tests/session/SessionTest.h"

namespace varnel {
namespace {

namespace fs = std::filesystem;

constexpr const char* kOrders = "SELECT ID,NAME,CODE,MADE,BORN,PRICE,RATE,AMOUNT,FLAG,NOTE,PIC FROM ";
/// The table that MakeOrders makes, as another table shows it whose texts fill their fields.
constexpr const char* kOrdersPadded =
    "1|Smith     |A-1   |11/18/2026 4:23:05 PM|1/2/1970|10.5|0.125|-1234.56|True|first\r\nnote|0001FF\n"
    "2|\xC3\x84rger     |NULL|NULL|NULL|NULL|NULL|NULL|False|NULL|NULL\n"
    "3|smith     |NULL|NULL|NULL|NULL|NULL|0|NULL||NULL";

/// drives/C/data of the installation holds the source, drives/C/out the target.
class FoxProSession : public SessionTest {
protected:
    FoxProSession() {
        fs::create_directories(Path("drives/C/data"));
        fs::create_directories(Path("drives/C/out"));
        session_.sourceKind = session_.targetKind = "FOXPRO";
        session_.sourceType = session_.targetType = "DIR";
        session_.sourceFolder = "C:\\data\\";
        session_.targetFolder = "C:\\out\\";
        session_.sourceConnection = "Provider=VFPOLEDB.1;Data Source=C:\\data\\;Collating Sequence=MACHINE";
        session_.targetConnection = "Provider=VFPOLEDB.1;Data Source=C:\\out\\;Collating Sequence=MACHINE";
    }

    /// The connection string of a folder or container below drives/C.
    std::string Local(const std::string& name) const {
        return "Provider=VFPOLEDB;Data Source=" + Path("drives/C/" + name);
    }
    std::string Target(const std::string& query) const { return AskRows(Local("out"), query); }

    void MakeOrders(const std::string& place, const std::string& table) const {
        const std::string named = "[" + table + "]";
        ExecuteOn(Local(place), "CREATE TABLE " + named + " (ID I, NAME C(10), CODE V(6), MADE T, BORN D, PRICE Y, " +
                                    "RATE B, AMOUNT N(12,2), FLAG L, NOTE M, PIC G)");
        ExecuteOn(Local(place), "INSERT INTO " + named + " (ID) VALUES (9)");
        ExecuteOn(Local(place), "DELETE FROM " + named + " WHERE ID=9");
        AppendFirst(place, named);
        ExecuteOn(Local(place), "INSERT INTO " + named + " (ID,NAME,FLAG) VALUES (2,'\xC3\x84rger',.F.)");
        ExecuteOn(Local(place), "INSERT INTO " + named + " (ID,NAME,AMOUNT,BORN,NOTE) VALUES (3,'smith',0,{},'')");
    }
    void AppendFirst(const std::string& place, const std::string& named) const {
        ExecuteOn(Local(place), "INSERT INTO " + named + " VALUES (1,'Smith','A-1',{^2026-11-18 16:23:05}," +
                                    "{^1970-01-02},$10.5,0.125,-1234.56,.T.,'first\r\nnote',NULL)");
        Command picture;
        picture.SetActiveConnection(Local(place));
        picture.CommandText = "UPDATE " + named + " SET PIC=? WHERE ID=1";
        picture.Parameters.Append({"", adParamInput, adLongVarBinary, 3, 0, 0, Value::OfBytes({"\0\1\xFF", 3})});
        picture.Execute();
        picture.Commit();
    }

    static TestTable Orders(const std::string& source, const std::string& target) {
        return {source,
                target,
                {{"ID", "Integer", 4},
                 {"NAME", "Char", 10},
                 {"CODE", "Varchar", 6},
                 {"MADE", "DBTimeStamp", 16},
                 {"BORN", "DBDate", 6},
                 {"PRICE", "Currency", 8},
                 {"RATE", "Double", 8},
                 {"AMOUNT", "Numeric", 12, 2},
                 {"FLAG", "Boolean", 2},
                 {"NOTE", "LongVarChar", 2147483647},
                 {"PIC", "LongVarBinary", 2147483647}}};
    }
};

TEST_F(FoxProSession, CopiesEveryTypeFromFolderToFolder) {
    MakeOrders("data", "Order Lines");
    for (const char* table : {"Copied Lines", "Plain"})
        ExecuteOn(Local("out"), "CREATE TABLE [" + std::string(table) + "] (OLD M)");
    session_.tables = {Orders("Order Lines", "Copied Lines"), Orders("ORDER LINES", "PLAIN")};
    EXPECT_EQ(Run(), 0) << log_ << errorLog_;
    for (const char* table : {"[Copied Lines]", "Copied Lines", "PLAIN", "plain.dbf"})
        EXPECT_EQ(Target(std::string(kOrders) + table), kOrdersPadded) << table;
    EXPECT_EQ(InLog(" 3 Rows Loaded"), 2);
}

TEST_F(FoxProSession, ReadsAndWritesContainers) {
    foxpro::CreateContainer(Path("drives/C/data/sales.dbc"));
    foxpro::CreateContainer(Path("drives/C/out/stock.dbc"));
    session_.sourceType = session_.targetType = "DBC";
    session_.sourceConnection = "Provider=VFPOLEDB;Data Source=C:\\DATA\\Sales.dbc";
    session_.targetConnection =
        "Provider=MSDASQL.1;Extended Properties=\"Driver={Microsoft Visual FoxPro Driver};SourceType=DBC;"
        "SourceDB=C:\\out\\stock.dbc;Exclusive=No;NULL=YES\"";
    MakeOrders("data/sales.dbc", "Order Lines");
    for (const char* table : {"Copied Lines", "plain"})
        ExecuteOn(Local("out/stock.dbc"), "CREATE TABLE [" + std::string(table) + "] (OLD M)");
    session_.tables = {Orders("Order Lines", "Copied Lines"), Orders("order_lines", "plain")};
    EXPECT_EQ(Run(), 0) << log_ << errorLog_;
    for (const char* table : {"[Copied Lines]", "plain", "stock!plain"})
        EXPECT_EQ(AskRows(Local("out/stock.dbc"), std::string(kOrders) + table), kOrdersPadded) << table;
    EXPECT_EQ(foxpro::CheckContainer(Path("drives/C/out/stock.dbc")), std::vector<std::string>{});
}

TEST_F(FoxProSession, AppendsDeletesAndChoosesRows) {
    MakeOrders("data", "ORDERS");
    for (const char* table : {"APPENDED", "EMPTIED", "BORN"}) MakeOrders("out", table);
    session_.tables = {Orders("ORDERS", "APPENDED"), Orders("ORDERS", "EMPTIED"), Orders("ORDERS", "BORN")};
    session_.tables[0].option = "APPEND";
    session_.tables[0].where = "UPPER(NAME)='SMITH' AND !EMPTY(BORN)";
    session_.tables[1].option = "DELETE";
    session_.tables[1].where = "FLAG=.F. .OR. NAME == 'smith'";
    session_.tables[2].option = "DELETE";
    session_.tables[2].where = "BORN>{^1970-01-01} AND 'mit'$NAME";
    EXPECT_EQ(Run(), 0) << log_ << errorLog_;
    EXPECT_EQ(Target("SELECT ID FROM APPENDED"), "1\n2\n3\n1");
    EXPECT_EQ(Target("SELECT ID FROM EMPTIED"), "2\n3");
    EXPECT_EQ(Target("SELECT ID FROM BORN"), "1");
    EXPECT_EQ(InLog("Existing Rows deleted succesfully"), 2);
}

TEST_F(FoxProSession, AppendsATableToItself) {
    MakeOrders("data", "ORDERS");
    session_.targetFolder = session_.sourceFolder;
    session_.targetConnection = session_.sourceConnection;
    session_.tables = {Orders("ORDERS", "ORDERS")};
    session_.tables[0].option = "APPEND";
    EXPECT_EQ(Run(), 0) << log_ << errorLog_;
    EXPECT_EQ(AskRows(Local("data"), "SELECT ID FROM ORDERS"), "1\n2\n3\n1\n2\n3");
}

TEST_F(FoxProSession, GoesThroughAnotherEngineAndBack) {
    MakeOrders("data", "ORDERS");
    NativeSqlite database(Path("target.db"));
    database.Run({"create table Orders (old int)"});
    session_.targetKind = "ACCESS";
    session_.targetConnection = SqliteConnection(Path("target.db"));
    session_.tables = {Orders("ORDERS", "Orders")};
    ASSERT_EQ(Run(), 0) << log_ << errorLog_;

    ExecuteOn(Local("out"), "CREATE TABLE BACK (OLD M)");
    TestSession back = session_;
    back.id = 2;
    std::swap(back.sourceKind, back.targetKind);
    back.sourceConnection = session_.targetConnection;
    back.targetConnection =
        "Driver={Microsoft Visual FoxPro Driver};SourceType=DBF;SourceDB=C:\\out;Exclusive=No;NULL=YES;DELETED=YES";
    back.tables = {Orders("Orders", "BACK")};
    session_ = back;
    ASSERT_EQ(Run(), 0) << log_ << errorLog_;
    EXPECT_EQ(Target(std::string(kOrders) + "BACK"), kOrdersPadded);
}

TEST_F(FoxProSession, KeepsAFailureToItsRow) {
    MakeOrders("data", "ORDERS");
    ExecuteOn(Local("out"), "CREATE TABLE NARROW (ID I, NAME C(5), AMOUNT N(4,2))");
    session_.tables = {{"ORDERS", "NARROW", {{"ID", "Integer", 4}, {"AMOUNT", "Numeric", 12, 2}}},
                       {"MISSING", "NARROW", {{"ID", "Integer", 4}}}};
    for (TestTable& table : session_.tables) table.option = "APPEND";
    EXPECT_EQ(Run(), 1);
    EXPECT_EQ(Target("SELECT ID FROM NARROW"), "2\n3");
    EXPECT_EQ(InLog("Error Loading Row\r\nField 'AMOUNT' of 'NARROW.dbf': Numeric overflow."), 1) << log_;
    EXPECT_EQ(InLog("File 'C:\\data\\MISSING' does not exist."), 2) << log_;  // the count and the rows
}

TEST_F(FoxProSession, WritesATextFile) {
    MakeOrders("data", "Order Lines");
    session_.targetKind = "TEXT";
    session_.targetConnection =
        "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + folder_.Path() + ";Extended Properties=\"text;HDR=Yes\"";
    session_.tables = {Orders("Order Lines", Path("lines.txt"))};
    session_.tables[0].columns.resize(9);  // without the memo and the picture
    session_.tables[0].where = "ID<3";
    EXPECT_EQ(Run(), 0) << log_ << errorLog_;
    EXPECT_EQ(Content("lines.txt"),
              "ID,NAME,CODE,MADE,BORN,PRICE,RATE,AMOUNT,FLAG\r\n"
              "1,\"Smith\",\"A-1\",11/18/2026 4:23:05 PM,1/2/1970,10.5,0.125,-1234.56,True\r\n"
              "2,\"\xC4rger\",,,,,,,False\r\n");
}

}  // namespace
}  // namespace varnel
