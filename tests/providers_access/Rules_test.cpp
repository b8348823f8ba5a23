// What a table and a database refuse, in which words, and that a refusal leaves no trace.
#include <filesystem>

#include "providers/access/DefinitionWriter.h"
#include "providers/access/TableDefinitionParser.h"
#include "tests/providers_access/WriteTest.h"

namespace varnel::access {
namespace {

/// The row in whose column, by position, value stands.
RowId RowWith(TableFile& table, std::size_t column, std::int64_t value) {
    const std::size_t wanted[] = {column};
    Value found;
    for (const auto rows = table.Rows(wanted); rows->Next({&found, 1});)
        if (found == Int(value)) return rows->Current();
    ADD_FAILURE() << "no row with " << value;
    return 0;
}

struct Refusal {
    const char* name;
    std::vector<Value> row;
    const char* words;
};

TEST_F(WriteTest, ARefusedRowIsNamedAndLeavesNoTrace) {
    auto table = Make("Orders",
                      "Id LONG PRIMARY KEY, Name TEXT(5) NOT NULL, Code TEXT(10) UNIQUE, Price DECIMAL(5,2), U "
                      "BYTE, X BINARY(2), M MEMO, D DATETIME");
    const std::vector<Value> good = {Int(1), Txt("a"), Txt("K1"), {}, {}, {}, Txt(std::string(9000, 'm')), {}};
    Add(*table, good);
    const auto with = [&](std::size_t column, Value value) {
        std::vector<Value> row = good;
        row[0] = Int(2), row[2] = Txt("K2");
        row[column] = std::move(value);
        return row;
    };
    const std::vector<Refusal> refusals = {
        {"primary key", with(0, Int(1)),
         "The changes to table 'Orders' were not made because they would create duplicate values in the index "
         "'PrimaryKey' (Id = '1')."},
        {"unique, other case", with(2, Txt("k1")),
         "The changes to table 'Orders' were not made because they would create duplicate values in the index 'Code' "
         "(Code = 'k1')."},
        {"null key", with(0, {}),
         "Index or primary key cannot contain a Null value: column 'Id' of table 'Orders', index 'PrimaryKey'."},
        {"required", with(1, {}), "You must enter a value in the 'Orders.Name' field."},
        {"text", with(1, Txt("abcdeé")),
         "Column 'Name' cannot hold the value 'abcdeé': the column takes 5 characters, the value has 6."},
        {"digits", with(3, Value::OfDecimal("1000")),
         "Column 'Price' cannot hold the value '1000': it is out of the range of 5 digits."},
        {"places", with(3, Value::OfDecimal("1.005")),
         "Column 'Price' cannot hold the value '1.005': it has more than 2 decimal places."},
        {"byte", with(4, Int(256)), "Column 'U' cannot hold the value '256': it is out of range."},
        {"binary", with(5, Value::OfBytes("abc")),
         "Column 'X' cannot hold the value '616263': the column takes 2 bytes, the value has 3."},
        {"date", with(7, Value::OfDateTime({-660'000, 0})),
         "Column 'D' cannot hold the value '12/22/92': dates reach from the year 100 to 9999."},
    };
    const std::string before = Rows("Orders");
    const RowId row = RowWith(*table, 0, 1);
    for (const Refusal& refusal : refusals) {
        const std::string words = ErrorOf([&] { Add(*table, refusal.row); });
        EXPECT_EQ(words, refusal.words) << refusal.name;
        EXPECT_EQ(Rows("Orders"), before) << refusal.name;
    }
    EXPECT_EQ(ErrorOf([&] { Set(*table, row, {{1, Value()}}); }), refusals[3].words);
    EXPECT_EQ(ErrorOf([&] { Set(*table, row + 1, {{1, Txt("b")}}); }), "Record is deleted: a row of table 'Orders'.");
    EXPECT_EQ(ErrorOf([&] { Set(*table, row, {{0, Int(1)}, {2, Txt("k1")}}); }), "");
    table->Commit();
    Verify();
}

TEST_F(WriteTest, AutonumbersGoOnWhereTheyWere) {
    auto table = Make("t", "Id COUNTER, Seq TEXT(5)");
    auto stepped = Make("s", "Id COUNTER(100,5), Seq TEXT(5)");
    Add(*table, {Value(), Txt("a")});
    Add(*table, {Int(7), Txt("b")});
    Add(*table, {Int(3), Txt("c")});
    EXPECT_NE(ErrorOf([&] { Add(*table, {Value(), Txt("too long")}); }), "");
    Add(*table, {Value(), Txt("d")});
    for (int k = 0; k < 2; ++k) Add(*stepped, {Value(), Txt("x")});
    table->Commit();
    table.reset(), stepped.reset();
    Reopen();
    Add(*database_->OpenTable("t"), {Value(), Txt("lost")});  // not committed
    table = database_->OpenTable("t");
    Add(*table, {Value(), Txt("e")});
    EXPECT_EQ(Rows("t"), "1|a\n7|b\n3|c\n8|d\n9|e\n");
    EXPECT_EQ(Rows("s"), "100|x\n105|x\n");
}

TEST_F(WriteTest, EnforcedRelationshipsHold) {
    OpenSample("indexTestV2000.mdb");
    const auto children = database_->OpenTable("Table1"), first = database_->OpenTable("Table2"),
               second = database_->OpenTable("Table3");
    const std::string missing =
        "You cannot add or change a record because a related record is required in table 'Table2' (relationship "
        "'Table2Table1' of table 'Table1').";
    EXPECT_EQ(ErrorOf([&] { Add(*children, {Int(9), Int(99), Int(10), Txt("x"), Int(0)}); }), missing);
    EXPECT_EQ(ErrorOf([&] { Set(*children, RowWith(*children, 0, 3), {{1, Int(99)}}); }), missing);
    const std::string referred =
        "The record of table 'Table2' cannot be deleted or changed because table 'Table1' includes related records "
        "(relationship 'Table2Table1').";
    EXPECT_EQ(ErrorOf([&] { first->Delete(RowWith(*first, 0, 2)); }), referred);
    EXPECT_EQ(ErrorOf([&] { first->DeleteAll(); }), referred);
    EXPECT_NE(ErrorOf([&] { Set(*second, RowWith(*second, 0, 10), {{0, Int(20)}}); }), "");
    EXPECT_EQ(Rows("Table1"), "0|0|10|baz0|0\n1|1|11|baz11|0\n2|1|11|baz11-2|0\n3|2|13|baz13|0\n");
    // What breaks nothing is done.
    Set(*second, RowWith(*second, 0, 12), {{0, Int(20)}, {1, Txt("moved")}});
    Add(*children, {Int(9), Int(0), Value(), Txt("no parent"), Int(0)});
    Set(*children, RowWith(*children, 0, 3), {{1, Int(1)}, {2, Int(20)}});
    first->Delete(RowWith(*first, 0, 2));
    EXPECT_EQ(ErrorOf([&] { database_->DropTable("Table2"); }),
              "You cannot delete the table 'Table2': it participates in one or more relationships ('.rC').");
    children->Commit();
    Verify();
    EXPECT_EQ(Rows("Table2"), "0|foo0\n1|foo1\n");
}

TEST_F(WriteTest, AnIndexOfAnotherLanguageIsNeverWrittenInto) {
    auto table = Make("t", "Name TEXT(20) UNIQUE, Outcome TEXT(20), Id LONG");
    Add(*table, {Txt("a"), Txt("b"), Int(1)});
    table->Commit();
    table.reset();
    {
        const auto hold = file_->HoldForWriting();
        Schema schema(file_, 2, 1252);
        TableDefinition definition = *schema.DefinitionOf("t");
        definition.columns[0].sortOrder.language = 0x040A;
        Step step(*file_);
        WriteDefinition(*file_, definition);
        step.Keep();
        file_->Commit();
    }
    Reopen();
    table = database_->OpenTable("t");
    const RowId row = RowWith(*table, 2, 1);
    for (const std::string& words : {ErrorOf([&] {
                                         Add(*table, {Txt("c"), {}, {}});
                                     }),
                                     ErrorOf([&] { table->Delete(row); }), ErrorOf([&] {
                                         Set(*table, row, {{0, Txt("x")}});
                                     })})
        EXPECT_EQ(words.substr(0, 62), "Index 'Name' of table 't' sorts texts by the rules of language") << words;
    Set(*table, row, {{1, Txt("succeeded")}});
    EXPECT_EQ(Rows("t"), "a|succeeded|1\n");
}

TEST_F(WriteTest, TablesThatCannotBeMade) {
    Make("Taken", "A LONG");
    struct Case {
        const char *name, *columns, *words;
    };
    const std::string before = OutputOf("mdb-export " + path_ + " MSysObjects");
    for (const Case& c : std::vector<Case>{
             {"tAKEN", "A LONG", "Table 'tAKEN' already exists."},
             {"t", "A LONG, B HUGE", "Syntax error in field definition: 'HUGE' is no type of an Access column ('B')."},
             {"t", "A TEXT(256)", "Size of field 'A' is wrong: TEXT takes 1 to 255, not 256."},
             {"t", "A DECIMAL(29,0)", "Size of field 'A' is wrong: DECIMAL takes 1 to 28, not 29."},
             {"t", "A OLEOBJECT PRIMARY KEY", "Field 'A' cannot be used in an index or primary key."},
             {"t", "A COUNTER, B COUNTER", "Resultant table not allowed to have more than one AutoNumber field."},
             {"a.b", "A LONG",
              "'a.b' is not a valid name for a table: it needs 1 to 64 characters, not a blank in front, and none of . "
              "! ` [ ]."}})
        EXPECT_EQ(ErrorOf([&] { database_->CreateTable(c.name, Columns(c.columns)); }), c.words);
    EXPECT_EQ(OutputOf("mdb-export " + path_ + " MSysObjects"), before);
    EXPECT_EQ(ErrorOf([&] { database_->DropTable("MSysACEs"); }), "The system table 'MSysACEs' cannot be deleted.");
    Verify();
}

TEST_F(WriteTest, ADroppedTableGivesItsPagesBack) {
    std::uintmax_t size = 0;
    for (int round = 0; round < 3; ++round) {
        auto table = Make("t", "Id LONG PRIMARY KEY, A TEXT(255), M MEMO, O OLEOBJECT");
        for (int k = 0; k < 200; ++k)
            Add(*table, {Int(k), Txt(std::string(250, 'a')), Txt(std::string(static_cast<std::size_t>(k * 9), 'm')),
                         Value::OfBytes(std::string(static_cast<std::size_t>(k * 50), 'o'))});
        if (round == 1) table->DeleteAll();
        table->Commit();
        Verify();
        table.reset();
        EXPECT_EQ(OutputOf("mdb-tables -1 " + path_), "t\n");
        database_->DropTable("t");
        Verify();
        EXPECT_EQ(OutputOf("mdb-tables -1 " + path_), "");
        if (round == 0) size = std::filesystem::file_size(path_);
        EXPECT_EQ(std::filesystem::file_size(path_), size);
    }
}

}  // namespace
}  // namespace varnel::access
