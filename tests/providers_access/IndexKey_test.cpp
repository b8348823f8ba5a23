#include <gtest/gtest.h>

#include "providers/access/IndexKey.h"
#include "providers/access/TextKey.h"

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

struct TextCase {
    const char* text;
    bool ascending;
    const char* key;
};

TEST(TextKey, IsTheNativeOne) {
    const TextCase cases[] = {
        {"", true, "7F 01 00"},
        {"A", true, "7F 4A 01 00"},
        {"a", true, "7F 4A 01 00"},
        {"A", false, "80 B5 FE FF 00"},
        {"a b ", true, "7F 4A 07 4C 01 00"},
        {"Anne-Marie", true, "7F 4A 62 62 51 60 4A 69 59 51 01 01 01 01 80 17 06 82 00"},
        {"O'Brien", true, "7F 64 4C 69 59 51 62 01 01 01 01 80 0B 06 80 00"},
        {"a-b", false, "80 B5 B3 FE FE FE FE 7F F4 F9 7D FF 00"},
        {"México D.F.", true, "7F 60 51 75 59 4D 64 07 4F 1C 53 1C 01 02 0E 00"},
        {"Aß-B", true, "7F 4A 6B 6B 4C 01 01 01 01 80 13 06 82 00"},
        {"Ærøskøbing", true, "7F 4A 51 69 64 6B 5C 64 4C 59 62 55 01 02 02 02 21 02 02 21 00"},
        {"Łódź", true, "7F 5E 64 4F 78 01 1F 0E 02 0E 00"},
        {"é", false, "80 AE FE F1 FF 00"},
        {"Å-2", true, "7F 4A 3A 01 1A 01 01 01 80 0B 06 82 00"},
        {"a\u0301", true, "7F 4A 01 0E 00"},
        {"£-", true, "7F 34 A7 01 01 01 01 80 0B 06 82 00"},
        {"3½", true, "7F 3C 37 16 01 00"},
        {"Мир", true, "7F 79 43 79 3B 79 48 01 00"},
        {"が", true, "7F 7F 0A 01 03 01 01 FF 02 80 FF 80 00"},
        {"漢", true, "7F C0 B6 01 00"},
        {"a\U0001F600b", true, "7F 4A 4C 01 00"},
        // A combining mark before any letter; a small kana; a repeat mark after a letter and alone.
        {"\u0301aé", true, "7F 4A 51 01 0C 02 0E 00"},
        {"ぁ-", true, "7F 7F 02 01 01 01 A0 FF 02 80 FF 80 FF 01 80 0B 06 82 00"},
        {"a\u3031", true, "7F 4A 4A 01 00"},
        {"\u3031", true, "7F FF FF 01 00"}};
    for (const TextCase& row : cases) {
        std::string key;
        AppendTextKey(key, row.text, row.ascending);
        EXPECT_EQ(Hex(key), row.key) << row.text;
    }
}

TEST(TextKey, LooksAt255UnitsAndDropsTheBlanksBefore) {
    std::string longKey, shortKey;
    AppendTextKey(longKey, std::string(254, 'x') + " yyy", true);
    AppendTextKey(shortKey, std::string(254, 'x'), true);
    EXPECT_EQ(longKey, shortKey);
}

TEST(TextKey, IsBuiltForTheSortOrdersThatAgreeWithEnglish) {
    const std::pair<SortOrder, bool> cases[] = {{{0x0409, 0, 0}, true},  {{0x0809, 0, 0}, true},  {{1049, 0, 0}, true},
                                                {{0x0409, 0, 1}, false}, {{0x0409, 1, 0}, false}, {{1045, 0, 0}, false},
                                                {{1034, 0, 0}, false}};
    for (const auto& [order, canBuild] : cases) EXPECT_EQ(CanBuildTextKeys(order), canBuild) << SortOrderName(order);
}

struct ValueCase {
    ColumnType type;
    Value value;
    bool ascending;
    const char* key;
};

/// Of types that have no index in a sample.
TEST(IndexKey, OfSingleValues) {
    const ValueCase cases[] = {
        {ColumnType::Single, Value::OfSingle(1), false, "80 40 7F FF FF"},
        {ColumnType::Binary, Value::OfBytes(std::string_view("\0\0\0\1", 4)), true, "7F 00 00 00 01 00 00 00 00 04"},
        {ColumnType::Binary, Value::OfBytes("123456789"), true,
         "7F 31 32 33 34 35 36 37 38 09 39 00 00 00 00 00 00 00 01"},
        {ColumnType::Binary, Value::OfBytes(""), true, "7F"},
        {ColumnType::Guid, Value::OfGuid("{01020304-0506-0708-090A-0B0C0D0E0F10}"), true,
         "7F 01 02 03 04 05 06 07 08 09 09 0A 0B 0C 0D 0E 0F 10 08"},
        {ColumnType::Guid, Value::OfGuid("{01020304-0506-0708-090A-0B0C0D0E0F10}"), false,
         "80 FE FD FC FB FA F9 F8 F7 09 F6 F5 F4 F3 F2 F1 F0 EF F7"},
    };
    for (const ValueCase& row : cases) {
        Column column;
        column.type = row.type;
        std::string key;
        AppendKey(key, row.value, column, row.ascending);
        EXPECT_EQ(Hex(key), row.key);
    }
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

}  // namespace
