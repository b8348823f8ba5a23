#include "ado/types/Decimal.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/Error.h"
#include "tests/support/ErrorOf.h"

namespace varnel {
namespace {

Decimal Read(std::string_view text) {
    Decimal number;
    EXPECT_TRUE(ParseDecimal(text, number)) << text;
    return number;
}

std::string Text(const Decimal& number) {
    std::string text;
    AppendDecimalText(text, number);
    return text;
}

constexpr const char* kLargest = "99999999999999999999999999999999999999";  // 38 digits

TEST(DecimalTest, ReadsAndWritesEveryDigit) {
    struct Case {
        std::string text, expected;
    };
    const std::string nines = kLargest;
    const Case cases[] = {{"1.50", "1.5"},
                          {" -0.05 ", "-0.05"},
                          {"+1500", "1500"},
                          {"1.5E3", "1500"},
                          {"1500e-3", "1.5"},
                          {".5", "0.5"},
                          {"5.", "5"},
                          {"-0.000", "0"},
                          {"0e999999999", "0"},
                          {"000123", "123"},
                          {nines, nines},
                          {"-0." + nines, "-0." + nines},
                          {"1e37", "1" + std::string(37, '0')},
                          {"1e-38", "0." + std::string(37, '0') + "1"},
                          {"1" + std::string(60, '0') + "e-60", "1"},
                          {"1." + std::string(60, '0'), "1"},
                          {"12345678901234567890.12345678901234567", "12345678901234567890.12345678901234567"},
                          {"10000000000000000000", "10000000000000000000"},
                          {"0.10000000000000000001", "0.10000000000000000001"}};
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(Text(Read(text)), expected) << text;
    }
}

TEST(DecimalTest, TellsNoNumberFromTooLong) {
    Decimal number;
    for (const char* text :
         {"", " ", ".", "-", "1.2.3", "1e", "1e+", "e5", "1 2", "abc", "1x", "--1", "1e5.0", "1,5", "\t1"}) {
        EXPECT_FALSE(ParseDecimal(text, number)) << text;
    }
    for (const std::string& text : {std::string(kLargest) + "9", std::string("1e38"), std::string("1e-39"),
                                    std::string("1e99999999999999999999"), "0." + std::string(38, '0') + "1"}) {
        EXPECT_EQ(ErrorOf([&] { ParseDecimal(text, number); }), "Overflow") << text;
    }
}

TEST(DecimalTest, EqualsWhateverTheScale) {
    EXPECT_EQ((Decimal{150, 2, false}), (Decimal{15, 1, false}));
    EXPECT_EQ((Decimal{0, 5, true}), (Decimal{}));
    EXPECT_FALSE((Decimal{15, 1, false}) == (Decimal{15, 1, true}));
    EXPECT_FALSE((Decimal{15, 1, false}) == (Decimal{15, 0, false}));
}

TEST(DecimalTest, DoublesComeAndGoCorrectlyRounded) {
    for (const double number : {0.1, -0.3, 1e22, 123456.789, 9007199254740993.0, 1.7976931348623157e+30, 5e-38, 0.0}) {
        EXPECT_EQ(ToDouble(DecimalFromDouble(number)), number);
    }
    EXPECT_EQ(ToDouble(Read("0.1000000000000000055511151231257827")), 0.1);
    EXPECT_EQ(ToDouble(Read("-9007199254740992.9999999999")), -9007199254740992.0);
    EXPECT_EQ(ToDouble(Read(kLargest)), 1e38);
    EXPECT_EQ(Text(DecimalFromDouble(0.1 + 0.2)), "0.30000000000000004");
    for (const double number : {1e38, 1e300, 1e-39, std::nan(""), -HUGE_VAL}) {
        EXPECT_THROW(DecimalFromDouble(number), Error) << number;
    }
}

TEST(DecimalTest, RoundsTiesToEven) {
    const struct {
        const char* text;
        int scale;
        const char* rounded;
    } cases[] = {{"2.5", 0, "2"},     {"3.5", 0, "4"},
                 {"-2.5", 0, "-2"},   {"2.500001", 0, "3"},
                 {"0.00005", 4, "0"}, {"0.00015", 4, "0.0002"},
                 {"-0.4", 0, "0"},    {"1.5", 4, "1.5"},
                 {"99.99", 1, "100"}, {"0.00000000000000000000000000000000000001", 0, "0"}};
    for (const auto& [text, scale, rounded] : cases) {
        EXPECT_EQ(Text(RoundedToScale(Read(text), scale)), rounded) << text;
    }
    EXPECT_FALSE(RoundedToScale(Read("-0.4"), 0).negative);
}

TEST(DecimalTest, CurrencyReachesItsLimits) {
    const struct {
        const char* text;
        std::int64_t scaled;
    } cases[] = {{"922337203685477.5807", std::numeric_limits<std::int64_t>::max()},
                 {"-922337203685477.5808", std::numeric_limits<std::int64_t>::min()},
                 {"1.00005", 10000},
                 {"-7", -70000}};
    for (const auto& [text, scaled] : cases) {
        EXPECT_EQ(CurrencyFromDecimal(Read(text)), scaled) << text;
    }
    EXPECT_EQ(Text(DecimalFromCurrency(std::numeric_limits<std::int64_t>::min())), "-922337203685477.5808");
    EXPECT_EQ(ErrorOf([] { CurrencyFromDecimal(Read("922337203685477.5808")); }), "Overflow");
    EXPECT_EQ(ErrorOf([] { CurrencyFromDecimal(Read(kLargest)); }), "Overflow");
}

TEST(DecimalTest, CountsDigitsBeforeThePoint) {
    EXPECT_EQ(IntegerDigits(Read("0.99")), 0);
    EXPECT_EQ(IntegerDigits(Read("1.99")), 1);
    EXPECT_EQ(IntegerDigits(Read(kLargest)), 38);
    EXPECT_EQ(IntegerDigits(Read("10000000000000000000.5")), 20);
}

}  // namespace
}  // namespace varnel
