#include "platform/CodePage.h"

#include <gtest/gtest.h>

#include "platform/Error.h"
#include "tests/support/ErrorOf.h"

namespace varnel {
namespace {

using namespace std::string_literals;

std::span<const std::uint8_t> Bytes(const std::string& text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

TEST(Utf8Test, KnowsWellFormedText) {
    for (const std::string& good :
         {""s, "plain"s, "\xC2\x80"s, "\xED\x9F\xBF"s, "\xEE\x80\x80"s, "\xF4\x8F\xBF\xBF"s}) {
        EXPECT_TRUE(IsUtf8(good)) << good;
    }
    for (const std::string& bad :
         {"\x80"s, "\xC0\x80"s, "\xC1\xBF"s, "\xE0\x9F\xBF"s, "\xED\xA0\x80"s, "\xF0\x8F\xBF\xBF"s, "\xF4\x90\x80\x80"s,
          "\xF5\x80\x80\x80"s, "ab\xC3"s, "\xC3(x"s, "\xE2\x82"s}) {
        EXPECT_FALSE(IsUtf8(bad)) << bad;
    }
    EXPECT_EQ(CharacterCount("aß€😀"), 4u);
}

TEST(FoldCaseTest, MapsSingleCharacters) {
    const struct {
        const char* text;
        const char* folded;
    } cases[] = {
        {"ORDERS_1", "orders_1"}, {"ÄÖÜ", "äöü"}, {"ΑΒΓ", "αβγ"}, {"ЖЁ", "жё"}, {"STRASSE", "strasse"},
        {"Straße", "straße"},     {"Ǆ", "ǆ"},     {"Ｚ", "ｚ"},   {"𐐀", "𐐨"},   {"bad\xFF\xC3", "bad\xFF\xC3"}};
    for (const auto& [text, folded] : cases) {
        EXPECT_EQ(FoldCase(text), folded);
    }
}

struct PageCase {
    int page;
    std::string bytes, utf8;
};

TEST(CodePageTest, ConvertsBothWays) {
    const PageCase cases[] = {{1252, "caf\xE9 \x80 5", "café € 5"},
                              {1250, "\xB3\xF3\x9F", "łóź"},
                              {1251, "\xCF\xF0\xE8", "При"},
                              {437, "\x81\xE1\x1A\x7F", "üß\x1A\x7F"},
                              {850, "\x9B\xD5", "øı"},
                              {852, "\x88", "ł"},
                              {866, "\x8F\xE0", "Пр"},
                              {874, "\xA1", "ก"},
                              {932, "\x83\x65\\~", "テ\\~"},
                              {936, "\xC4\xE3", "你"},
                              {949, "\xB0\xA1", "가"},
                              {950, "\xA7\x41", "你"},
                              {20866, "\xF0", "П"},
                              {28591, "\xE9\x85", "é\xC2\x85"},
                              {28605, "\xA4", "€"},
                              {65001, "aß€", "aß€"},
                              {1200, "a\0=\xD8\x00\xDE"s, "a😀"},
                              {1201, "\0a\xD8=\xDE\x00"s, "a😀"},
                              {1252, "", ""},
                              {1200, "", ""}};
    for (const auto& [page, bytes, utf8] : cases) {
        const CodePage codePage(page);
        std::string decoded = "<", encoded = "<";
        codePage.Decode(decoded, bytes);
        codePage.Encode(encoded, utf8);
        EXPECT_EQ(decoded, "<" + utf8) << page;
        EXPECT_EQ(encoded, "<" + bytes) << page;
    }
}

TEST(CodePageTest, EveryByteOfASingleBytePageComesBackOrIsRefused) {
    for (const int page : {437, 850, 852, 866, 874, 1250, 1251, 1252, 1253, 1254, 1255, 1256, 1257, 1258, 20866, 28591,
                           28592, 28605, 28606}) {
        const CodePage codePage(page);
        int refused = 0;
        for (int byte = 0; byte < 256; ++byte) {
            const std::string one(1, static_cast<char>(byte));
            std::string utf8, back;
            if (!ErrorOf([&] { codePage.Decode(utf8, one); }).empty()) {
                ++refused;
                continue;
            }
            codePage.Encode(back, utf8);
            EXPECT_EQ(back, one) << page;
        }
        const bool isFull = page == 437 || page == 850 || page == 866 || page == 1256 || page == 28591 || page == 28605;
        EXPECT_TRUE(!isFull || refused == 0) << page << " refuses " << refused;
        EXPECT_TRUE(page != 1252 || refused == 5) << refused;
    }
}

TEST(CodePageTest, LongTextsOfManyBytesPassTheBlock) {
    const CodePage codePage(932);
    std::string utf8, bytes, back;
    for (int k = 0; k < 3000; ++k) utf8 += "aテ";
    codePage.Encode(bytes, utf8);
    codePage.Decode(back, bytes);
    EXPECT_EQ(bytes.size(), 9000u);
    EXPECT_EQ(back, utf8);
}

TEST(CodePageTest, NamesWhatDoesNotConvert) {
    std::string out;
    const CodePage western(1252), japanese(932), utf8(65001), utf16(1200);
    EXPECT_EQ(ErrorOf([&] { western.Encode(out, "aλ"); }), "the character 'λ' (U+03BB) has no place in code page 1252");
    EXPECT_EQ(ErrorOf([&] { western.Decode(out, "ab\x81"); }),
              "byte 0x81 at position 3 has no meaning in code page 1252");
    EXPECT_EQ(ErrorOf([&] { japanese.Encode(out, "テ😀"); }),
              "the character '😀' (U+1F600) has no place in code page 932");
    EXPECT_EQ(ErrorOf([&] { japanese.Decode(out, "a\x83"); }),
              "byte 0x83 at position 2 has no meaning in code page 932");
    EXPECT_NE(ErrorOf([&] { utf8.Decode(out, "a\xFF"); }), "");
    EXPECT_NE(ErrorOf([&] { utf8.Encode(out, "a\xFF"); }), "");
    EXPECT_NE(ErrorOf([&] { western.Encode(out, "a\xC3"); }), "");
    EXPECT_NE(ErrorOf([&] { utf16.Decode(out, "abc"); }), "");
    EXPECT_EQ(out, "");  // nothing of what failed half way
    for (const int page : {0, 1, 12000, 1047, 28602, 99999, -1252}) {
        EXPECT_NE(ErrorOf([&] { CodePage unknown(page); }).find(std::to_string(page)), std::string::npos) << page;
    }
}

TEST(Utf16Test, RefusesUnpairedSurrogates) {
    for (const std::string& bad : {"a"s, "\x3D\xD8"s, "\x3D\xD8\x61\x00"s, "\x00\xDE"s, "\x3D\xD8\x3D\xD8"s}) {
        std::string out = "<";
        EXPECT_THROW(AppendUtf8FromUtf16(out, Bytes(bad)), Error);
        EXPECT_EQ(out, "<");
    }
    std::string out;
    EXPECT_THROW(AppendUtf16FromUtf8(out, "\xED\xA0\x80"), Error);
}

}  // namespace
}  // namespace varnel
