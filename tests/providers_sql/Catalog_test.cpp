// What files say of their tables and columns: real Access and FoxPro files, SQLite, folders of text files.
#include <gmock/gmock.h>

#include "tests/providers_sql/SqlTestDatabase.h"
#include "tests/support/CatalogText.h"
#include "tests/support/ErrorOf.h"

namespace varnel {
namespace {

const std::string kData = VARNEL_TESTS_FOLDER "/data/";

struct CatalogCase {
    const char* name;
    std::string connection;
    const char* tables;  ///< a part of the list
    const char* table;   ///< the one described, with the beginning of what is said of it
    const char* columns;
};

class FileCatalog : public testing::TestWithParam<CatalogCase> {};

TEST_P(FileCatalog, ListsTablesAndDescribesColumns) {
    const auto session = OpenSession(GetParam().connection);
    EXPECT_THAT(TablesText(*session), testing::HasSubstr(GetParam().tables));
    EXPECT_THAT(ColumnsText(*session, "", GetParam().table), testing::StartsWith(GetParam().columns));
    EXPECT_NE(ErrorOf([&] { session->Columns("", "no such table"); }), "");
}

INSTANTIATE_TEST_SUITE_P(
    Samples, FileCatalog,
    testing::Values(
        CatalogCase{"Access",
                    "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + kData + "access/indexTestV2000.mdb;Mode=Read",
                    "Table1; Table2; Table3", "Table1", "id Integer(10) Long key required\n"},
        CatalogCase{"AccessQueries",
                    "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + kData + "access/queryTestV2000.mdb;Mode=Read",
                    "Table3; view:SelectQuery", "Table1", ""},
        CatalogCase{"FoxProContainer", "Provider=VFPOLEDB;Data Source=" + kData + "foxpro/EXPENSES.DBC",
                    "employees; expense_categories; ", "expense details",
                    "expensedetailid Integer(10) Integer key required\nexpensereportid Integer(10) Integer required\n"},
        CatalogCase{"FoxProFolder", "Provider=VFPOLEDB;Data Source=" + kData + "foxpro", "suppliers", "suppliers",
                    "supplierid Integer(10) Integer assigned required\ncompanynam Char(40) Character required\n"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(FileCatalogMade, TellsAnAccessFilesTypesKeysAndQueries) {
    const TempFolder folder;
    const auto session =
        OpenSession("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + folder.File("a.mdb") + ";Mode=ReadWriteCreate");
    session->Execute(
        "create table [Order Lines] (a long not null, b text(20), c decimal(12,4), d yesno, e memo, f currency, "
        "g counter, h guid, i short, j byte, k single, l double, m datetime, n longbinary, o text, p varbinary(30), "
        "q integer, r smallint, s boolean, t oleobject, primary key (a, b))");
    EXPECT_EQ(TablesText(*session), "Order Lines");
    EXPECT_EQ(ColumnsText(*session, "", "order lines"),
              "a Integer(10) Long key required\nb VarWchar(20) Text key required\nc Numeric(12,4) Decimal\n"
              "d Boolean(2) YesNo\ne LongVarWChar(536870910) Memo\nf Currency(19) Currency\n"
              "g Integer(10) Counter assigned\nh GUID(16) Guid\ni SmallInt(5) Short\nj UnsignedTinyInt(3) Byte\n"
              "k Single(7) Single\nl Double(15) Double\nm Date(8) DateTime\nn LongVarBinary(1073741823) OleObject\n"
              "o LongVarWChar(536870910) Memo\np VarBinary(30) Binary\nq Integer(10) Long\nr SmallInt(5) Short\n"
              "s Boolean(2) YesNo\nt LongVarBinary(1073741823) OleObject\n");
    const std::vector<TableColumn> described = session->Columns("", "order lines");
    const auto rows = session->Query("SELECT * FROM [Order Lines]");
    ASSERT_EQ(rows->Columns().size(), described.size());
    for (std::size_t k = 0; k < described.size(); ++k) {
        EXPECT_EQ(rows->Columns()[k].type, described[k].info.type) << described[k].info.name;
        EXPECT_EQ(rows->Columns()[k].definedSize, described[k].info.definedSize) << described[k].info.name;
    }
}

TEST(FileCatalogMade, TellsASqliteFilesWordsKeysAndViews) {
    const TempFolder folder;
    const auto session = OpenSession("Provider=SQLite;Data Source=" + folder.File("a.db") + ";Mode=ReadWriteCreate");
    session->Execute("create table T (id counter primary key, name varchar(20) not null, price money, x real)");
    EXPECT_EQ(TablesText(*session), "T");
    EXPECT_EQ(ColumnsText(*session, "", "t"),
              "id Integer(10) INTEGER key assigned\nname VarWchar(20) VARCHAR(20) required\n"
              "price Currency(19) MONEY\nx Single(7) SINGLE\n");
}

TEST(FileCatalogMade, TellsATextFoldersFilesAndTheirColumns) {
    const TempFolder folder;
    folder.Write("b.csv", "ID,Day,Name\r\n1,1/2/2026,x\r\n");
    folder.Write("a.txt", "1\t2.5\r\n");
    folder.Write("Schema.ini",
                 "[a.txt]\r\nFormat=TabDelimited\r\nColNameHeader=False\r\nCol1=N Long\r\nCol2=P Single\r\n");
    const auto session = OpenSession("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + folder.Path() +
                                     ";Extended Properties=\"text;HDR=Yes\"");
    EXPECT_EQ(TablesText(*session), "a.txt; b.csv");
    EXPECT_EQ(ColumnsText(*session, "", "a.txt"), "N Integer(10) Long\nP Single(7) Single\n");
    EXPECT_EQ(ColumnsText(*session, "", "b.csv"),
              "ID Integer(10) Long\nDay Date(8) DateTime\nName VarWchar(255) Text\n");
}

}  // namespace
}  // namespace varnel
