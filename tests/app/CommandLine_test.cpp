#include "app/CommandLine.h"

#include <gtest/gtest.h>

namespace varnel {
namespace {

using Words = std::vector<std::string>;

TEST(CommandLine, SplitsAtBlanksAndTabsOnly) {
    EXPECT_EQ(GetCommandLine("  12\t\tshowoutput  ", 3), (Words{"", "12", "showoutput", ""}));
    EXPECT_EQ(GetCommandLine("12 showoutput extra and more", 3), (Words{"", "12", "showoutput", "extra"}));
    EXPECT_EQ(GetCommandLine("\"a b\"\r\nc", 3), (Words{"", "\"a", "b\"\r\nc", ""}));
    EXPECT_EQ(GetCommandLine("", 1), (Words{"", ""}));
    EXPECT_EQ(GetCommandLine("a b", 0), (Words{""}));
    EXPECT_EQ(GetCommandLine("x").size(), 11u);
}

TEST(CommandLine, TakesADecimalNumberForASession) {
    struct Case {
        const char* word;
        std::optional<std::int16_t> session;
    };
    const Case cases[] = {{"12", 12},
                          {"+7", 7},
                          {"-3", -3},
                          {"2.5", 2},
                          {"3.5", 4},
                          {"5.", 5},
                          {".6", 1},
                          {"1e2", 100},
                          {"25E-1", 2},
                          {"0", 0},
                          {"0.4", 0},
                          {"32767.4", 32767},
                          {"-32768", -32768},
                          {"32768", std::nullopt},
                          {"32767.5", std::nullopt},
                          {"1e999", std::nullopt},
                          {"", std::nullopt},
                          {"abc", std::nullopt},
                          {"\"12\"", std::nullopt},
                          {"12x", std::nullopt},
                          {"1e", std::nullopt},
                          {".", std::nullopt},
                          {"+-1", std::nullopt},
                          {"1,000", std::nullopt},
                          {"0x10", std::nullopt},
                          {"inf", std::nullopt},
                          {"nan", std::nullopt}};
    for (const Case& c : cases) EXPECT_EQ(ParseSessionNumber(c.word), c.session) << c.word;
}

}  // namespace
}  // namespace varnel
