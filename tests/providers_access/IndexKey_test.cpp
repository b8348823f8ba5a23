#include <gtest/gtest.h>

#include "providers/access/IndexKey.h"
#include "providers/access/TextKey.h"
#include "tests/support/ErrorOf.h"

using namespace varnel;
using namespace varnel::access;

namespace {

std::string Hex(std::string_view bytes) {
    std::string text;
    for (const char c : bytes) {
        constexpr const char* kDigits = "0123456789ABCDEF";
        if (!text.empty()) text += ' ';
        text += kDigits[static_cast<unsigned char>(c) >> 4];
        text += kDigits[c & 15];
    }
    return text;
}

Column ColumnOf(ColumnType type, std::uint16_t id = 0) {
    Column column;
    column.name = "C" + std::to_string(id);
    column.type = type;
    column.id = id;
    column.scale = 4;
    return column;
}

struct TextCase {
    const char* name;
    const char* text;
    bool ascending;
    const char* key;
};

class TextKeys : public testing::TestWithParam<TextCase> {};

TEST_P(TextKeys, AreTheNativeOnes) {
    std::string key;
    AppendTextKey(key, GetParam().text, GetParam().ascending);
    EXPECT_EQ(Hex(key), GetParam().key);
}

INSTANTIATE_TEST_SUITE_P(
    Vectors, TextKeys,
    testing::Values(
        TextCase{"Empty", "", true, "7F 01 00"}, TextCase{"Capital", "A", true, "7F 4A 01 00"},
        TextCase{"Small", "a", true, "7F 4A 01 00"}, TextCase{"Descending", "A", false, "80 B5 FE FF 00"},
        TextCase{"TrailingBlank", "a b ", true, "7F 4A 07 4C 01 00"},
        TextCase{"Hyphen", "Anne-Marie", true, "7F 4A 62 62 51 60 4A 69 59 51 01 01 01 01 80 17 06 82 00"},
        TextCase{"Apostrophe", "O'Brien", true, "7F 64 4C 69 59 51 62 01 01 01 01 80 0B 06 80 00"},
        TextCase{"HyphenDescending", "a-b", false, "80 B5 B3 FE FE FE FE 7F F4 F9 7D FF 00"},
        TextCase{"Accent", "México D.F.", true, "7F 60 51 75 59 4D 64 07 4F 1C 53 1C 01 02 0E 00"},
        TextCase{"SharpSCountsTwo", "Aß-B", true, "7F 4A 6B 6B 4C 01 01 01 01 80 13 06 82 00"},
        TextCase{"Danish", "Ærøskøbing", true, "7F 4A 51 69 64 6B 5C 64 4C 59 62 55 01 02 02 02 21 02 02 21 00"},
        TextCase{"Polish", "Łódź", true, "7F 5E 64 4F 78 01 1F 0E 02 0E 00"},
        TextCase{"AccentDescending", "é", false, "80 AE FE F1 FF 00"},
        TextCase{"AccentAndHyphen", "Å-2", true, "7F 4A 3A 01 1A 01 01 01 80 0B 06 82 00"},
        TextCase{"Combining", "a\u0301", true, "7F 4A 01 0E 00"},
        TextCase{"Pound", "£-", true, "7F 34 A7 01 01 01 01 80 0B 06 82 00"},
        TextCase{"Half", "3½", true, "7F 3C 37 16 01 00"},
        TextCase{"Cyrillic", "Мир", true, "7F 79 43 79 3B 79 48 01 00"},
        TextCase{"Kana", "が", true, "7F 7F 0A 01 03 01 01 FF 02 80 FF 80 00"},
        TextCase{"Han", "漢", true, "7F C0 B6 01 00"},
        TextCase{"AboveTheFirstPlane", "a\U0001F600b", true, "7F 4A 4C 01 00"},
        // A combining mark before any letter; a small kana; a repeat mark after a letter and alone.
        TextCase{"CombiningFirst", "\u0301aé", true, "7F 4A 51 01 0C 02 0E 00"},
        TextCase{"SmallKanaAndHyphen", "ぁ-", true, "7F 7F 02 01 01 01 A0 FF 02 80 FF 80 FF 01 80 0B 06 82 00"},
        TextCase{"Repeat", "a\u3031", true, "7F 4A 4A 01 00"},
        TextCase{"RepeatAlone", "\u3031", true, "7F FF FF 01 00"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(TextKey, LooksAt255UnitsAndDropsTheBlanksBefore) {
    std::string longKey, shortKey;
    AppendTextKey(longKey, std::string(254, 'x') + " yyy", true);
    AppendTextKey(shortKey, std::string(254, 'x'), true);
    EXPECT_EQ(longKey, shortKey);
}

struct SortOrderCase {
    SortOrder order;
    bool canBuild;
};

TEST(TextKey, IsBuiltForTheSortOrdersThatAgreeWithEnglish) {
    const SortOrderCase cases[] = {{{0x0409, 0, 0}, true},  {{0x0809, 0, 0}, true},  {{1049, 0, 0}, true},
                                   {{0x0409, 0, 1}, false}, {{0x0409, 1, 0}, false}, {{1045, 0, 0}, false},
                                   {{1034, 0, 0}, false}};
    for (const SortOrderCase& row : cases) {
        EXPECT_EQ(CanBuildTextKeys(row.order), row.canBuild) << SortOrderName(row.order);
    }
}

struct ValueCase {
    const char* name;
    ColumnType type;
    Value value;
    bool ascending;
    const char* key;
};

TEST(IndexKey, OfSingleValues) {
    const auto whole = [](std::int64_t number) { return Value::OfInteger(number); };
    const ValueCase cases[] = {
        {"null", ColumnType::Long, Value(), true, "00"},
        {"null descending", ColumnType::Text, Value(), false, "FF"},
        {"true", ColumnType::Boolean, Value::OfBoolean(true), true, "7F 00"},
        {"true descending", ColumnType::Boolean, Value::OfBoolean(true), false, "80 FF"},
        {"a Boolean that was not set", ColumnType::Boolean, Value(), true, "7F FF"},
        {"byte", ColumnType::Byte, whole(200), true, "7F C8"},
        {"integer", ColumnType::Integer, whole(-2), true, "7F 7F FE"},
        {"long", ColumnType::Long, whole(1), true, "7F 80 00 00 01"},
        {"long descending", ColumnType::Long, whole(-1), false, "80 80 00 00 00"},
        {"date", ColumnType::Date, Value::OfDateTime({0, 0}), true, "7F 80 00 00 00 00 00 00 00"},
        {"double", ColumnType::Double, Value::OfDouble(-1), true, "7F 40 0F FF FF FF FF FF FF"},
        {"single", ColumnType::Single, Value::OfSingle(1), false, "80 40 7F FF FF"},
        {"currency", ColumnType::Currency, Value::OfCurrency(25000), true, "7F 80 00 00 00 00 00 61 A8"},
        {"GUID", ColumnType::Guid, Value::OfGuid("{01020304-0506-0708-090A-0B0C0D0E0F10}"), true,
         "7F 01 02 03 04 05 06 07 08 09 09 0A 0B 0C 0D 0E 0F 10 08"},
        {"GUID descending", ColumnType::Guid, Value::OfGuid("{01020304-0506-0708-090A-0B0C0D0E0F10}"), false,
         "80 FE FD FC FB FA F9 F8 F7 09 F6 F5 F4 F3 F2 F1 F0 EF F7"},
        {"binary", ColumnType::Binary, Value::OfBytes(std::string_view("\0\0\0\1", 4)), true,
         "7F 00 00 00 01 00 00 00 00 04"},
        {"nine bytes", ColumnType::Binary, Value::OfBytes("123456789"), true,
         "7F 31 32 33 34 35 36 37 38 09 39 00 00 00 00 00 00 00 01"},
        {"no bytes", ColumnType::Binary, Value::OfBytes(""), true, "7F"},
        {"decimal", ColumnType::Numeric, Value::OfDecimal("1.5"), true,
         "7F FF 00 00 00 00 00 00 00 00 00 00 00 00 00 00 3A 98"},
        {"negative decimal", ColumnType::Numeric, Value::OfDecimal("-1.5"), true,
         "7F 00 FF FF FF FF FF FF FF FF FF FF FF FF FF FF C5 67"},
        {"decimal descending", ColumnType::Numeric, Value::OfDecimal("1.5"), false,
         "80 FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF C5 67"},
        {"negative decimal descending", ColumnType::Numeric, Value::OfDecimal("-1.5"), false,
         "80 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 3A 98"},
    };
    for (const ValueCase& row : cases) {
        std::string key;
        AppendKey(key, row.value, ColumnOf(row.type), row.ascending);
        EXPECT_EQ(Hex(key), row.key) << row.name;
    }
}

TEST(IndexKey, OfStoredTextSwitchesBetweenOneByteAndTwo) {
    const std::uint8_t stored[] = {0xFF, 0xFE, 'a', 0, 0x1C, 0x04, 0, 'b'};
    std::string key, expected;
    AppendStoredKey(key, stored, ColumnOf(ColumnType::Text), true);
    AppendTextKey(expected, "aМb", true);
    EXPECT_EQ(Hex(key), Hex(expected));
    EXPECT_THROW(AppendStoredKey(key, std::span(stored, 3), ColumnOf(ColumnType::Long), true), Error);
    EXPECT_THROW(AppendStoredKey(key, stored, ColumnOf(ColumnType::Ole), true), Error);
}

/// A table of two columns with one index over both, the second descending.
struct TwoColumns {
    TableDefinition table;
    RealIndex index;
    explicit TwoColumns(std::uint8_t flags) {
        table.name = "T";
        table.columns = {ColumnOf(ColumnType::Long, 5), ColumnOf(ColumnType::Text, 7)};
        index.name = "I";
        index.flags = flags;
        index.columns = {{7, true}, {5, false}};
    }
};

TEST(IndexKey, OfARowFollowsTheNullRulesOfItsIndex) {
    const Value row[] = {Value::OfInteger(-1), Value::OfText("A")};
    const Value half[] = {Value(), Value::OfText("A")};
    const Value empty[] = {Value(), Value()};
    const TwoColumns plain(kUniqueIndex), ignoring(kIgnoreNullsIndex), required(kRequiredIndex);
    std::string key;
    EXPECT_EQ(IndexKey(plain.table, plain.index).Build(key, row), KeyState::Whole);
    EXPECT_EQ(Hex(key), "7F 4A 01 00 80 80 00 00 00");
    EXPECT_EQ(IndexKey(plain.table, plain.index).Build(key, half), KeyState::HasNull);
    EXPECT_EQ(Hex(key), "7F 4A 01 00 FF");
    EXPECT_EQ(IndexKey(plain.table, plain.index).Build(key, empty), KeyState::HasNull);
    EXPECT_EQ(Hex(key), "00 FF");
    EXPECT_EQ(IndexKey(ignoring.table, ignoring.index).Build(key, half), KeyState::HasNull);
    EXPECT_EQ(IndexKey(ignoring.table, ignoring.index).Build(key, empty), KeyState::NoEntry);
    EXPECT_EQ(ErrorOf([&] { IndexKey(required.table, required.index).Build(key, half); }),
              "Index or primary key cannot contain a Null value: index 'I' of table 'T'.");
}

TEST(IndexKey, NamesTheSortOrderThatItCannotFollow) {
    TwoColumns polish(0);
    polish.table.columns[1].sortOrder.language = 1045;
    const IndexKey key(polish.table, polish.index);
    EXPECT_EQ(key.Obstacle(),
              "Index 'I' of table 'T' sorts texts by the rules of language 1045, which this program does not have.");
    std::string built;
    const Value row[] = {Value::OfInteger(1), Value::OfText("A")};
    EXPECT_EQ(ErrorOf([&] { key.Build(built, row); }), key.Obstacle());
    polish.index.columns[0].columnId = 6;
    EXPECT_EQ(ErrorOf([&] { IndexKey(polish.table, polish.index); }),
              "Index 'I' of table 'T' names a column that does not exist.");
}

TEST(IndexKey, OfMoreThan510BytesEndsWithAChecksum) {
    std::string key(510, 'k');
    CutLongKey(key, 0);
    EXPECT_EQ(key, std::string(510, 'k'));
    key.assign(3, 'p');
    key += std::string(508, 'k') + std::string("\x12\x34\x01", 3);
    CutLongKey(key, 3);
    EXPECT_EQ(key.size(), 3 + 510U);
    EXPECT_EQ(Hex(std::string_view(key).substr(510)), "6B 6D 34");
}

TEST(IndexKey, RowIdsAreReadAsTheyAreWritten) {
    std::string entry = "key";
    AppendRowId(entry, {0x012345, 0x67});
    EXPECT_EQ(Hex(entry), "6B 65 79 01 23 45 67");
    EXPECT_EQ(RowIdOf(entry), (RowPointer{0x012345, 0x67}));
    EXPECT_EQ(KeyOf(entry), "key");
}

}  // namespace
