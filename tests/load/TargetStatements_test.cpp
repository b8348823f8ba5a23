#include "load/TargetStatements.h"

#include <gtest/gtest.h>

#include "load/ColumnSize.h"
#include "repository/model/SessionModel.h"

namespace varnel {
namespace {

/// A session of one table with one column, changed by each case.
class TargetStatementsTest : public testing::Test {
protected:
    void SetUp() override {
        SourceTables.Resize(1);
        DestTables.Resize(1);
        SourceTables(0).TableExists = true;
        Column("Name", "VarWchar", 50);
    }
    void TearDown() override { ResetSessionModel(); }

    void Target(const std::string& kind, const std::string& table, const std::string& type = "") {
        SessionDef.TargetDBName = kind;
        SessionDef.TargetType = type;
        SessionDef.DBFPath = "C:\\data\\";
        DestTables(0).TableName = table;
        DestTables(0).OwnerName = "dbo";
    }
    ColumnEntry& Column(const std::string& name, const std::string& type, int width, int scale = 0,
                        const std::string& declared = "") {
        Columns.Resize(1);
        ColumnEntry& column = Columns(0);
        column = {};
        column.SSelected = 1;
        column.SCName = column.DCName = name;
        column.SOrgDtype = type;
        column.SDtype = declared;
        column.SWidth = column.DWidth = width;
        column.SScale = column.DScale = static_cast<std::int16_t>(scale);
        return column;
    }
    /// The one column definition of the CREATE TABLE statement.
    static std::string Definition() {
        const std::string statement = CreateStatement(0);
        const auto first = statement.find('\r') + 1;
        return statement.substr(first, statement.rfind('\r') - first);
    }
};

TEST_F(TargetStatementsTest, NameTheTableInEachKindsWay) {
    struct Case {
        const char *kind, *type, *table, *drop, *create;
    };
    const Case cases[] = {
        {"FOXPRO", "DIR", "Order Lines", "[C:\\data\\Order Lines.dbf]", "[C:\\data\\Order Lines.dbf] ("},
        {"FOXPRO", "DIR", "ORDERS", "[C:\\data\\ORDERS.dbf]", "C:\\data\\ORDERS.dbf ("},
        {"FOXPRO", "DBC", "Order Lines", "[Order Lines]", "[Order Lines] ("},
        {"FOXPRO", "DBC", "ORDERS", "[ORDERS]", "ORDERS("},
        {"FOXPRO", "", "ORDERS", "[ORDERS]", "ORDERS("},
        {"ACCESS", "", "T", "[T]", "[T] ("},
        {"ORACLE", "", "T", "T", "T("},
        {"MSSQL", "", "T", "[dbo].[T]", "[dbo].[T] ("},
        {"MySQL", "", "T", "`T`", "`T` ("},
        {"other", "", "T", "[T]", "T("},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.kind) + " " + c.type + " " + c.table);
        Target(c.kind, c.table, c.type);
        EXPECT_EQ(DropStatement(0), std::string("drop table ") + c.drop);
        EXPECT_EQ(DeleteStatement(0), std::string("delete from ") + c.drop);
        EXPECT_TRUE(CreateStatement(0).starts_with(std::string("Create Table ") + c.create + "\r"))
            << CreateStatement(0);
    }
}

