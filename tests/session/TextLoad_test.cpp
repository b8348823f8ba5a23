// Text files loaded into databases.
#include "tests/session/TextSession.h"

namespace varnel {
namespace {

constexpr const char* kOrders =
    "\xEF\xBB\xBFOrder No,Name,Zip,Price,Weight,Sold,Note\r\n"
    "1,\"O\"\"Brien, \xC5\x81\",00501,$12.50,1.5,11/18/2026 16:05:09,\"first line\r\nsecond line\"\r\n"
    "2,,,,,,\r\n"
    "3,\"\",10001,($0.0499),-2E3,1/2/2026,\r\n"
    "4,left out,9,$1,1,1/3/2026,x\r\n";

const std::vector<NativeColumn> kColumns = {
    {"no", CellForm::Number},     {"name", CellForm::Text},   {"zip", CellForm::Text}, {"price", CellForm::Number},
    {"weight", CellForm::Double}, {"sold", CellForm::Moment}, {"note", CellForm::Text}};
const Rows kExpected = {
    {"1", "O\"Brien, Ł", "00501", "12.5", "1.5", "2026-11-18 16:05:09", "first line\r\nsecond line"},
    {"2", std::nullopt, std::nullopt, std::nullopt, std::nullopt, std::nullopt, std::nullopt},
    {"3", "", "10001", "-0.0499", "-2000", "2026-01-02 00:00:00", std::nullopt}};

class TextLoadTest : public TextSessionTest {
protected:
    TextLoadTest() {
        session_.sourceKind = "TEXT";
        session_.sourceConnection = TextConnection(Path("in"));
        session_.tables = {{"orders.csv",
                            "orders",
                            {{"Order No", "Integer", 4, 0, "no", "Long"},
                             {"Name", "VarWchar", 60, 0, "name", "Text"},
                             {"Zip", "VarWchar", 60, 0, "zip", "Text"},
                             {"Price", "Currency", 19, 4, "price", "Currency"},
                             {"Weight", "Double", 8, 0, "weight", "Double"},
                             {"Sold", "Date", 8, 0, "sold", "DateTime"},
                             {"Note", "VarWchar", 60, 0, "note", "Text"}},
                            false,
                            "DELETE",
                            "[Order No] < 4",
                            "CREATE"}};
    }
};

TEST_F(TextLoadTest, IntoSqlite) {
    PutFile("in/orders.csv", kOrders);
    EXPECT_EQ(Run(), 0) << FirstFailure();
    EXPECT_EQ(FirstDifference(kExpected, NativeSqlite(Path("target.db")).Read("orders", kColumns, "no"), kColumns), "");
    EXPECT_EQ(InLog(" 3 Rows Loaded\r\n"), 1) << log_;
    EXPECT_EQ(Content("in/orders.csv"), kOrders);
    EXPECT_EQ(Names("in"), "orders.csv ");
}

TEST_F(TextLoadTest, IntoMySql) {
    PutFile("in/orders.csv", kOrders);
    session_.targetKind = "MySQL";
    session_.targetConnection = Server().ConnectionString();
    ServerTable("orders");
    for (TestColumn& column : session_.tables[0].columns) {
        if (column.targetType == "Long") column.targetType = "Int";
        if (column.targetType == "Text") column.targetType = "Varchar";
        if (column.targetType == "Currency") column.targetType = "Decimal";
    }
    EXPECT_EQ(Run(), 0) << FirstFailure();
    NativeMySql target(Server());
    EXPECT_EQ(FirstDifference(kExpected, target.Read("orders", kColumns, "no"), kColumns), "");
}

TEST_F(TextLoadTest, ASchemaRulesTheFileAndItsBadValuesAreNeverNulls) {
    PutFile("in/Schema.ini",
            "[orders.csv]\r\nFormat=Delimited(;)\r\nColNameHeader=False\r\nCharacterSet=1252\r\nTextDelimiter=\"'\"\r\n"
            "Col1=\"Order No\" Long\r\nCol2=Name Text Width 8\r\n");
    PutFile("in/orders.csv", "1;'caf\xE9;'\r\nx2;'bad'\r\n3;'far too long'\r\n");
    NativeSqlite target(Path("target.db"));
    target.Run({"create table orders (no Long, name Text(60))"});
    TestTable& table = session_.tables[0];
    table.columns.resize(2);
    table.exists = true;
    table.option = "append";
    table.firstTime = table.where = "";
    EXPECT_EQ(Run(), 1);
    EXPECT_EQ(target.Ask("select group_concat(no || '=' || name) from orders"), "1=café;");
    EXPECT_EQ(InLog("Error Loading Row\r\n"), 2) << log_;
    EXPECT_EQ(InLog("Type mismatch"), 1) << log_;
    EXPECT_EQ(InLog(" 1 Rows Loaded\r\n"), 1);
    EXPECT_EQ(InLog("Folder Polling"), 0);
}

}  // namespace
}  // namespace varnel
