// A whole Access file: its tables, links and queries by name, and what damage to it does.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "providers/access/BlankDatabase.h"
#include "providers/access/SavedQuery.h"
#include "tests/providers_access/MemoryPageFile.h"
#include "tests/providers_access/SampleFiles.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/TempFolder.h"

namespace varnel::access {
namespace {

std::unique_ptr<AccessDatabase> Sample(const std::string& name) {
    return DatabaseOf(BytesOfFile(SamplePath(name).value()), name);
}

TEST(AccessDatabases, ACursorKeepsTheRowsOfItsOpening) {
    const TempFolder folder;
    CreateBlankDatabase(folder.File("new.mdb"));
    AccessDatabase database(folder.File("new.mdb"), {});
    database.CreateTable("t", std::vector<ColumnDefinition>{{"id", "LONG", {}}, {"note", "MEMO", {}}});
    const auto table = database.OpenTable("t");
    const std::vector<bool> both = {true, true};
    // Memos of all three storages.
    const auto note = [](int id) {
        return Value::OfText(std::string(id % 3 == 0   ? 10
                                         : id % 3 == 1 ? 900
                                                       : 9000,
                                         static_cast<char>('a' + id % 26)));
    };
    const auto append = [&](int id) {
        const Value row[] = {Value::OfInteger(id), note(id)};
        table->Append(row, both);
    };
    for (int id = 0; id < 300; ++id) append(id);
    const auto rows = table->Rows(std::vector<std::size_t>{0, 1});
    std::vector<Value> row(2);
    for (int id = 0; id < 300; ++id) {
        ASSERT_TRUE(rows->Next(row)) << id;
        EXPECT_EQ(row, (std::vector<Value>{Value::OfInteger(id), note(id)})) << Shown({row});
        if (id == 5) {
            append(1000);
            const Value other[] = {Value(), Value::OfText("changed")};
            table->Update(rows->Current(), other, {false, true});
            EXPECT_EQ(table->CountRows(), 301);
        }
        if (id == 100) table->DeleteAll();
        if (id == 200) append(2000), table->Commit();
    }
    EXPECT_FALSE(rows->Next(row));
    EXPECT_EQ(table->CountRows(), 1);
}

TEST(AccessDatabases, WhatIsNoTableIsRefusedInWords) {
    const auto linked = Sample("linkerTestV2007.accdb");
    EXPECT_THAT(ErrorOf([&] { linked->OpenTable("table2"); }),
                testing::ContainsRegex("'Table2' is linked to '.*linkeeTest.accdb'"));
    EXPECT_EQ(ErrorOf([&] { linked->OpenTable("Table9"); }),
              "The Jet database engine cannot find the input table or query 'Table9'.");
    EXPECT_NE(ErrorOf([&] { linked->RequireWritable(); }), "");
}

TEST(AccessDatabases, OtherQueriesThanPlainSelectsAreRefusedByTheirKind) {
    const auto database = Sample("queryTestV2000.mdb");
    const std::pair<std::string, std::string> queries[] = {{"SelectQuery", "select over several tables"},
                                                           {"UpdateQuery", "update"},
                                                           {"AppendQuery", "append"},
                                                           {"DeleteQuery", "delete"},
                                                           {"MakeTableQuery", "make-table"},
                                                           {"CrosstabQuery", "crosstab"},
                                                           {"UnionQuery", "union"},
                                                           {"PassthroughQuery", "pass-through"},
                                                           {"DataDefinitionQuery", "data definition"}};
    for (const auto& [name, kind] : queries) {
        EXPECT_EQ(ErrorOf([&, query = name] { database->ViewText(query); }),
                  "The query '" + name + "' is of kind " + kind + " and cannot be read.");
    }
    EXPECT_EQ(database->ViewText("Table1"), std::nullopt);
    EXPECT_EQ(database->ViewText("nothing"), std::nullopt);
}

/// Parts as attribute, flag, name1, name2, expression, order.
TEST(AccessDatabases, APlainSelectIsWrittenOutOfItsParts) {
    EXPECT_EQ(QueryText("q", {{255, 0, "", "", "", ""},
                              {6, 0, "", "", "Products.UnitPrice", "2"},
                              {6, 0, "Dear", "", "Products.ProductName", "1"},
                              {11, 0, "D", "", "Products.UnitPrice", "1"},
                              {11, 0, "", "", "ProductName", "2"},
                              {5, 0, "Products", "", "", "1"},
                              {8, 0, "", "", "(Discontinued)=0", "1"},
                              {3, 0x10, "10", "", "", "1"},
                              {1, 1, "", "", "", "1"}}),
              "SELECT TOP 10 Products.ProductName AS [Dear], Products.UnitPrice FROM [Products] "
              "WHERE (Discontinued)=0 ORDER BY Products.UnitPrice DESC, ProductName");
    EXPECT_EQ(QueryText("q", {{5, 0, "t", "x", "", ""}, {3, 2, "", "", "", ""}, {6, 0, "", "", "x.*", ""}}),
              "SELECT DISTINCT * FROM [t] AS [x]");
    for (const QueryPart& part : {QueryPart{2, 0, "p", "", "", ""}, QueryPart{9, 0, "", "", "a", ""},
                                  QueryPart{5, 0, "u", "", "", ""}, QueryPart{3, 0x30, "10", "", "", ""},
                                  QueryPart{4, 0, "c:\\x.mdb", "", "", ""}, QueryPart{1, 42, "", "", "", ""}})
        EXPECT_THAT(ErrorOf([&] {
                        QueryText("q", {{5, 0, "t", "", "", ""}, part});
                    }),
                    testing::StartsWith("The query 'q' is of kind "))
            << part.attribute;
}

/// Reads everything; every failure must be an Error or a failed cell.
std::size_t ReadAll(std::vector<std::uint8_t> bytes) {
    std::size_t rows = 0;
    std::vector<std::string> names;
    std::unique_ptr<AccessDatabase> database;
    ErrorOf([&] { database = DatabaseOf(std::move(bytes)); });
    if (!database) return 0;
    ErrorOf([&] { names = database->TableNames(); });
    names.emplace_back("MSysObjects");
    for (const std::string& name : names) {
        ErrorOf([&] { rows += ReadTable(*database, name).size(); });
        ErrorOf([&] { database->OpenTable(name)->CountRows(); });
    }
    return rows;
}

TEST(AccessDatabases, DamageIsAnErrorOfWhatItHits) {
    const std::vector<std::uint8_t> sound = BytesOfFile(SamplePath("overflowTestV2000.mdb").value());
    const std::size_t allRows = ReadAll(sound);
    for (std::size_t pages = 0; pages < sound.size() / 4096; ++pages)
        EXPECT_LE(ReadAll({sound.begin(), sound.begin() + static_cast<std::ptrdiff_t>(pages * 4096 + 100)}), allRows);
    std::mt19937 random(1);
    for (int run = 0; run < 300; ++run) {
        std::vector<std::uint8_t> bytes = sound;
        for (int k = 0; k < 40; ++k) bytes[random() % bytes.size()] = static_cast<std::uint8_t>(random());
        // The definitions and maps of a small file are hit by aim, not by chance.
        for (const std::size_t page : {2U, 6U, 14U, 24U, 25U, 27U}) bytes[page * 4096 + random() % 300] ^= 0xFF;
        ReadAll(std::move(bytes));
    }
}

TEST(AccessDatabases, ATornDataPageFailsItsTableAndNoOther) {
    std::vector<std::uint8_t> bytes = BytesOfFile(SamplePath("indexTestV2000.mdb").value());
    const auto whole = DatabaseOf(bytes);
    const auto reader = whole->OpenTable("Table1")->Rows({});
    ASSERT_TRUE(reader->Next({}));
    const std::size_t page = UnpackRowPointer(static_cast<std::uint32_t>(reader->Current())).page;
    bytes[page * 4096 + 15] = 0;  // the first row begins inside the slots
    const auto torn = DatabaseOf(bytes, "torn.mdb");
    EXPECT_THAT(ErrorOf([&] { ReadTable(*torn, "Table1"); }),
                testing::AllOf(testing::StartsWith("The table 'Table1' cannot be read: torn.mdb, page "),
                               testing::HasSubstr("slots")));
    EXPECT_NE(ErrorOf([&] { torn->OpenTable("Table1")->CountRows(); }), "");
    EXPECT_EQ(ReadTable(*torn, "Table2").size(), 3U);
}

}  // namespace
}  // namespace varnel::access
