#include <gmock/gmock.h>

#include "platform/Error.h"
#include "providers/foxpro/Container.h"
#include "tests/providers_foxpro/IndexTest.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/ErrorOf.h"

namespace varnel::foxpro {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::vector<std::string> NamesOf(const TableFile& table) {
    std::vector<std::string> names;
    for (const ColumnInfo& column : table.Columns()) names.push_back(column.name);
    return names;
}

std::vector<ColumnDefinition> LongColumns() {
    return {{"transaction_number", "INTEGER", {}, false, false, false},
            {"transaction_date", "DATE", {}, false, false, false},
            {"Transaction_Text", "MEMO", {}, false, false, false},
            {"amount", "CURRENCY", {}, false, false, false}};
}

TEST(Container, ListsTheTablesAndColumnsOfASample) {
    const TempFolder folder;
    CopySamples(folder, kExpenses);
    EXPECT_THAT(CheckContainer(folder.File("EXPENSES.DBC")), IsEmpty());
    FoxProDatabase database(folder.File("expenses.dbc"));
    EXPECT_THAT(database.TableNames(),
                ElementsAre("employees", "expense_categories", "expense_details", "expense_reports"));
    for (const char* name : {"expense_details", "Expense Details", "EXPENSE DETAILS.DBF"}) {
        const auto table = database.OpenTable(name);
        EXPECT_THAT(NamesOf(*table), ElementsAre("expensedetailid", "expensereportid", "expensecategoryid",
                                                 "expenseitemamount", "expenseitemdescription", "expensedate"))
            << name;
        EXPECT_EQ(table->FindColumn("EXPENSECAT"), table->FindColumn("ExpenseCategoryId"));
    }
    EXPECT_THAT(ErrorOf([&] { database.OpenTable("nothing"); }), HasSubstr("does not exist"));
}

TEST(Container, KeepsItsIndexesWhileRowsAreAddedToItsTables) {
    const TempFolder folder;
    CopySamples(folder, kExpenses);
    FoxProDatabase database(folder.File("EXPENSES.DBC"));
    {
        const auto table = database.OpenTable("expense_categories");
        std::vector<Value> row(3);
        std::vector<bool> assigned = {true, true, false};
        row[1].SetText("Travel");
        for (int id = 6; id < 400; ++id) row[0].SetInteger(id), table->Append(row, assigned);
        row[0].SetInteger(77);
        EXPECT_THAT(ErrorOf([&] { table->Append(row, assigned); }), HasSubstr("Uniqueness of index PRIMARYKEY"));
        table->Commit();
    }
    EXPECT_THAT(CheckIndex(*DbfFile::Open(folder.File("expense categories.dbf"))), IsEmpty());
}

TEST(Container, MakesAndDropsTablesWithLongNames) {
    const TempFolder folder;
    CreateContainer(folder.File("shop.dbc"));
    EXPECT_THAT(CheckContainer(folder.File("shop.dbc")), IsEmpty());
    EXPECT_THAT(ErrorOf([&] { CreateContainer(folder.File("shop.dbc")); }), HasSubstr("already exists"));
    FoxProDatabase database(folder.File("shop.dbc"));
    EXPECT_THAT(database.TableNames(), IsEmpty());
    for (const char* name : {"Orders", "Order Lines", "third"}) database.CreateTable(name, LongColumns());
    EXPECT_THAT(CheckContainer(folder.File("shop.dbc")), IsEmpty());
    EXPECT_THAT(database.TableNames(), ElementsAre("Orders", "Order Lines", "third"));
    EXPECT_THAT(ErrorOf([&] { database.CreateTable("ORDERS", LongColumns()); }), HasSubstr("already exists"));
    {
        const auto table = database.OpenTable("order_lines");
        EXPECT_THAT(NamesOf(*table),
                    ElementsAre("transaction_number", "transaction_date", "transaction_text", "amount"));
        const auto file = DbfFile::Open(folder.File("Order Lines.dbf"));
        const auto hold = file->HoldForReading();
        EXPECT_EQ(file->Header().backLink, "shop.dbc");
        EXPECT_EQ(file->Header().fields[1].name, "TRANSACTI2");
        EXPECT_EQ(file->Header().fields[2].name, "TRANSACTI3");
    }
    database.DropTable("ORDERS");
    EXPECT_THAT(CheckContainer(folder.File("shop.dbc")), IsEmpty());
    EXPECT_THAT(database.TableNames(), ElementsAre("Order Lines", "third"));
    EXPECT_FALSE(std::filesystem::exists(folder.File("Orders.dbf")));
    EXPECT_FALSE(std::filesystem::exists(folder.File("Orders.fpt")));
    database.CreateTable("orders", LongColumns());
    EXPECT_THAT(CheckContainer(folder.File("shop.dbc")), IsEmpty());
    EXPECT_THAT(ErrorOf([&] { database.CreateTable(std::string(129, 'x'), LongColumns()); }), HasSubstr("128"));
    EXPECT_THAT(FoxProDatabase(folder.Path()).OpenTable("third")->Columns()[0].name, "transaction_number");
}

TEST(Container, LosesTheRelationsToADroppedTable) {
    const TempFolder folder;
    CopySamples(folder, kExpenses);
    FoxProDatabase(folder.File("EXPENSES.DBC")).DropTable("employees");
    EXPECT_THAT(CheckContainer(folder.File("EXPENSES.DBC")), IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(folder.File("employees.dbf")));
    EXPECT_FALSE(std::filesystem::exists(folder.File("employees.FPT")));
    EXPECT_THAT(FoxProDatabase(folder.File("EXPENSES.DBC")).TableNames(),
                ElementsAre("expense_categories", "expense_details", "expense_reports"));
}

TEST(Container, AndItsTablesAreOneAfterAKillAtAnyMoment) {
    for (const bool drops : {false, true}) {
        const TempFolder prepared;
        CreateContainer(prepared.File("shop.dbc"));
        if (drops) FoxProDatabase(prepared.File("shop.dbc")).CreateTable("orders", LongColumns());
        bool ended = false;
        for (int n = 1; !ended; ++n) {
            const TempFolder folder;
            std::filesystem::copy(prepared.Path(), folder.Path(), std::filesystem::copy_options::recursive);
            const ChildEnd child = InChild([&](const auto&) {
                EndAtMoment(n);
                FoxProDatabase database(folder.File("shop.dbc"));
                drops ? database.DropTable("orders") : database.CreateTable("orders", LongColumns());
            });
            ended = child.status == 0;
            FoxProDatabase database(folder.File("shop.dbc"));
            const bool isListed = !database.TableNames().empty();
            EXPECT_THAT(CheckContainer(folder.File("shop.dbc")), IsEmpty()) << "killed at step " << n;
            for (const char* name : {"orders.dbf", "orders.fpt"}) {
                EXPECT_EQ(std::filesystem::exists(folder.File(name)), isListed) << name << ", killed at step " << n;
            }
            EXPECT_TRUE(!ended || isListed != drops);
        }
    }
}

TEST(Container, ChecksNameWhatIsWrong) {
    struct Case {
        std::size_t record, at;
        std::string bytes, words;
    };
    const Case cases[] = {{7, 1, "\x63", "has the id 99"},
                          {7, 5, "\x63", "belongs to object 99"},
                          {6, 147, std::string("\xFF\xFF\0\0", 4), "are missing"},
                          {16, 0, "*", "15 columns"},
                          {8, 19, "other name", "is not in it"}};
    for (const Case& each : cases) {
        const TempFolder folder;
        CopySamples(folder, kExpenses);
        std::string bytes = ReadBytes(folder.File("EXPENSES.DBC"));
        bytes.replace(552 + (each.record - 1) * 165 + each.at, each.bytes.size(), each.bytes);
        WriteBytes(folder.File("EXPENSES.DBC"), bytes);
        std::string all;
        for (const std::string& fault : CheckContainer(folder.File("EXPENSES.DBC"))) all += fault + "\n";
        EXPECT_THAT(all, HasSubstr(each.words));
    }
}

}  // namespace
}  // namespace varnel::foxpro
