// What a column's type word says about the field that a record set shows.
#include <gtest/gtest.h>

#include "tests/providers_sql/SqlTestDatabase.h"
#include "tests/support/ErrorOf.h"

namespace varnel {
namespace {

constexpr std::int64_t kMemo = 536'870'910, kLongBinary = 1'073'741'823;

struct WordCase {
    const char* word;
    DataTypeEnum type;
    std::int64_t size;
    int precision = kNotStated;
    int scale = kNotStated;
};

constexpr WordCase kWords[] = {
    {"Long", adInteger, 4, 10},
    {"Integer", adInteger, 4, 10},
    {"Int", adInteger, 4, 10},
    {"int(11)", adInteger, 4, 10},
    {"Short", adSmallInt, 2, 5},
    {"SmallInt", adSmallInt, 2, 5},
    {"Byte", adUnsignedTinyInt, 1, 3},
    {"TinyInt", adUnsignedTinyInt, 1, 3},
    {"BigInt", adBigInt, 8, 19},
    {"Single", adSingle, 4, 7},
    {"real", adSingle, 4, 7},
    {"Double", adDouble, 8, 15},
    {"float", adDouble, 8, 15},
    {"Double Precision", adDouble, 8, 15},
    {"Currency", adCurrency, 8, 19},
    {"money", adCurrency, 8, 19},
    {"Y", adCurrency, 8, 19},
    {"yesno", adBoolean, 2},
    {"Boolean", adBoolean, 2},
    {"Bool", adBoolean, 2},
    {"bit", adBoolean, 2},
    {"Logical", adBoolean, 2},
    {"DateTime", adDate, 8},
    {"Date", adDate, 8},
    {"Timestamp", adDBTimeStamp, 16},
    {"Text(50)", adVarWChar, 50},
    {"Text", adLongVarWChar, kMemo},
    {"Varchar", adVarWChar, 255},
    {"Varchar2(20)", adVarWChar, 20},
    {"nvarchar(max)", adVarWChar, 255},
    {"Char(3)", adWChar, 3},
    {"Character(254)", adWChar, 254},
    {"nchar(2)", adWChar, 2},
    {"Memo", adLongVarWChar, kMemo},
    {"LongText", adLongVarWChar, kMemo},
    {"Note", adLongVarWChar, kMemo},
    {"CLOB", adLongVarWChar, kMemo},
    {"ntext", adLongVarWChar, kMemo},
    {"MediumText", adLongVarWChar, kMemo},
    {"Binary(16)", adVarBinary, 16},
    {"varbinary(8)", adVarBinary, 8},
    {"Raw(4)", adVarBinary, 4},
    {"OLEOBJECT", adLongVarBinary, kLongBinary},
    {"LongBinary", adLongVarBinary, kLongBinary},
    {"image", adLongVarBinary, kLongBinary},
    {"BLOB", adLongVarBinary, kLongBinary},
    {"General", adLongVarBinary, kLongBinary},
    {"Decimal(10,2)", adNumeric, 19, 10, 2},
    {"Numeric", adNumeric, 19, 18, 0},
    {"decimal(9)", adNumeric, 19, 9, 0},
    {"Number(12,3)", adNumeric, 19, 12, 3},
    {"Number", adVarNumeric, 38, 38},
    {"GUID", adGUID, 16},
    {"uniqueidentifier", adGUID, 16},
    {"Counter", adInteger, 4, 10},
};

TEST(DeclaredTypes, EveryWordOfANewTableIsItsTypeAgainWhenRead) {
    for (const WordCase& one : kWords) {
        SqlTestDatabase database;
        const std::string statement = std::string("Create Table [T] (\r [ID] ") + one.word + "\r)";
        ASSERT_EQ(ErrorOf([&] { database.Run(statement); }), "") << one.word;
        const auto rows = database.Session().Query("SELECT [ID] FROM [T]");
        const ColumnInfo& column = rows->Columns().at(0);
        EXPECT_EQ(column.name, "ID") << one.word;
        EXPECT_EQ(column.type, one.type) << one.word;
        EXPECT_EQ(column.definedSize, one.size) << one.word;
        EXPECT_EQ(column.precision, one.precision) << one.word;
        EXPECT_EQ(column.numericScale, one.scale) << one.word;
    }
}

TEST(DeclaredTypes, AnUnknownWordIsNamed) {
    SqlTestDatabase database;
    EXPECT_EQ(ErrorOf([&] { database.Run("CREATE TABLE T (A Long, B Frobnicate(5))"); }),
              "Syntax error in field definition: column 'B' has the unknown type 'FROBNICATE'.");
    EXPECT_EQ(ErrorOf([&] { database.Run("Create Table [T] (\r [A] ,\r [B] Long)"); }),
              "Syntax error in CREATE TABLE statement near ','.");
    EXPECT_EQ(ErrorOf([&] { database.Run("Create Table [T] \r)"); }),
              "Syntax error in CREATE TABLE statement near ')'.");
    EXPECT_EQ(ErrorOf([&] { database.Run("Create Table [T] ()"); }),
              "Syntax error in CREATE TABLE statement near ')'.");
}

TEST(DeclaredTypes, ForeignWordsFallBackToTheirAffinity) {
    const struct {
        const char* declaration;
        DataTypeEnum type;
    } cases[] = {{"", adVariant},
                 {"UNSIGNED BIG INT", adBigInt},
                 {"REAL", adDouble},
                 {"JSONTEXT", adLongVarWChar},
                 {"XBLOB", adLongVarBinary},
                 {"uuid", adVariant},
                 {"varchar(20)", adVarWChar},
                 {"INTEGER", adInteger},
                 {"Long  Raw", adLongVarBinary},
                 {"decimal( 10 , 2 )", adNumeric}};
    for (const auto& one : cases) {
        SqlTestDatabase database;
        database.RunRaw(std::string("CREATE TABLE T (V ") + one.declaration + ")");
        EXPECT_EQ(database.Session().Query("SELECT V FROM T")->Columns()[0].type, one.type) << one.declaration;
    }
}

TEST(DeclaredTypes, ComputedColumnsHaveTheTypeOfTheirExpression) {
    SqlTestDatabase database;
    database.Run("CREATE TABLE T (A Long, C Currency, D DateTime, S Text(9), M Memo)");
    const struct {
        const char* expression;
        DataTypeEnum type;
    } cases[] = {{"count(*)", adInteger},     {"A+1", adInteger},        {"A/2", adDouble},
                 {"C*2", adCurrency},         {"D+1", adDate},           {"D-D", adDouble},
                 {"S & A", adVarWChar},       {"M & S", adLongVarWChar}, {"A>1", adBoolean},
                 {"sum(A)", adDouble},        {"sum(C)", adCurrency},    {"max(D)", adDate},
                 {"IIf(A=1,D,Null)", adDate}, {"Len(S)", adInteger},     {"'x'", adVarWChar},
                 {"5000000000", adBigInt},    {"Not A", adBoolean}};
    for (const auto& one : cases)
        EXPECT_EQ(database.Session().Query(std::string("SELECT ") + one.expression + " FROM T")->Columns()[0].type,
                  one.type)
            << one.expression;
}

}  // namespace
}  // namespace varnel
