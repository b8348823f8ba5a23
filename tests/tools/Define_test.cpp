// The session files that "define" writes: names and types for each kind of target, and what cannot be carried.
#include <gmock/gmock.h>

#include "tests/tools/AdminTest.h"

namespace varnel {
namespace {

using testing::HasSubstr;

struct DefineCase {
    const char *kind, *target;
    const char* tables;   ///< the names given to both tables
    const char* columns;  ///< the lines of the first one's columns
};

class Define : public AdminTest {
protected:
    Define() {
        Sql("a.db",
            "CREATE TABLE [Order Details] ([Unit Price] MONEY, [Order] VARCHAR(300), Ratio SINGLE, Big BIGINT, Gift "
            "GUID, "
            "Amount DECIMAL(35,4), [Description 1] VARCHAR(20), [Description 2] VARCHAR(20), Made TIMESTAMP, Photo "
            "LONGBINARY)");
        Sql("a.db", "CREATE TABLE [order.details] (A LONG)");
    }
    ProgramResult Run(const std::string& kind, const std::string& target,
                      const std::vector<std::string>& more = {}) const {
        std::vector<std::string> arguments{
            "define", "--source-kind", "ACCESS", "--source", "Provider=SQLite;Data Source=a.db", "--target-kind",
            kind,     "--target",      target};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return Admin(arguments);
    }
};

class DefineForKind : public Define, public testing::WithParamInterface<DefineCase> {};

/// The lines between "columns = [" and "]".
std::string FirstColumns(const std::string& file) {
    const std::string head = "columns = [\n";
    const std::size_t begin = file.find(head) + head.size();
    return file.substr(begin, file.find("\n]", begin) + 1 - begin);
}

std::string TargetNames(const std::string& file) {
    std::string names;
    for (std::size_t at = file.find("\ntarget = "); at != std::string::npos; at = file.find("\ntarget = ", at + 1))
        names += file.substr(at + 10, file.find('\n', at + 1) - at - 10) + " ";
    return names;
}

TEST_P(DefineForKind, NamesAndTypesSuitTheTarget) {
    const ProgramResult defined = Run(GetParam().kind, GetParam().target);
    ASSERT_EQ(defined.status, 0) << defined.err;
    EXPECT_EQ(TargetNames(defined.out), GetParam().tables);
    EXPECT_EQ(FirstColumns(defined.out), GetParam().columns);
    WriteFile("d.toml", defined.out);
    Output({"new", "vrrepo.mdb", "--sqlite"});
    Output({"import", "d.toml", "--repository", "vrrepo.mdb"});
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, DefineForKind,
    testing::Values(
        DefineCase{"ACCESS", "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=b.mdb",
                   "\"Order Details\" \"order_details\" ",
                   R"toml(    "[Unit Price] Currency -> [Unit Price] Currency",
    "Order VarWchar(300) -> Order Memo",
    "Ratio Single -> Ratio Single",
    {source = "Big", type = "BigInt", width = 19, scale = 0, source_type = "BIGINT", target = "Big", target_type = "Decimal(19,0)", target_width = 19, target_scale = 0},
    "Gift GUID -> Gift Guid",
    "Amount Numeric(35,4) -> Amount Double",  # of a number of more than 15 digits the rest is rounded away, or its row refused
    "[Description 1] VarWchar(20) -> [Description 1] Text",
    "[Description 2] VarWchar(20) -> [Description 2] Text",
    "Made DBTimeStamp -> Made DateTime",
    "Photo LongVarBinary -> Photo Binary",
)toml"},
        DefineCase{"FOXPRO DIR", "Provider=VFPOLEDB;Data Source=fox", "\"Order_Details\" \"order_details2\" ",
                   R"toml(    "[Unit Price] Currency -> Unit_Price Currency",
    "Order VarWchar(300) -> Order_ Memo",
    "Ratio Single -> Ratio Double",
    "Big BigInt -> Big Numeric(20)",
    "Gift GUID -> Gift Character(38)",
    "Amount Numeric(35,4) -> Amount Numeric(20,4)",  # rows with numbers of more digits are refused
    "[Description 1] VarWchar(20) -> Descriptio Character",
    "[Description 2] VarWchar(20) -> Descripti2 Character",
    "Made DBTimeStamp -> Made DateTime",
    "Photo LongVarBinary -> Photo General",
)toml"},
        DefineCase{
            "ORACLE", "Provider=OraOLEDB.Oracle;Data Source=x", "\"ORDER_DETAILS\" \"ORDER_DETAILS2\" ",
            R"toml(    {source = "Unit Price", type = "Currency", width = 19, scale = 0, source_type = "MONEY", target = "UNIT_PRICE", target_type = "Number(19,4)", target_width = 19, target_scale = 0},
    "Order VarWchar(300) -> ORDER_ Varchar2",
    "Ratio Single -> RATIO Number",
    {source = "Big", type = "BigInt", width = 19, scale = 0, source_type = "BIGINT", target = "BIG", target_type = "Number(19)", target_width = 19, target_scale = 0},
    "Gift GUID -> GIFT Varchar2(38)",
    {source = "Amount", type = "Numeric", width = 35, scale = 4, source_type = "DECIMAL(35,4)", target = "AMOUNT", target_type = "Number(35,4)", target_width = 35, target_scale = 4},
    "[Description 1] VarWchar(20) -> DESCRIPTION_1 Varchar2",
    "[Description 2] VarWchar(20) -> DESCRIPTION_2 Varchar2",
    "Made DBTimeStamp -> MADE Date",
    "Photo LongVarBinary -> PHOTO BLOB",
)toml"},
        DefineCase{"MySQL", "Driver={MySQL ODBC 8.0 Driver};Server=x", "\"Order Details\" \"order_details\" ",
                   R"toml(    "[Unit Price] Currency -> [Unit Price] Decimal(19,4)",
    "Order VarWchar(300) -> Order Varchar",
    "Ratio Single -> Ratio Double",
    "Big BigInt -> Big BigInt",
    "Gift GUID -> Gift Varchar(38)",
    "Amount Numeric(35,4) -> Amount Decimal",
    "[Description 1] VarWchar(20) -> [Description 1] Varchar",
    "[Description 2] VarWchar(20) -> [Description 2] Varchar",
    "Made DBTimeStamp -> Made DateTime",  # the time of day is lost: beside long or binary columns MySQL gets dates only
    "Photo LongVarBinary -> Photo LongBlob",
)toml"},
        DefineCase{"MSSQL", "Provider=SQLOLEDB;Data Source=x", "\"Order Details\" \"order.details\" ",
                   R"toml(    "[Unit Price] Currency -> [Unit Price] money",
    "Order VarWchar(300) -> Order nvarchar",
    "Ratio Single -> Ratio real",
    "Big BigInt -> Big bigint",
    "Gift GUID -> Gift uniqueidentifier",
    {source = "Amount", type = "Numeric", width = 35, scale = 4, source_type = "NUMERIC", target = "Amount", target_type = "decimal(35,4)", target_width = 35, target_scale = 4},
    "[Description 1] VarWchar(20) -> [Description 1] nvarchar",
    "[Description 2] VarWchar(20) -> [Description 2] nvarchar",
    "Made DBTimeStamp -> Made datetime",
    "Photo LongVarBinary -> Photo image",
)toml"},
        DefineCase{"TEXT", "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=out;Extended Properties=text",
                   "\"out/Order Details.csv\" \"out/order.details.csv\" ",
                   R"toml(    "[Unit Price] Currency",
    "Order VarWchar(300)",
    "Ratio Single",
    "Big BigInt",
    "Gift GUID",
    "Amount Numeric(35,4)",
    "[Description 1] VarWchar(20)",
    "[Description 2] VarWchar(20)",
    "Made DBTimeStamp",
    "Photo LongVarBinary",
)toml"}),
    [](const auto& row) {
        std::string name = row.param.kind;
        std::erase(name, ' ');
        return name;
    });

TEST_F(Define, ChoosesTablesAndKeepsFiles) {
    const std::string target = "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=b.mdb";
    EXPECT_THAT(Run("ACCESS", target, {"--table", "*Details", "--table", "no*"}).err,
                HasSubstr("the source has no table that matches no*"));
    const ProgramResult one = Run("ACCESS", target, {"--table", "Order D*", "--id", "7", "--output", "d.toml"});
    EXPECT_EQ(one.status, 0) << one.err;
    const std::string file = Bytes("d.toml");
    EXPECT_THAT(file, HasSubstr("id = 7\n"));
    EXPECT_THAT(file, testing::Not(HasSubstr("order.details")));
    EXPECT_THAT(file, HasSubstr("Data Source=b.mdb;Mode=ReadWriteCreate"));
    EXPECT_EQ(Run("ACCESS", target, {"--output", "d.toml"}).status, 1);
    EXPECT_EQ(Bytes("d.toml"), file);
    EXPECT_EQ(Run("EXCEL", target).status, 2);
}

}  // namespace
}  // namespace varnel
