// Heads, cells and memos as strangers write them, and files that are damaged.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/Error.h"
#include "providers/foxpro/DbfHeader.h"
#include "tests/providers_foxpro/DbfBuilder.h"
#include "tests/providers_foxpro/FoxProTest.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/TempFolder.h"

namespace varnel::foxpro {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// The rows of a file of these bytes, then "!!words" when they end with an error.
Lines RowsOfBytes(const std::string& bytes, const std::string& memos = "", const std::string& memoName = "t.fpt") {
    const TempFolder folder;
    if (!memos.empty()) folder.Write(memoName, memos);
    Lines lines;
    const std::string words = ErrorOf([&] {
        FoxProDatabase database(folder.Write("t.dbf", bytes));
        AppendRows(lines, *database.OpenTable("t"));
    });
    if (!words.empty()) lines.push_back("!!" + words);
    return lines;
}

DbfBuilder Pair(int version) {
    return DbfBuilder(version)
        .Field("NAME", 'C', 4)
        .Field("N", 'N', 3)
        .Row("abcd 12")
        .Row("gone  1", '*')
        .Row("ef    5");
}

TEST(DbfHeads, EveryDialectIsRead) {
    for (const int version : {0x02, 0x03, 0x04, 0x05, 0x07, 0x30, 0x31, 0x32, 0x43, 0x63, 0x7B,
                              0x83, 0x87, 0x8B, 0x8C, 0x8E, 0xCB, 0xE5, 0xF5, 0xFB, 0x99}) {
        EXPECT_THAT(RowsOfBytes(Pair(version).Build()), ElementsAre("abcd|12", "ef|5")) << version;
    }
}

TEST(DbfHeads, WidthsOverTwoHundredFiftyFiveHideInTheDecimals) {
    const auto wide = [](unsigned recordBytes) {
        return RowsOfBytes(DbfBuilder(0x03)
                               .Field("A", 'C', 44, 1)
                               .Field("B", 'C', 2)
                               .RecordBytes(recordBytes)
                               .Row(std::string(300, 'x') + "yz")
                               .Build());
    };
    EXPECT_THAT(wide(303), ElementsAre(std::string(300, 'x') + "|yz"));
    EXPECT_THAT(wide(310), ElementsAre(std::string(44, 'x') + "|xx"));  // neither adds up: only read, by the record
}

TEST(DbfHeads, WhatCannotBeATableIsRefused) {
    const std::string good = Pair(0x03).Build();
    const auto with = [&](std::size_t at, std::string_view bytes) {
        std::string changed = good;
        return changed.replace(at, bytes.size(), bytes);
    };
    EXPECT_THAT(RowsOfBytes("x"), ElementsAre(HasSubstr("'t.dbf' is not a table")));
    EXPECT_THAT(RowsOfBytes(with(0, "\x77").replace(10, 1, "\x09")), ElementsAre(HasSubstr("names no version")));
    EXPECT_THAT(RowsOfBytes(with(8, "\xFF\xFF")), ElementsAre(HasSubstr("its head claims 65535 bytes")));
    EXPECT_THAT(RowsOfBytes(with(10, std::string_view("\0\0", 2))), ElementsAre(HasSubstr("no bytes")));
    EXPECT_THAT(RowsOfBytes(with(10, std::string_view("\5\0", 2))), ElementsAre(HasSubstr("'N' lies outside")));
    EXPECT_THAT(RowsOfBytes(DbfBuilder(0x03).Field("A", 'C', 1).Mark(0x69).Row("x").Build()),
                ElementsAre(HasSubstr("code page 620")));
}

TEST(DbfHeads, RecordsAndCountThatDisagreeAreSaid) {
    EXPECT_THAT(RowsOfBytes(Pair(0x03).Claims(5).Build()),
                ElementsAre("abcd|12", "ef|5", HasSubstr("its head says 5 records, the file holds 3 records")));
    EXPECT_THAT(RowsOfBytes(Pair(0x30).Claims(1).Build()),
                ElementsAre("abcd|12", HasSubstr("its head says 1 records, but records follow")));
    EXPECT_THAT(RowsOfBytes(Pair(0x03).Tail(std::string(100, '\x1A')).Build()), ElementsAre("abcd|12", "ef|5"));
    EXPECT_THAT(RowsOfBytes(Pair(0x03).Tail(std::string(100, '\0')).Build()), ElementsAre("abcd|12", "ef|5"));
    EXPECT_THAT(RowsOfBytes(Pair(0x03).Tail("").Build()), ElementsAre("abcd|12", "ef|5"));
    const TempFolder folder;
    folder.Write("t.dbf", Pair(0x30).Claims(1).Build());
    FoxProDatabase database(folder.Path());
    EXPECT_THAT(ErrorOf([&] { database.OpenTable("t")->CountRows(); }), HasSubstr("damaged"));
    EXPECT_THAT(ErrorOf([&] { database.OpenTable("t")->Delete(1); }), HasSubstr("damaged"));
}

struct CellCase {
    int version;
    char type;
    std::string bytes, expected;
    int decimals = 0;
};

TEST(DbfCells, AreReadAsTheyStand) {
    const std::string blanks(20, ' ');
    const CellCase cases[] = {
        {0x03, 'N', "   -1.50", "-1.5"},
        {0x03, 'N', "12      ", "12"},
        {0x03, 'N', "0   . ", "0"},
        {0x03, 'N', ".5", "0.5"},
        {0x03, 'F', "1.5E+03", "1500"},
        {0x03, 'N', "12345678901234567890", "12345678901234567890"},
        {0x03, 'N', blanks.substr(0, 8), "0"},
        {0x03, 'N', "********", "!Numeric overflow in 't.dbf', record 1, column 'f'"},
        {0x03, 'N', "1,5", "!Not a number in 't.dbf', record 1, column 'f'"},
        {0x03, 'N', "-", "!Not a number in 't.dbf', record 1, column 'f'"},
        {0x03, 'D', "20000229", "2000-02-29"},
        {0x03, 'D', "00000000", ""},
        {0x03, 'D', "        ", ""},
        {0x03, 'D', "19000229", "!Not a date in 't.dbf', record 1, column 'f'"},
        {0x03, 'D', "NotAYear", "!Not a date in 't.dbf', record 1, column 'f'"},
        {0x03, 'L', "y", "T"},
        {0x03, 'L', "?", "F"},
        {0x03, 'L', "x", "!Neither true nor false in 't.dbf', record 1, column 'f'"},
        {0x30, 'T', LittleBytes(2440588, 4) + LittleBytes(59'999, 4), "1970-01-01 00:01:00"},
        {0x30, 'T', LittleBytes(2440588, 4) + LittleBytes(86'399'997, 4), "1970-01-02"},
        {0x30, 'T', std::string(8, '\0'), ""},
        {0x30, 'T', LittleBytes(1, 4) + LittleBytes(0, 4), "!Not a date in 't.dbf', record 1, column 'f'"},
        {0x30, 'I', "\xFF\xFF\xFF\xFF", "-1"},
        {0x30, 'Y', LittleBytes(123456, 8), "12.3456"},
        {0x30, 'B', LittleBytes(0x3FF8000000000000, 8), "1.5"},
        {0x30, 'B', LittleBytes(0x7FF8000000000000, 8), "!Not a number in 't.dbf', record 1, column 'f'"},
        {0x30, 'B', blanks.substr(0, 8), "0"},
        {0x30, 'V', "full", "full"},
        {0x8C, 'I', BigBytes(0x80000005, 4), "5"},
        {0x8C, '+', BigBytes(0x7FFFFFFF, 4), "-1"},
        {0x8C, 'O', BigBytes(0xBFF8000000000000, 8), "1.5"},
        {0x8C, 'O', BigBytes(~std::uint64_t{0xBFF8000000000000}, 8), "-1.5"},
        {0x8C, '@', std::string(8, 'x'), "!A type of field that is not read here in 't.dbf', record 1, column 'f'"},
        {0x03, 'M', blanks.substr(0, 10), ""},
        {0x03, 'M', "0000000000", ""},
        {0x83, 'M', "         1", "!Memo file is missing in 't.dbf', record 1, column 'f'"},
        {0x83, 'M', "      -1.5", "!Memo file is invalid in 't.dbf', record 1, column 'f'"},
    };
    for (const CellCase& row : cases) {
        const std::string bytes = DbfBuilder(row.version)
                                      .Field("F", row.type, static_cast<int>(row.bytes.size()), row.decimals)
                                      .Row(row.bytes)
                                      .Build();
        EXPECT_THAT(RowsOfBytes(bytes), ElementsAre(row.expected)) << row.type << " " << row.bytes;
    }
    EXPECT_THAT(RowsOfBytes(DbfBuilder().Field("F", 'C', 3).Mark(3).Row("a\x81z").Build()),
                ElementsAre(HasSubstr("!Bytes that have no meaning in the table's code page")));
    EXPECT_THAT(RowsOfBytes(DbfBuilder(0x03).Field("F", 'C', 3).Mark(0x65).Row("\x8F\xE0\xA8").Build()),
                ElementsAre("При"));
}

/// A memo file of 64-byte blocks whose block 8 starts with these bytes.
std::string Fpt(const std::string& block) {
    std::string head(512, '\0');
    return head.replace(6, 2, BigBytes(64, 2)) + block;
}

TEST(DbfMemos, NoReferenceLeadsOutOfTheFile) {
    const auto cell = [](std::uint64_t reference, const std::string& memos) {
        return RowsOfBytes(DbfBuilder().Field("M", 'M', 4).Row(LittleBytes(reference, 4)).Build(), memos);
    };
    const std::string invalid = "!Memo file is invalid in 't.dbf', record 1, column 'm'";
    EXPECT_THAT(cell(8, Fpt(BigBytes(1, 4) + BigBytes(5, 4) + "hello")), ElementsAre("hello"));
    EXPECT_THAT(cell(8, Fpt(BigBytes(1, 4) + BigBytes(0, 4))), ElementsAre(""));
    EXPECT_THAT(cell(8, Fpt(BigBytes(1, 4) + BigBytes(6, 4) + "hello")), ElementsAre(invalid));
    EXPECT_THAT(cell(8, Fpt(BigBytes(1, 4) + BigBytes(0xFFFFFFFF, 4) + "hello")), ElementsAre(invalid));
    EXPECT_THAT(cell(8, Fpt("")), ElementsAre(invalid));
    EXPECT_THAT(cell(0xFFFFFFFF, Fpt("")), ElementsAre(invalid));
    EXPECT_THAT(cell(1, "short"), ElementsAre(invalid));
    const std::string umlauts(70'000, '\xFC');
    EXPECT_THAT(cell(8, Fpt(BigBytes(1, 4) + BigBytes(umlauts.size(), 4) + umlauts))[0].size(), 2 * umlauts.size());
}

TEST(DbfMemos, BothKindsOfDBaseAreRead) {
    const auto cell = [](int version, const std::string& memos) {
        return RowsOfBytes(DbfBuilder(version).Field("M", 'M', 10).Row("         1").Build(), memos, "T.DBT");
    };
    const std::string head(512, '\0'), invalid = "!Memo file is invalid in 't.dbf', record 1, column 'm'";
    const std::string longText(40'000, 'x');
    EXPECT_THAT(cell(0x83, head + "two\x8D\nlines\x1A\x1A"), ElementsAre("twolines"));
    EXPECT_THAT(cell(0x83, head + longText + "\x1A"), ElementsAre(longText));
    EXPECT_THAT(cell(0x83, head + "no end"), ElementsAre(invalid));
    EXPECT_THAT(cell(0x8B, head + std::string("\xFF\xFF\x08\0", 4) + LittleBytes(12, 4) + "memorandum"),
                ElementsAre("memo"));
    EXPECT_THAT(cell(0x8B, head + std::string("\xFF\xFF\x08\0", 4) + LittleBytes(7, 4) + "memo"), ElementsAre(invalid));
    EXPECT_THAT(cell(0x8B, head + std::string("\xFF\xFF\x08\0", 4) + LittleBytes(999, 4) + "memo"),
                ElementsAre(invalid));
    EXPECT_THAT(cell(0x8B, head + "old form\x1A"), ElementsAre("old form"));
}

TEST(DbfNulls, BitsAreCountedOverTheFieldsThatNeedThem) {
    // Bits: 0 varying of B, 1 null of B, 2 null of C, 3 varying of D.
    const auto row = [](char bits) {
        return RowsOfBytes(DbfBuilder(0x32)
                               .Field("A", 'I', 4)
                               .Field("B", 'V', 3, 0, 2)
                               .Field("C", 'C', 1, 0, 2)
                               .Field("D", 'V', 3)
                               .Field("_NullFlags", '0', 1, 0, 5)
                               .Row(LittleBytes(7, 4) + "xy\1" + "c" + "vw\2" + std::string(1, bits))
                               .Build());
    };
    EXPECT_THAT(row('\x09'), ElementsAre("7|x|c|vw"));
    EXPECT_THAT(row('\x0F'), ElementsAre("7|||vw"));
    EXPECT_THAT(row('\x00'), ElementsAre("7|xy\1|c|vw\2"));
}

}  // namespace
}  // namespace varnel::foxpro
