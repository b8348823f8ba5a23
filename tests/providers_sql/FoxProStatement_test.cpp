// Statements of the FoxPro dialect: how tables are named, and what CREATE TABLE asks of a store.
#include <gtest/gtest.h>

#include "platform/Error.h"
#include "providers/sql/FoxProStatements.h"
#include "tests/providers_sql/MemoryStore.h"
#include "tests/support/ErrorOf.h"

namespace varnel {
namespace {

using sql::CreateTableStatement;
using sql::DeleteStatement;
using sql::DropTableStatement;
using sql::InsertStatement;
using sql::ParseFoxPro;
using sql::SelectStatement;

TEST(FoxProStatements, TakeATableInEveryQuoteAndBare) {
    const struct {
        const char* statement;
        const char* table;
    } cases[] = {
        {"drop table [C:\\data\\Order Lines.dbf]", "C:\\data\\Order Lines.dbf"},
        {"DROP TABLE orders RECYCLE", "orders"},
        {"drop table Order Lines", "Order Lines"},
        {"delete from [C:\\data\\ORDERS.dbf]", "C:\\data\\ORDERS.dbf"},
        {"DELE FROM 'C:\\my data\\o.dbf' WHERE x=1", "C:\\my data\\o.dbf"},
        {"delete from `orders`", "orders"},
        {"delete from sales!orders", "orders"},
        {"delete from \\\\server\\share\\o WHERE x=1", "\\\\server\\share\\o"},
        {"Create Table C:\\data\\ORDERS.dbf (\rID Integer,\rName Character(10)\r)", "C:\\data\\ORDERS.dbf"},
        {"Create Table C:\\Program Files (x86)\\ORDERS.dbf (ID I)", "C:\\Program Files (x86)\\ORDERS.dbf"},
        {"Create Table [C:\\data\\Order Lines.dbf] (ID I)", "C:\\data\\Order Lines.dbf"},
        {"CREATE DBF orders(ID I)", "orders"},
        {"INSERT INTO Order Lines (ID) VALUES (1)", "Order Lines"},
        {"INSERT INTO \"Order Lines\" VALUES (1)", "Order Lines"},
        {"UPDATE Order Lines SET ID=1", "Order Lines"},
    };
    for (const auto& one : cases) {
        const sql::ParsedStatement parsed = ParseFoxPro(one.statement);
        const std::string table = std::visit([](const auto& body) { return body.table; }, parsed.body);
        EXPECT_EQ(table, one.table) << one.statement;
    }
}

TEST(FoxProStatements, FindTheLongestWayToReadABareName) {
    MemoryTestDatabase database(sql::FoxProDialect(true, false));
    for (const char* name : {"Order Lines", "Stock", "Stock on hand", "Where About"})
        database.Run("CREATE TABLE [" + std::string(name) + "] (ID I, Origin C(20))");
    database.Run("INSERT INTO Order Lines VALUES (1,'lines')");
    database.Run("INSERT INTO Stock VALUES (2,'stock')");
    database.Run("INSERT INTO Stock on hand VALUES (3,'hand')");
    database.Run("INSERT INTO Where About VALUES (4,'about')");
    const struct {
        const char* tail;
        const char* origin;
    } cases[] = {
        {"Order Lines", "lines"},
        {"Order Lines WHERE ID=1", "lines"},
        {"Order Lines ORDER BY ID", "lines"},
        {"Order Lines L WHERE L.ID=1", "lines"},
        {"Order Lines AS L WHERE L.ID=1", "lines"},
        {"Order Lines WHERE Order_Lines.ID=1", "lines"},
        {"[Order Lines] L WHERE L.ID=1", "lines"},
        {"\"Order Lines\" WHERE Order_Lines.ID=1", "lines"},
        {"Stock", "stock"},
        {"Stock S WHERE S.ID=2", "stock"},
        {"Stock WHERE Stock.ID=2", "stock"},
        {"data!Stock", "stock"},
        {"Stock on hand", "hand"},
        {"Stock on hand WHERE ID=3", "hand"},
        {"Where About WHERE ID=4", "about"},
    };
    for (const auto& one : cases)
        EXPECT_EQ(database.Ask("SELECT Origin FROM " + std::string(one.tail)), one.origin) << one.tail;
    EXPECT_NE(ErrorOf([&] { database.Ask("SELECT Origin FROM No Such"); }).find("No Such"), std::string::npos);
    EXPECT_NE(ErrorOf([&] { database.Ask("SELECT Origin FROM [Stock], [Order Lines]"); }).find("one table"),
              std::string::npos);
}

TEST(FoxProStatements, WriteEveryTypeAsItsLetter) {
    const struct {
        const char* written;
        const char* word;
        std::vector<int> arguments;
    } cases[] = {{"Character(10)", "C", {10}},
                 {"char (254)", "C", {254}},
                 {"C(1) NOCPTRANS", "C NOCPTRANS", {1}},
                 {"VARCHAR(20)", "V", {20}},
                 {"Varbinary(8)", "Q", {8}},
                 {"Numeric(10,2)", "N", {10, 2}},
                 {"NUM(5)", "N", {5}},
                 {"N", "N", {}},
                 {"Float(8,3)", "F", {8, 3}},
                 {"Integer", "I", {}},
                 {"int(4)", "I", {}},
                 {"Integer AUTOINC NEXTVALUE 7 STEP 2", "I AUTOINC", {7, 2}},
                 {"B", "B", {}},
                 {"Double(4)", "B", {4}},
                 {"Y", "Y", {}},
                 {"Currency NULL", "Y", {}},
                 {"Date", "D", {}},
                 {"DateTime", "T", {}},
                 {"Logical", "L", {}},
                 {"MEMO", "M", {}},
                 {"General", "G", {}},
                 {"Blob", "W", {}}};
    for (const auto& one : cases) {
        const sql::ParsedStatement parsed = ParseFoxPro("CREATE TABLE T (F " + std::string(one.written) + ")");
        const ColumnDefinition& column = std::get<CreateTableStatement>(parsed.body).columns.at(0);
        EXPECT_EQ(column.typeWord, one.word) << one.written;
        EXPECT_EQ(column.typeArguments, one.arguments) << one.written;
    }
    const auto nulls = ParseFoxPro("CREATE TABLE T (Order C(5) NOT NULL, Group I NULL)");
    const auto& columns = std::get<CreateTableStatement>(nulls.body).columns;
    EXPECT_TRUE(columns[0].notNull && !columns[1].notNull);
}

TEST(FoxProStatements, RefuseWhatTheyDoNotCarryOut) {
    const struct {
        const char* statement;
        const char* words;
    } cases[] = {
        {"CREATE TABLE T (F C)", "needs a width"},
        {"CREATE TABLE T (F C(255))", "Field width or number of decimal places is invalid"},
        {"CREATE TABLE T (F N(21,2))", "Field width or number of decimal places is invalid"},
        {"CREATE TABLE T (F N(3,3))", "Field width or number of decimal places is invalid"},
        {"CREATE TABLE T (F Text(10))", "'Text' is no type"},
        {"CREATE TABLE T (F )", "CREATE TABLE statement"},
        {"CREATE TABLE T\r)", "CREATE TABLE statement"},
        {"CREATE TABLE T (F I DEFAULT 5)", "'DEFAULT'"},
        {"CREATE TABLE T (F I CHECK F>0)", "'CHECK'"},
        {"CREATE TABLE T (F I REFERENCES U)", "'REFERENCES'"},
        {"CREATE TABLE T (F I, PRIMARY KEY F TAG F)", "'PRIMARY'"},
        {"CREATE TABLE T (F I PRIMARY KEY)", "'PRIMARY'"},
        {"CREATE TABLE T (F I UNIQUE)", "'UNIQUE'"},
        {"CREATE TABLE [T] FREE (F I)", "'FREE'"},
        {"CREATE TABLE [T] NAME Long (F I)", "'NAME'"},
        {"ALTER TABLE T ADD F I", "'ALTER'"},
        {"SET DELETED OFF", "'SET'"},
        {"SELECT F FROM", "FROM clause"},
        {"SELECT F FROM [T", "[ is not closed"},
    };
    for (const auto& one : cases) {
        const std::string text = ErrorOf([&] { ParseFoxPro(one.statement); });
        EXPECT_NE(text.find(one.words), std::string::npos) << one.statement << ": " << text;
    }
}

}  // namespace
}  // namespace varnel
