#include "ado/types/ValueText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "ado/types/DataTypeEnum.h"
#include "ado/types/ValueConvert.h"
#include "platform/Error.h"
#include "tests/support/ErrorOf.h"

namespace varnel {
namespace {

DateTime At(const char* text) {
    return ParseDateTime(text).value();
}

struct TextCase {
    Value value;
    const char* text;
    const char* numeric;
};

TEST(ValueTextTest, DefaultAndNumericText) {
    constexpr auto kMin = std::numeric_limits<std::int64_t>::min();
    for (const auto& [value, text, numeric] :
         {TextCase{Value::OfInteger(42), "42", " 42"},
          {Value::OfInteger(-7), "-7", "-7"},
          {Value::OfInteger(0), "0", " 0"},
          {Value::OfInteger(kMin), "-9223372036854775808", "-9223372036854775808"},
          {Value::OfDouble(0.5), "0.5", " 0.5"},
          {Value::OfDouble(-0.5), "-0.5", "-0.5"},
          {Value::OfDouble(-0.0), "0", " 0"},
          {Value::OfDouble(0.1 + 0.2), "0.30000000000000004", " 0.30000000000000004"},
          {Value::OfDouble(4), "4", " 4"},
          {Value::OfDouble(1e14), "100000000000000", " 100000000000000"},
          {Value::OfDouble(1e15), "1E+15", " 1E+15"},
          {Value::OfDouble(999999999999999.9), "999999999999999.9", " 999999999999999.9"},
          {Value::OfDouble(1e-5), "0.00001", " 0.00001"},
          {Value::OfDouble(1.25e-5), "0.0000125", " 0.0000125"},
          {Value::OfDouble(9.9e-6), "9.9E-06", " 9.9E-06"},
          {Value::OfDouble(-1.5e-7), "-1.5E-07", "-1.5E-07"},
          {Value::OfDouble(1.5e22), "1.5E+22", " 1.5E+22"},
          {Value::OfDouble(5e-324), "5E-324", " 5E-324"},
          {Value::OfDouble(9007199254740993), "9.007199254740992E+15", " 9.007199254740992E+15"},
          {Value::OfDouble(INFINITY), "1.#INF", " 1.#INF"},
          {Value::OfDouble(-INFINITY), "-1.#INF", "-1.#INF"},
          {Value::OfSingle(0.1f), "0.1", " 0.1"},
          {Value::OfSingle(1234567936.0f), "1234568000", " 1234568000"},
          {Value::OfSingle(16777216.0f), "16777216", " 16777216"},
          {Value::OfSingle(1e15f), "1E+15", " 1E+15"},
          {Value::OfSingle(-1.0f / 3), "-0.33333334", "-0.33333334"},
          {Value::OfCurrency(15000), "1.5", " 1.5"},
          {Value::OfCurrency(-9), "-0.0009", "-0.0009"},
          {Value::OfCurrency(-10010), "-1.001", "-1.001"},
          {Value::OfCurrency(0), "0", " 0"},
          {Value::OfCurrency(kMin), "-922337203685477.5808", "-922337203685477.5808"},
          {Value::OfDecimal("-0.0500"), "-0.05", "-0.05"},
          {Value::OfDecimal("1500"), "1500", " 1500"},
          {Value::OfBoolean(true), "True", "True"},
          {Value::OfBoolean(false), "False", "False"},
          {Value::OfDateTime(At("2026-11-18 16:23:05")), "11/18/2026 4:23:05 PM", "11/18/2026 4:23:05 PM"},
          {Value::OfText(" 12.50 "), " 12.50 ", " 12.5"},
          {Value::OfText("-1E3"), "-1E3", "-1000"},
          {Value::OfText("12345678901234567890"), "12345678901234567890", " 12345678901234567890"},
          {Value::OfText("1e300"), "1e300", " 1E+300"}}) {
        EXPECT_EQ(DefaultText(value), text);
        EXPECT_EQ(NumericText(value), numeric);
    }
    EXPECT_EQ(DefaultText(Value::OfDouble(std::nan(""))), "-1.#IND");
}

TEST(ValueTextTest, NoTextOfNullFailuresAndWhatIsNoNumber) {
    Value failure;
    failure.SetFailure("cell 3 is cut off");
    for (const auto& text : {DefaultText, NumericText}) {
        EXPECT_EQ(ErrorOf([&] { text(Value()); }), "Invalid use of Null");
        EXPECT_EQ(ErrorOf([&] { text(failure); }), "cell 3 is cut off");
    }
    const Value guid = Value::OfGuid("0123abcd-4567-89ab-cdef-0123456789ab");
    for (const Value& value : {Value::OfText("abc"), Value::OfText(""), Value::OfBytes("1"), guid}) {
        EXPECT_EQ(ErrorOf([&] { NumericText(value); }), "Type mismatch");
    }
    EXPECT_EQ(DefaultText(Value::OfBytes(std::string("\x00\x9F\xff", 3))), "009FFF");
    EXPECT_EQ(DefaultText(guid), "{0123ABCD-4567-89AB-CDEF-0123456789AB}");
}

TEST(ValueTextTest, RandomFloatsReadBackEqual) {
    std::mt19937_64 random(20261118);
    for (int k = 0; k < 20000; ++k) {
        const std::uint64_t bits = random();
        double real = 0;
        std::memcpy(&real, &bits, sizeof real);
        if (!std::isfinite(real)) continue;
        ASSERT_EQ(ParseDouble(DefaultText(Value::OfDouble(real))), real);
        const float single = static_cast<float>(static_cast<double>(static_cast<std::int32_t>(bits)) * 1e-3);
        ASSERT_EQ(static_cast<float>(ParseDouble(DefaultText(Value::OfSingle(single))).value()), single);
    }
}

TEST(DateTextTest, GeneralDate) {
    struct Case {
        const char* moment;
        const char* text;
    };
    for (const auto& [moment, text] : {Case{"2026-11-18 16:23:05", "11/18/2026 4:23:05 PM"},
                                       {"2026-11-18", "11/18/2026"},
                                       {"2026-01-02 00:30:00", "1/2/2026 12:30:00 AM"},
                                       {"2026-01-02 12:00:00", "1/2/2026 12:00:00 PM"},
                                       {"06:00:00", "6:00:00 AM"},
                                       {"00:00:00", "12:00:00 AM"},
                                       {"0100-01-01", "1/1/100"},
                                       {"2026-12-31 23:59:59.5", "1/1/2027"},
                                       {"2026-11-18 16:23:05.499999", "11/18/2026 4:23:05 PM"},
                                       {"1899-12-29 06:00:00", "12/29/1899 6:00:00 AM"}}) {
        EXPECT_EQ(GeneralDate(At(moment)), text);
    }
}

TEST(DateTextTest, OtherForms) {
    const DateTime moment = At("2003-07-05 13:05:09.25");
    const auto appended = [&](void (*append)(std::string&, DateTime), DateTime value) {
        std::string text = "<";
        append(text, value);
        return text;
    };
    EXPECT_EQ(ShortDate(moment), "7/5/2003");
    EXPECT_EQ(TwelveHourTime(moment), "01:05:09 PM");
    EXPECT_EQ(TwelveHourTime(At("00:00:00")), "12:00:00 AM");
    EXPECT_EQ(appended(AppendDashedDateTime, moment), "<2003-07-05-13-05-09");
    EXPECT_EQ(appended(AppendIsoDate, moment), "<2003-07-05");
    EXPECT_EQ(appended(AppendIsoDateTime, moment), "<2003-07-05 13:05:09.25");
    EXPECT_EQ(appended(AppendIsoDateTime, At("0099-01-01 00:00:00.000100")), "<0099-01-01 00:00:00.0001");
    EXPECT_EQ(appended(AppendDashedDateTime, At("16:23")), "<1899-12-30-16-23-00");
    EXPECT_EQ(FileStamp(At("2026-11-08 16:05:09")), "08_Nov_26_16_5_09");
    EXPECT_EQ(FileStamp(At("2009-01-18 06:15:00")), "18_Jan_09_06_15_00");
}

TEST(GuidTextTest, RefusesWhatIsNoGuid) {
    GuidBytes guid{};
    EXPECT_TRUE(ParseGuid("{0123ABCD-4567-89ab-CDEF-0123456789AB}", guid));
    EXPECT_EQ(guid[0], 0x01);
    EXPECT_EQ(guid[15], 0xAB);
    for (const char* text : {"", "{}", "0123ABCD-4567-89AB-CDEF-0123456789A", "{0123ABCD-4567-89AB-CDEF-0123456789AB",
                             "0123ABCD456789ABCDEF0123456789ABCDEF", "0123ABCD-4567-89AB-CDEF-0123456789AG",
                             "0123ABCD-4567-89ABC-DEF-0123456789AB", "(0123ABCD-4567-89AB-CDEF-0123456789AB)"}) {
        EXPECT_FALSE(ParseGuid(text, guid)) << text;
    }
    EXPECT_EQ(guid[0], 0x01);  // untouched by what was refused
}

TEST(DataTypeEnumTest, LongOrBinaryIsALiteralList) {
    std::string listed;
    for (int code = 0; code < 256; ++code) {
        if (IsLongOrBinary(static_cast<DataTypeEnum>(code))) listed += std::to_string(code) + " ";
    }
    EXPECT_EQ(listed, "128 201 203 204 205 ");
    EXPECT_STREQ(DesignerTypeName(adVarWChar), "VarWchar");
    EXPECT_STREQ(DesignerTypeName(adBigInt), "");
}

}  // namespace
}  // namespace varnel
