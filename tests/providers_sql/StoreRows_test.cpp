// Reading tables of a store: all roads give the same rows, and what cannot be read never looks like the end.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "ado/types/ValueText.h"
#include "providers/sql/KeptRows.h"
#include "tests/providers_sql/MemoryStore.h"
#include "tests/providers_sql/SqlTestDatabase.h"
#include "tests/support/ErrorOf.h"

namespace varnel {
namespace {

Value Moment(int year, int month, int day, int hour = 0, int minute = 0, int second = 0, int micros = 0) {
    return Value::OfDateTime(FromCivil({year, month, day, hour, minute, second, micros}));
}

Value Failed(const char* why) {
    Value value;
    value.SetFailure(why);
    return value;
}

struct Column {
    ColumnInfo info;
    std::vector<Value> values;
};

/// Every type that a format may have, with the values at its ends.
std::vector<Column> EveryColumn() {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const std::vector<Value> texts = {Value::OfText(""),
                                      Value::OfText("00123"),
                                      Value::OfText("1e5"),
                                      Value::OfText(std::string("a\0b", 3)),
                                      Value::OfText("\xE2\x82\xAC \xF0\x9F\x98\x80"),
                                      Value()};
    const std::vector<Value> moments = {Moment(100, 1, 1), Moment(9999, 12, 31, 23, 59, 59, 999'999),
                                        Moment(1899, 12, 30, 16, 23, 5), Value()};
    const std::vector<Value> bytes = {Value::OfBytes(std::string("\0\xFF\x80", 3)), Value::OfBytes(""),
                                      Value::OfBytes("123"), Value()};
    const std::vector<Value> decimals = {Value::OfDecimal("0.10"), Value::OfDecimal("-99999999999999999999.99"),
                                         Value::OfDecimal("12345678901234567890123456789012345678"), Value()};
    return {
        {ColumnOf("Small", adSmallInt), {Value::OfInteger(-32768), Value::OfInteger(32767), Value()}},
        {ColumnOf("Long", adInteger), {Value::OfInteger(INT32_MIN), Value::OfInteger(INT32_MAX), Value()}},
        {ColumnOf("Big", adBigInt), {Value::OfInteger(INT64_MIN), Value::OfInteger(INT64_MAX), Value()}},
        {ColumnOf("Byte", adUnsignedTinyInt), {Value::OfInteger(0), Value::OfInteger(255), Value()}},
        {ColumnOf("Single", adSingle), {Value::OfSingle(0.1F), Value::OfSingle(3.4028235e38F), Value()}},
        {ColumnOf("Double", adDouble),
         {Value::OfDouble(0.1), Value::OfDouble(-kInfinity), Value::OfDouble(1e18), Value::OfDouble(5), Value()}},
        {ColumnOf("Currency", adCurrency),
         {Value::OfCurrency(INT64_MAX), Value::OfCurrency(INT64_MIN), Value::OfCurrency(-1), Value()}},
        {ColumnOf("Numeric", adNumeric, 19, 2), decimals},
        {ColumnOf("Decimal", adDecimal, 16, 2), decimals},
        {ColumnOf("Open", adVarNumeric, 38), decimals},
        {ColumnOf("Flag", adBoolean), {Value::OfBoolean(true), Value::OfBoolean(false), Value()}},
        {ColumnOf("Date", adDate), moments},
        {ColumnOf("DBDate", adDBDate), {Moment(2026, 11, 18), Value()}},
        {ColumnOf("Stamp", adDBTimeStamp), moments},
        {ColumnOf("Text", adVarWChar), texts},
        {ColumnOf("Char", adChar), {Value::OfText("ab   "), Value()}},
        {ColumnOf("Varchar", adVarChar), texts},
        {ColumnOf("Memo", adLongVarWChar, 536870910), texts},
        {ColumnOf("NarrowMemo", adLongVarChar), texts},
        {ColumnOf("Guid", adGUID), {Value::OfGuid("{0123ABCD-0123-4567-89AB-0123456789AB}"), Value()}},
        {ColumnOf("Bytes", adVarBinary), bytes},
        {ColumnOf("Fixed", adBinary), bytes},
        {ColumnOf("Object", adLongVarBinary), bytes},
    };
}

/// A table T with a key ID from 1 on and a column of each type; shorter lists of values are filled with failed cells.
void FillWithEverything(MemoryStore& store) {
    const std::vector<Column> all = EveryColumn();
    std::vector<ColumnInfo> columns = {ColumnOf("ID", adInteger, 4)};
    std::size_t rows = 0;
    for (const Column& column : all) {
        columns.push_back(column.info);
        rows = std::max(rows, column.values.size());
    }
    MemoryTable& table = store.Make("T", columns);
    for (std::size_t r = 0; r < rows; ++r) {
        std::vector<Value> row = {Value::OfInteger(static_cast<std::int64_t>(r + 1))};
        for (const Column& column : all)
            row.push_back(r < column.values.size() ? column.values[r] : Failed("no such cell"));
        table.Add(row);
    }
}

struct Read {
    std::vector<ColumnInfo> columns;
    std::vector<std::vector<Value>> rows;
};

Read ReadAll(ProviderSession& session, const std::string& query) {
    const auto reader = session.Query(query);
    Read read{reader->Columns(), {}};
    std::vector<Value> row(read.columns.size());
    while (reader->Next(row)) read.rows.push_back(row);
    return read;
}

void ExpectEqual(const Read& read, const Read& expected, const std::string& query) {
    ASSERT_EQ(read.columns.size(), expected.columns.size()) << query;
    for (std::size_t k = 0; k < read.columns.size(); ++k) {
        const ColumnInfo &got = read.columns[k], &meant = expected.columns[k];
        EXPECT_EQ(got.name, meant.name) << query;
        EXPECT_EQ(got.type, meant.type) << query;
        EXPECT_EQ(got.definedSize, meant.definedSize) << query;
        EXPECT_EQ(got.numericScale, meant.numericScale) << query;
    }
    ASSERT_EQ(read.rows.size(), expected.rows.size()) << query;
    for (std::size_t r = 0; r < read.rows.size(); ++r)
        for (std::size_t k = 0; k < read.columns.size(); ++k) {
            const Value &got = read.rows[r][k], &meant = expected.rows[r][k];
            if (meant.Kind() != ValueKind::Failure) {
                EXPECT_TRUE(got == meant) << query << ", row " << r << ", " << read.columns[k].name << ": kind "
                                          << int(got.Kind()) << " instead of " << int(meant.Kind());
                continue;
            }
            ASSERT_EQ(got.Kind(), ValueKind::Failure) << query;
            EXPECT_EQ(got.FailureText(), meant.FailureText()) << query;
        }
}

TEST(StoreRows, AreEqualOnEveryRoad) {
    MemoryTestDatabase database;
    FillWithEverything(database.Store());
    std::vector<std::string> lists = {"*", "[Memo],[ID],[Currency]", "[ID],[Guid],[ID]", "T.[Flag] AS Yes1"};
    for (const Column& column : EveryColumn()) lists.push_back("[" + column.info.name + "]");
    for (const std::string& list : lists) {
        const std::string query = "SELECT " + list + " FROM [T]";
        const Read straight = ReadAll(database.Session(), query);
        ASSERT_EQ(straight.rows.size(), 6U);
        for (const char* tail :
             {" WHERE 1=1", " WHERE ID>0", " WHERE ID>0 AND NOT ID=77", " ORDER BY ID", " WHERE ID>0 ORDER BY ID"})
            ExpectEqual(ReadAll(database.Session(), query + tail), straight, query + tail);
    }
    const Read all = ReadAll(database.Session(), "SELECT * FROM T");
    const std::vector<Column> columns = EveryColumn();
    for (std::size_t k = 0; k < columns.size(); ++k)
        for (std::size_t r = 0; r < columns[k].values.size(); ++r)
            EXPECT_TRUE(all.rows[r][k + 1] == columns[k].values[r]) << columns[k].info.name;
}

TEST(StoreRows, AskTheTableOnlyForTheColumnsOfTheStatement) {
    const struct {
        const char* query;
        std::vector<std::size_t> asked;
    } cases[] = {
        {"SELECT C,A FROM T", {2, 0}},
        {"SELECT C FROM T WHERE B>0", {1, 2}},
        {"SELECT A,C FROM T WHERE A>0", {0, 2}},
        {"SELECT count(*) FROM T WHERE B=1", {1}},
        {"SELECT max(C) FROM T WHERE A=1", {0, 2}},
        {"SELECT 1 FROM T", {}},
        {"SELECT A FROM T ORDER BY D", {0, 3}},
    };
    MemoryTestDatabase database;
    database.Run("CREATE TABLE T (A Long, B Long, C Long, D Long)");
    MemoryTable& table = database.Store().Table("T");
    for (const auto& one : cases) {
        table.asked.clear();
        database.Ask(one.query);
        ASSERT_EQ(table.asked.size(), 1U) << one.query;
        EXPECT_EQ(table.asked[0], one.asked) << one.query;
    }
    table.asked.clear();
    EXPECT_EQ(database.Ask("Select Count(*) FROM T"), "0");
    EXPECT_TRUE(table.asked.empty());
}

/// Table T: ID 1 to 5 with a text A; the one of row 3 could not be read.
void FillWithOneBadCell(MemoryTestDatabase& database) {
    MemoryTable& table = database.Store().Make("T", {ColumnOf("ID", adInteger, 4), ColumnOf("A", adVarWChar)});
    for (int id = 1; id <= 5; ++id)
        table.Add({Value::OfInteger(id), id == 3 ? Failed("byte 0x81 in record 3") : Value::OfText("x")});
}

TEST(StoreRows, KeepAFailedCellToItsRow) {
    MemoryTestDatabase database;
    FillWithOneBadCell(database);
    const std::string words = "byte 0x81 in record 3";
    const struct {
        const char* query;
        std::string rows;
    } cases[] = {
        // delivered: a failed cell of its row
        {"SELECT ID,A FROM T", "1|x;2|x;3|FAILURE " + words + ";4|x;5|x"},
        {"SELECT ID,A FROM T WHERE ID>2", "3|FAILURE " + words + ";4|x;5|x"},
        {"SELECT A FROM T WHERE ID>2 ORDER BY ID DESC", "x;x;FAILURE " + words},
        // used in a condition: a failed row, and the others come
        {"SELECT ID,A FROM T WHERE A='x'", "1|x;2|x;FAILURE " + words + "|NULL;4|x;5|x"},
        {"SELECT ID FROM T WHERE A='y'", "FAILURE " + words},
        // a condition that does without it
        {"SELECT ID FROM T WHERE ID<>3 AND A='x'", "1;2;4;5"},
        {"SELECT ID FROM T WHERE ID=3 OR A='x'", "1;2;3;4;5"},
        // the count is that of the rows that come
        {"SELECT count(*) FROM T WHERE A='x'", "5"},
        {"SELECT count(*) FROM T WHERE A='y'", "1"},
    };
    for (const auto& one : cases) EXPECT_EQ(database.Ask(one.query), one.rows) << one.query;
    for (const char* query : {"SELECT max(A) FROM T", "SELECT A & 'y' FROM T",
                              "SELECT ID FROM T WHERE A='x' ORDER BY ID", "SELECT count(A) FROM T"})
        EXPECT_EQ(ErrorOf([&] { database.Ask(query); }), words) << query;
}

TEST(StoreRows, AReadFailureIsNeverTheEnd) {
    MemoryTestDatabase database;
    FillWithOneBadCell(database);
    database.Store().Table("T").breaksAt = 4;
    const struct {
        const char* query;
        int rowsBefore;
    } cases[] = {
        {"SELECT ID FROM T", 4},      {"SELECT ID FROM T WHERE ID>1", 3},
        {"SELECT ID+1 FROM T", 4},    {"SELECT ID FROM T ORDER BY ID", 0},
        {"SELECT sum(ID) FROM T", 0},
    };
    for (const auto& one : cases) {
        const auto rows = database.Session().Query(one.query);
        std::vector<Value> row(1);
        for (int r = 0; r < one.rowsBefore; ++r) EXPECT_TRUE(rows->Next(row)) << one.query;
        for (int again = 0; again < 2; ++again)
            EXPECT_EQ(ErrorOf([&] { rows->Next(row); }), "the disk is gone") << one.query;
    }
    EXPECT_EQ(ErrorOf([&] { database.Ask("SELECT count(*) FROM T WHERE ID>0"); }), "the disk is gone");
    EXPECT_EQ(ErrorOf([&] { database.Run("UPDATE T SET A='z' WHERE ID>0"); }), "the disk is gone");
    EXPECT_EQ(database.Store().Table("T").writes, 0U);
}

TEST(StoreRows, AreThoseOfTheMomentWhenTheReadWasOpened) {
    MemoryTestDatabase database;
    database.Run("CREATE TABLE T (ID Long)");
    for (int id = 1; id <= 3; ++id) database.Run("INSERT INTO T VALUES (" + std::to_string(id) + ")");
    const auto rows = database.Session().Query("SELECT ID FROM T WHERE ID<100");
    const auto appender = database.Session().OpenAppender("SELECT ID FROM T");
    std::vector<Value> row(1);
    int count = 0;
    for (; rows->Next(row); ++count) appender->Append(row, {true});
    EXPECT_EQ(count, 3);
    EXPECT_EQ(database.Ask("SELECT count(*) FROM T"), "6");
}

TEST(StoreRows, AreKeptAsideBeyondMemoryInTheirOrder) {
    std::vector<Value> row = {Value::OfInteger(0), Value::OfText(""), Failed("no such cell")};
    for (const Column& column : EveryColumn()) row.insert(row.end(), column.values.begin(), column.values.end());
    const auto numbered = [&](int r) -> const std::vector<Value>& {
        row[0].SetInteger(r);
        row[1].SetText(std::string(static_cast<std::size_t>(r), 'x'));
        return row;
    };
    for (const std::size_t limit : {std::size_t{0}, std::size_t{20'000}, std::size_t{10'000'000}}) {
        sql::KeptRows kept(row.size(), limit);
        for (int r = 0; r < 100; ++r) kept.Add(numbered(r));
        EXPECT_EQ(kept.InMemory(), limit == 10'000'000);
        kept.Rewind();
        std::vector<Value> read(row.size());
        for (int r = 0; r < 100; ++r) {
            ASSERT_TRUE(kept.Next(read));
            EXPECT_TRUE(read == numbered(r)) << r;
        }
        EXPECT_FALSE(kept.Next(read));
    }
}

}  // namespace
}  // namespace varnel
