// What a column's type word says about the field that a record set shows.
#include <gtest/gtest.h>

#include "tests/providers_sql/SqlTestDatabase.h"
#include "tests/support/ErrorOf.h"

namespace varnel {
namespace {

constexpr std::int64_t kMemo = 536'870'910, kLongBinary = 1'073'741'823;

struct TypeCase {
    DataTypeEnum type;
    std::int64_t size;
    int precision, scale;
    std::vector<const char*> words;
};

TEST(DeclaredTypes, EveryWordOfANewTableIsItsTypeAgainWhenRead) {
    const TypeCase cases[] = {
        {adInteger, 4, 10, kNotStated, {"Long", "Integer", "Int", "int(11)", "Counter"}},
        {adSmallInt, 2, 5, kNotStated, {"Short", "SmallInt"}},
        {adUnsignedTinyInt, 1, 3, kNotStated, {"Byte", "TinyInt"}},
        {adBigInt, 8, 19, kNotStated, {"BigInt"}},
        {adSingle, 4, 7, kNotStated, {"Single", "real"}},
        {adDouble, 8, 15, kNotStated, {"Double", "float", "Double Precision"}},
        {adCurrency, 8, 19, kNotStated, {"Currency", "money", "Y"}},
        {adBoolean, 2, kNotStated, kNotStated, {"yesno", "Boolean", "Bool", "bit", "Logical"}},
        {adDate, 8, kNotStated, kNotStated, {"DateTime", "Date"}},
        {adDBTimeStamp, 16, kNotStated, kNotStated, {"Timestamp"}},
        {adVarWChar, 50, kNotStated, kNotStated, {"Text(50)"}},
        {adLongVarWChar,
         kMemo,
         kNotStated,
         kNotStated,
         {"Text", "Memo", "LongText", "Note", "CLOB", "ntext", "MediumText"}},
        {adVarWChar, 255, kNotStated, kNotStated, {"Varchar", "nvarchar(max)"}},
        {adVarWChar, 20, kNotStated, kNotStated, {"Varchar2(20)"}},
        {adWChar, 3, kNotStated, kNotStated, {"Char(3)"}},
        {adWChar, 254, kNotStated, kNotStated, {"Character(254)"}},
        {adWChar, 2, kNotStated, kNotStated, {"nchar(2)"}},
        {adVarBinary, 16, kNotStated, kNotStated, {"Binary(16)"}},
        {adVarBinary, 8, kNotStated, kNotStated, {"varbinary(8)"}},
        {adVarBinary, 4, kNotStated, kNotStated, {"Raw(4)"}},
        {adLongVarBinary, kLongBinary, kNotStated, kNotStated, {"OLEOBJECT", "LongBinary", "image", "BLOB", "General"}},
        {adNumeric, 19, 10, 2, {"Decimal(10,2)"}},
        {adNumeric, 19, 18, 0, {"Numeric"}},
        {adNumeric, 19, 9, 0, {"decimal(9)"}},
        {adNumeric, 19, 12, 3, {"Number(12,3)"}},
        {adVarNumeric, 38, 38, kNotStated, {"Number"}},
        {adGUID, 16, kNotStated, kNotStated, {"GUID", "uniqueidentifier"}}};
    for (const TypeCase& one : cases)
        for (const std::string word : one.words) {
            SqlTestDatabase database;
            ASSERT_EQ(ErrorOf([&] { database.Run("Create Table [T] (\r [ID] " + word + "\r)"); }), "") << word;
            const auto rows = database.Session().Query("SELECT [ID] FROM [T]");
            const ColumnInfo& column = rows->Columns().at(0);
            EXPECT_EQ(column.name, "ID") << word;
            EXPECT_EQ(column.type, one.type) << word;
            EXPECT_EQ(column.definedSize, one.size) << word;
            EXPECT_EQ(column.precision, one.precision) << word;
            EXPECT_EQ(column.numericScale, one.scale) << word;
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
