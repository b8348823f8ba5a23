// Tables made and changed by us, read back by us and by other programs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "providers/foxpro/FoxProDatabase.h"
#include "providers/foxpro/Verify.h"
#include "tests/providers_foxpro/FoxProTest.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/TempFolder.h"

namespace varnel::foxpro {
namespace {

Value Moment(int year, int month, int day, int hour = 0, int minute = 0, int second = 0, int micros = 0) {
    return Value::OfDateTime(FromCivil({year, month, day, hour, minute, second, micros}));
}

class FoxProWriting : public testing::Test {
protected:
    std::unique_ptr<TableFile> Make(const std::string& name, const std::vector<ColumnDefinition>& columns) {
        database_.CreateTable(name, columns);
        return database_.OpenTable(name);
    }
    std::string Path(const std::string& name) const { return folder_.File(name); }
    /// Every program at hand reads the file as we do.
    void ExpectReadBy(const std::vector<std::string>& readers, const std::string& name) {
        const Lines ours = RowsOfFile(Path(name));
        EXPECT_FALSE(ours.empty());
        for (const std::string& reader : readers) {
            if (!HasReader(reader)) continue;
            EXPECT_EQ(Difference(ours, RowsByReader(reader, Path(name))), "") << reader;
        }
    }

    TempFolder folder_;
    FoxProDatabase database_{folder_.Path()};
};

const Value kNull;

TEST_F(FoxProWriting, EveryTypeComesBackAsItWasGiven) {
    const auto table = Make("all", {Column("name", "CHARACTER", {12}), Column("amount", "NUMERIC", {12, 3}),
                                    Column("rate", "FLOAT", {20, 10}), Column("count", "INTEGER"),
                                    Column("ratio", "DOUBLE"), Column("price", "Y"), Column("day", "DATE"),
                                    Column("moment", "DATETIME"), Column("flag", "LOGICAL"), Column("note", "MEMO")});
    Add(*table, {Value::OfText("Grün €"), Value::OfDecimal("-1234567.125"), Value::OfDecimal("0.0000000001"),
                 Value::OfInteger(-2147483648LL), Value::OfDouble(-1.5e-3), Value::OfCurrency(-922337203685477580),
                 Moment(1, 1, 1), Moment(9999, 12, 31, 23, 59, 59), Value::OfBoolean(true),
                 Value::OfText("first\r\nsecond – line")});
    Add(*table, {Value::OfText("  blanks"), Value::OfDecimal("99999999.999"), Value::OfDecimal("-.5"),
                 Value::OfInteger(2147483647), Value::OfDouble(0.1), Value::OfCurrency(1), Moment(2000, 2, 29),
                 Moment(1899, 12, 30, 0, 0, 1), Value::OfBoolean(false), Value::OfText(std::string(100'000, 'm'))});
    Add(*table, {kNull, kNull, kNull, kNull, kNull, kNull, kNull, kNull, kNull, kNull});
    table->Commit();
    const Lines rows = RowsOf(*table);
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0],
              "Grün €|-1234567.125|0.0000000001|-2147483648|-0.0015|-92233720368547.758|0001-01-01|9999-12-31 "
              "23:59:59|T|first\\r\\nsecond – line");
    EXPECT_EQ(rows[1].substr(0, 92),
              "  blanks|99999999.999|-0.5|2147483647|0.1|0.0001|2000-02-29|1899-12-30 00:00:01|F|mmmmmmmmmm");
    EXPECT_EQ(rows[2], "|||||||||");
    ExpectReadBy({"dbf"}, "all.dbf");
    EXPECT_EQ(database_.TableNames(), std::vector<std::string>{"all"});
}

TEST_F(FoxProWriting, VaryingTextsAndBytesKeepTheirLength) {
    const auto table = Make("v", {Column("v", "VARCHAR", {5}), Column("n", "INTEGER"), Column("q", "VARBINARY", {4}),
                                  Column("w", "BLOB"), Column("g", "GENERAL"), Column("b", "CHARACTER NOCPTRANS", {3}),
                                  Column("id", "INTEGER AUTOINC", {7, 3})});
    const std::vector<bool> noId = {true, true, true, true, true, true, false};
    const auto add = [&](std::vector<Value> values) {
        values.resize(7);
        table->Append(values, noId);
    };
    add({Value::OfText("12345"), Value::OfInteger(1), Value::OfBytes({"\0\1\2\3", 4}), Value::OfBytes("blob"),
         Value::OfBytes("object"), Value::OfBytes({"\0\xFF ", 3})});
    add({Value::OfText("a "), kNull, Value::OfBytes(""), kNull, Value::OfBytes(""), kNull});
    add({Value::OfText(""), Value::OfInteger(0), Value::OfBytes("1"), Value::OfBytes(""), kNull,
         Value::OfBytes("abc")});
    add({kNull, kNull, kNull, kNull, kNull, kNull});
    table->Commit();
    EXPECT_EQ(RowsOf(*table),
              (Lines{"12345|1|00010203|626c6f62|6f626a656374|00ff20|7", "a||||||10", "|0|31|||616263|13", "||||||16"}));
    EXPECT_EQ(RowsOfFile(Path("v.dbf")), RowsOf(*table));
    const auto rows = table->Rows(std::vector<std::size_t>{0});
    std::vector<Value> row(1);
    EXPECT_TRUE(rows->Next(row) && rows->Next(row));
    EXPECT_EQ(row[0], Value::OfText("a "));
    EXPECT_EQ(VerifyTable(Path("v.dbf")), Lines{});
}

TEST_F(FoxProWriting, OtherProgramsReadOurTables) {
    const auto table = Make("plain", {Column("id", "NUMERIC", {8}, true), Column("name", "CHARACTER", {20}, true),
                                      Column("born", "DATE", {}, true), Column("ok", "LOGICAL", {}, true),
                                      Column("price", "NUMERIC", {10, 2}, true), Column("note", "MEMO", {}, true)});
    for (int k = 1; k <= 3000; ++k) {
        Add(*table, {Value::OfInteger(k), Value::OfText("Name " + std::to_string(k)),
                     Moment(1990 + k % 30, 1 + k % 12, 5), Value::OfBoolean(k % 3 == 0), Value::OfCurrency(k * 12300),
                     Value::OfText(std::string(static_cast<std::size_t>(k % 200), 'x'))});
    }
    table->Delete(7);
    table->Commit();
    ExpectReadBy({"dbf", "dbfread"}, "plain.dbf");
}

struct Refusal {
    const char* name;
    std::size_t column;
    Value value;
    const char* says;
};

TEST_F(FoxProWriting, RefusesWhatDoesNotFitAndLeavesNoTrace) {
    const std::vector<ColumnDefinition> columns = {
        Column("c", "C", {4}), Column("n", "N", {6, 2}),   Column("i", "I"), Column("y", "Y"),
        Column("d", "D"),      Column("t", "T"),           Column("b", "B"), Column("v", "V", {3}),
        Column("m", "M"),      Column("nn", "I", {}, true)};
    const auto table = Make("r", columns);
    std::vector<Value> good = {Value::OfText("abcd"), Value::OfDecimal("-99.99"), Value::OfInteger(1),
                               Value::OfCurrency(1),  Moment(2000, 1, 1),         Moment(2000, 1, 1),
                               Value::OfDouble(1),    Value::OfText("abc"),       Value::OfText("memo"),
                               Value::OfInteger(1)};
    Add(*table, good);
    const Refusal cases[] = {
        {"long text", 0, Value::OfText("abcde"), "'C' of 'r.dbf': the value has 5 bytes"},
        {"blanks count", 0, Value::OfText("abc  "), "'C'"},
        {"no place", 0, Value::OfText("Ł"), "'C' of 'r.dbf': the character 'Ł'"},
        {"wide", 1, Value::OfDecimal("1000"), "'N' of 'r.dbf': Numeric overflow"},
        {"wide negative", 1, Value::OfDecimal("-100"), "Numeric overflow"},
        {"huge", 1, Value::OfDecimal("99999999999999999999999999999999999999"), "Numeric overflow"},
        {"decimals", 1, Value::OfDecimal("1.005"), "'N' of 'r.dbf': the number has more than 2 decimals"},
        {"no number", 1, Value::OfText("x"), "Type mismatch"},
        {"integer", 2, Value::OfInteger(2147483648LL), "Overflow"},
        {"fraction", 2, Value::OfDouble(1.5), "Overflow"},
        {"time in date", 4, Moment(2000, 1, 1, 1), "'D'"},
        {"part of a second", 5, Moment(2000, 1, 1, 1, 1, 1, 500'000), "the fraction of a second would be lost"},
        {"infinite", 6, Value::OfDouble(1e308 * 10), "not a number"},
        {"varying", 7, Value::OfText("abcd"), "'V'"},
        {"memo", 8, Value::OfText("Ł"), "'M'"},
        {"null", 9, kNull, "'NN' of 'r.dbf': it does not accept null values"},
    };
    for (const Refusal& row : cases) {
        std::vector<Value> values = good;
        values[8].SetText("a memo that must go again");
        values[row.column] = row.value;
        EXPECT_THAT(ErrorOf([&] { Add(*table, values); }), testing::HasSubstr(row.says)) << row.name;
        std::vector<bool> only(columns.size(), false);
        only[row.column] = true;
        EXPECT_THAT(ErrorOf([&] { table->Update(1, values, only); }), testing::HasSubstr(row.says)) << row.name;
    }
    table->Commit();
    EXPECT_EQ(RowsOfFile(Path("r.dbf")), (Lines{"abcd|-99.99|1|0.0001|2000-01-01|2000-01-01|1|abc|memo|1"}));
    EXPECT_EQ(std::filesystem::file_size(Path("r.fpt")), 512u + 64u);
}

TEST_F(FoxProWriting, ReadersSeeTheRowsOfTheirBeginning) {
    const auto table = Make("s", {Column("k", "I"), Column("m", "M"), Column("pad", "C", {100})});
    for (int k = 1; k <= 20'000; ++k)
        Add(*table, {Value::OfInteger(k), Value::OfText("memo " + std::to_string(k)), kNull});
    const std::size_t wanted[] = {0, 1};
    const auto other = database_.OpenTable("S.DBF");
    const auto rows = other->Rows(wanted);
    std::vector<Value> row(2);
    ASSERT_TRUE(rows->Next(row));
    Add(*table, {Value::OfInteger(-1), Value::OfText("later"), kNull});
    table->Update(19'000, std::vector<Value>{Value::OfInteger(-5), kNull, kNull}, {true, false, false});
    table->Delete(2);
    EXPECT_EQ(other->CountRows(), 20'000);
    table->DeleteAll();
    Add(*table, {Value::OfInteger(77), Value::OfText("new"), kNull});
    for (int k = 2; k <= 20'000; ++k) {
        ASSERT_TRUE(rows->Next(row));
        ASSERT_EQ(row[0], Value::OfInteger(k));
        ASSERT_EQ(row[1], Value::OfText("memo " + std::to_string(k)));
    }
    EXPECT_FALSE(rows->Next(row));
    EXPECT_EQ(RowsOf(*other), Lines{"77|new|"});
    table->Commit();
    EXPECT_EQ(std::filesystem::file_size(Path("s.fpt")), 512u + 64u);
    EXPECT_LT(std::filesystem::file_size(Path("s.dbf")), 1024u);
}

TEST_F(FoxProWriting, WhatIsNotCommittedGoesWithItsWriter) {
    Make("u", {Column("k", "I"), Column("id", "I AUTOINC"), Column("m", "M")});
    const auto add = [&](TableFile& table, int k) {
        table.Append(std::vector<Value>{Value::OfInteger(k), kNull, Value::OfText("m")}, {true, false, true});
    };
    {
        const auto table = database_.OpenTable("u");
        add(*table, 1);
        table->Commit();
        add(*table, 2);
    }
    EXPECT_EQ(RowsOfFile(Path("u.dbf")), Lines{"1|1|m"});
    const auto table = database_.OpenTable("u");
    add(*table, 3);
    EXPECT_EQ(RowsOf(*table), (Lines{"1|1|m", "3|2|m"}));
}

TEST_F(FoxProWriting, OtherProcessesSeeEachOthersRows) {
    const auto table = Make("p", {Column("k", "I"), Column("id", "I AUTOINC"), Column("m", "M")});
    const auto add = [](TableFile& to, int k) {
        to.Append(std::vector<Value>{Value::OfInteger(k), kNull, Value::OfText("memo " + std::to_string(k))},
                  {true, false, true});
        to.Commit();
    };
    {
        const auto ours = database_.OpenTable("p");
        add(*ours, 1);
    }
    const ChildEnd child = InChild([&](const auto&) {
        const auto theirs = FoxProDatabase(folder_.Path()).OpenTable("p");
        add(*theirs, 2);
        if (RowsOf(*theirs).size() != 2) std::_Exit(1);
    });
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(RowsOf(*table), (Lines{"1|1|memo 1", "2|2|memo 2"}));
    add(*table, 3);
    EXPECT_EQ(RowsOf(*table), (Lines{"1|1|memo 1", "2|2|memo 2", "3|3|memo 3"}));
}

TEST_F(FoxProWriting, NothingGrowsBeyondTwoGigabytes) {
    auto table = Make("big", {Column("c", "C", {254}, true), Column("m", "M", {}, true)});
    Add(*table, {Value::OfText("x"), Value::OfText("m")});
    table->Commit();
    table.reset();
    const auto grow = [&](const char* name, std::uint64_t bytes) { std::filesystem::resize_file(Path(name), bytes); };
    grow("big.fpt", 0x7FFFFF00);
    EXPECT_THAT(ErrorOf([&] {
                    Add(*database_.OpenTable("big"), {Value::OfText("x"), Value::OfText(std::string(300, 'm'))});
                }),
                testing::HasSubstr("'big.fpt' cannot grow beyond 2 GB"));
    const auto full = Make("full", {Column("c", "C", {254}, true)});
    std::string head = ReadBytes(Path("full.dbf"));
    const unsigned records = (0x7FFFFFFF - 328) / 255;
    head.replace(4, 4,
                 {static_cast<char>(records), static_cast<char>(records >> 8), static_cast<char>(records >> 16), 0});
    WriteBytes(Path("full.dbf"), head);
    grow("full.dbf", 328 + std::uint64_t{records} * 255);
    EXPECT_THAT(ErrorOf([&] { Add(*full, {Value::OfText("x")}); }),
                testing::HasSubstr("'full.dbf' cannot grow beyond 2 GB"));
}

TEST_F(FoxProWriting, NamesOfFieldsAreInTheTablesCodePage) {
    const auto table = Make("n", {Column("größe", "I"), Column("l", "L")});
    EXPECT_EQ(table->Columns()[0].name, "größe");
    EXPECT_EQ(ReadBytes(Path("n.dbf")).substr(32, 5),
              "GR\xF6\xDF"
              "E");
}

struct BadTable {
    const char* name;
    std::vector<ColumnDefinition> columns;
    const char* says;
};

std::vector<ColumnDefinition> Many(int count, bool notNull) {
    std::vector<ColumnDefinition> columns;
    for (int k = 0; k < count; ++k) columns.push_back(Column("f" + std::to_string(k), "I", {}, notNull));
    return columns;
}

TEST_F(FoxProWriting, RefusesTablesThatCannotBe) {
    const BadTable cases[] = {
        {"name", {Column("customername", "I")}, "longer than the 10 characters of a free table"},
        {"twice", {Column("a", "I"), Column("A", "I")}, "duplicate"},
        {"digit", {Column("1a", "I")}, "invalid"},
        {"type", {Column("a", "PICTURE")}, "no type that FoxPro tables know: 'PICTURE'"},
        {"no width", {Column("a", "C")}, "needs a width"},
        {"wide", {Column("a", "C", {255})}, "1 to 254"},
        {"decimals", {Column("a", "N", {5, 5})}, "decimals"},
        {"fields", Many(255, false), "254 fields"},
        {"more fields", Many(256, true), "255 fields"},
        {"none", {}, "no fields"},
    };
    for (const BadTable& row : cases) {
        EXPECT_THAT(ErrorOf([&] { database_.CreateTable("bad", row.columns); }), testing::HasSubstr(row.says))
            << row.name;
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder_.Path()));
    EXPECT_EQ(ErrorOf([&] { database_.CreateTable("most", Many(254, false)); }), "");
    EXPECT_EQ(ErrorOf([&] { database_.CreateTable("whole", Many(255, true)); }), "");
    EXPECT_THAT(ErrorOf([&] { database_.CreateTable("MOST", {{Column("a", "I")}}); }),
                testing::HasSubstr("File already exists"));
}

TEST_F(FoxProWriting, DropTakesMemoAndIndexAlong) {
    Make("gone", {Column("m", "MEMO")});
    std::filesystem::rename(Path("gone.fpt"), Path("GONE.FPT"));
    folder_.Write("Gone.Cdx");
    folder_.Write("gone.txt");
    database_.DropTable(Path("GONE"));
    EXPECT_THAT(ErrorOf([&] { database_.OpenTable("gone"); }), testing::HasSubstr("'gone' does not exist"));
    EXPECT_TRUE(std::filesystem::exists(Path("gone.txt")));
    std::filesystem::remove(Path("gone.txt"));
    EXPECT_TRUE(std::filesystem::is_empty(folder_.Path()));
}

TEST_F(FoxProWriting, OldDialectsAreWrittenInTheirOwnForms) {
    std::filesystem::copy(SamplePath("dbase_f5.dbf"), Path("f5.dbf"));
    std::filesystem::copy(SamplePath("dbase_f5.fpt"), Path("f5.fpt"));
    std::filesystem::copy(SamplePath("dbase_8b.dbf"), Path("8b.dbf"));
    const auto table = database_.OpenTable("f5");
    const std::vector<ColumnInfo>& columns = table->Columns();
    std::vector<Value> values(columns.size());
    std::vector<bool> assigned(columns.size());
    for (std::size_t k = 0; k < columns.size(); ++k) {
        assigned[k] = columns[k].type == adLongVarChar || k == 0;
        if (assigned[k]) k == 0 ? values[k].SetInteger(42) : values[k].SetText("a memo: à");
    }
    table->Append(values, assigned);
    table->Commit();
    EXPECT_EQ(table->CountRows(), 976);
    ExpectReadBy({"dbfread"}, "f5.dbf");
    const auto old = database_.OpenTable("8b");
    EXPECT_THAT(ErrorOf([&] { old->Delete(1); }), testing::HasSubstr("'8b.dbf' is only read"));
}

}  // namespace
}  // namespace varnel::foxpro