TEST_F(TargetStatementsTest, DefineAColumnFromTheSource) {
    struct Case {
        const char *kind, *type;
        int width, scale;
        const char* expected;
    };
    const Case cases[] = {
        {"ACCESS", "VarWchar", 50, 0, " [c] Text(50)"},
        {"ACCESS", "VarWchar", 255, 0, " [c] Text(255)"},
        {"ACCESS", "VarWchar", 300, 0, " [c] Text"},
        {"ACCESS", "Boolean", 2, 0, " [c]  yesno"},
        {"ACCESS", "LongVarBinary", 9, 0, " [c]  oleobject"},
        {"FOXPRO", "Currency", 8, 0, "c Y"},
        {"FOXPRO", "Double", 8, 0, "c B"},
        {"FOXPRO", "VarNumeric", 8, 0, "c B"},
        {"FOXPRO", "Varchar", 254, 0, "c Character(254)"},
        {"FOXPRO", "Varchar", 255, 0, "c MEMO"},
        {"FOXPRO", "Numeric", 10, 2, "c Numeric(10,2)"},
        {"MSSQL", "Numeric", 10, 2, "[c] decimal"},
        {"MSSQL", "VarWchar", 20, 0, "[c] nvarchar(20)"},
        {"MySQL", "Numeric", 70, 2, "`c` Decimal"},
        {"MySQL", "Numeric", 12, 25, "`c` Decimal(12,20)"},
        {"MySQL", "Integer", 11, 0, "`c` Int(11)"},
        {"MySQL", "Integer", -1, 0, "`c` Int"},
        {"MySQL", "SmallInt", 5, 0, "`c` SmallInt"},
        {"MySQL", "LongVarChar", 5, 0, "`c` MediumText"},
        {"ORACLE", "Varchar", 30, 0, "c Varchar2(30)"},
        {"ORACLE", "DBTimeStamp", 16, 0, "c Date"},
        {"ORACLE", "Decimal", 16, 0, "c "},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.kind) + " " + c.type + " " + std::to_string(c.width));
        Target(c.kind, "T");
        Column("c", c.type, c.width, c.scale);
        EXPECT_EQ(Definition(), c.expected);
    }
}

TEST_F(TargetStatementsTest, SizeAnOracleNumberByItsDeclaredSourceType) {
    Target("ORACLE", "T");
    Column("c", "Numeric", 10, 2, "NUMBER");
    EXPECT_EQ(Definition(), "c Number(10,2)");
    Column("c", "Numeric", 10, 2, " Integer ");
    EXPECT_EQ(Definition(), "c Number");
    Column("c", "VarNumeric", 38, 0, "NUMBER");
    EXPECT_EQ(Definition(), "c Number(38,0)");
    SessionDef.SourceDBName = "ORACLE";
    EXPECT_EQ(Definition(), "c Number");
}

TEST_F(TargetStatementsTest, DefineAColumnByTheStoredDefinitionWhenTheTableIsNew) {
    SourceTables(0).TableExists = false;
    struct Case {
        const char *kind, *type, *expected;
    };
    const Case cases[] = {{"ACCESS", "Binary", " [New]  OLEOBJECT"},
                          {"ACCESS", "text", " [New] text(40)"},
                          {"FOXPRO", "Currency", "New Y"},
                          {"FOXPRO", "Character", "New Character(40)"},
                          {"MySQL", "decimal", "`New` decimal(40,7)"},
                          {"ORACLE", " varchar2", "New  varchar2(40)"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.kind);
        Target(c.kind, "T");
        ColumnEntry& column = Column("Old", "Integer", 4);
        column.DCName = "New";
        column.DDType = c.type;
        column.DWidth = 40;
        column.DScale = 7;
        EXPECT_EQ(Definition(), c.expected);
    }
}

TEST_F(TargetStatementsTest, SeparateLinesByCarriageReturnsAndLoseTheParenthesisWithoutColumns) {
    Target("ACCESS", "T");
    EXPECT_EQ(CreateStatement(0), "Create Table [T] (\r [Name] Text(50)\r)");
    Columns(0).SSelected = 2;
    EXPECT_EQ(CreateStatement(0), "Create Table [T] \r)");
}

TEST_F(TargetStatementsTest, RefuseAnIndexBeyondTheModel) {
    EXPECT_THROW(CreateStatement(1), Error);
    EXPECT_THROW(DropStatement(-1), Error);
    EXPECT_THROW(ColumnSizeText(1, "N"), Error);
}

}  // namespace
}  // namespace varnel
