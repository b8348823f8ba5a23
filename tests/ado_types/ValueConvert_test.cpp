#include "ado/types/ValueConvert.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "ado/types/ValueText.h"
#include "platform/Error.h"
#include "tests/support/ErrorOf.h"

namespace varnel {
namespace {

using namespace std::string_literals;

Value I(std::int64_t number) {
    return Value::OfInteger(number);
}
Value D(double number) {
    return Value::OfDouble(number);
}
Value S(float number) {
    return Value::OfSingle(number);
}
Value C(std::int64_t scaled) {
    return Value::OfCurrency(scaled);
}
Value N(const char* digits) {
    return Value::OfDecimal(digits);
}
Value T(std::string_view text) {
    return Value::OfText(text);
}
Value B(bool truth) {
    return Value::OfBoolean(truth);
}
Value M(const char* moment) {
    return Value::OfDateTime(ParseDateTime(moment).value());
}
const Value kGuid = Value::OfGuid("{0123ABCD-4567-89AB-CDEF-0123456789AB}");

struct ConvertCase {
    Value from;
    DataTypeEnum type;
    Value expected;
};

TEST(ConvertValueTest, KeepsWhatTheTypeHolds) {
    constexpr auto kMax = std::numeric_limits<std::int64_t>::max();
    const ConvertCase cases[] = {
        {I(-32768), adSmallInt, I(-32768)},
        {D(3), adInteger, I(3)},
        {C(30000), adInteger, I(3)},
        {N("3.00"), adInteger, I(3)},
        {T(" 1e3 "), adInteger, I(1000)},
        {B(true), adInteger, I(1)},
        {S(255), adUnsignedTinyInt, I(255)},
        {I(-128), adTinyInt, I(-128)},
        {I(4294967295), adUnsignedInt, I(4294967295)},
        {D(-9223372036854775808.0), adBigInt, I(-kMax - 1)},
        {T("18446744073709551615"), adUnsignedBigInt, N("18446744073709551615")},
        {S(0.1f), adDouble, D(static_cast<double>(0.1f))},
        {I(1LL << 60), adDouble, D(1152921504606846976.0)},
        {N("0.1"), adDouble, D(0.1)},
        {C(9223372036854770000), adDouble, D(922337203685477)},
        {T("0.10000000000000001"), adDouble, D(0.1)},
        {D(0.1), adSingle, S(0.1f)},
        {D(static_cast<double>(0.1f)), adSingle, S(0.1f)},
        {I(16777216), adSingle, S(16777216)},
        {N("1.5"), adCurrency, C(15000)},
        {D(0.0001), adCurrency, C(1)},
        {I(922337203685477), adCurrency, C(9223372036854770000)},
        {T("-1.2345"), adCurrency, C(-12345)},
        {S(0.1f), adNumeric, N("0.1")},
        {D(0.1), adVarNumeric, N("0.1")},
        {C(15000), adDecimal, N("1.5")},
        {T("0.12345678901234567890123456789012345678"), adNumeric, N("0.12345678901234567890123456789012345678")},
        {M("2026-11-18 16:23:05"), adDate, M("2026-11-18 16:23:05")},
        {M("2026-11-18"), adDBDate, M("2026-11-18")},
        {M("16:23"), adDBTime, M("16:23")},
        {T("11/18/2026 4:23:05 PM"), adDBTimeStamp, M("2026-11-18 16:23:05")},
        {D(46344.25), adDate, M("2026-11-18 06:00:00")},
        {M("2026-11-18 06:00:00"), adDouble, D(46344.25)},
        {I(-5), adBoolean, B(true)},
        {D(0), adBoolean, B(false)},
        {T(" false"), adBoolean, B(false)},
        {T("0.00"), adBoolean, B(false)},
        {T("-1"), adBoolean, B(true)},
        {N("0.1"), adBoolean, B(true)},
        {kGuid, adGUID, kGuid},
        {T("0123abcd-4567-89ab-cdef-0123456789ab"), adGUID, kGuid},
        {kGuid, adVarChar, T("{0123ABCD-4567-89AB-CDEF-0123456789AB}")},
        {D(1.5), adVarWChar, T("1.5")},
        {B(true), adChar, T("True")},
        {M("2026-11-18"), adBSTR, T("11/18/2026")},
        {Value::OfBytes("a\0\xE4\0"s), adLongVarWChar, T("aä")},
        {Value::OfBytes("\0\xFF"s), adLongVarBinary, Value::OfBytes("\0\xFF"s)},
        {Value(), adInteger, Value()},
        {T("x"), adVariant, T("x")},
        {D(0.5), adEmpty, D(0.5)}};
    for (const auto& [from, type, expected] : cases) {
        Value into = T("something before");
        EXPECT_EQ(ErrorOf([&into, &value = from, to = type] { ConvertValue(value, to, into); }), "")
            << static_cast<int>(type);
        EXPECT_EQ(into, expected) << static_cast<int>(type) << ": " << (into.IsNull() ? "Null" : DefaultText(into));
    }
}

TEST(ConvertValueTest, RefusesWhatWouldChange) {
    const struct {
        const char* word;
        DataTypeEnum type;
        std::vector<Value> values;
    } cases[] = {
        {"Overflow", adSmallInt, {I(32768)}},
        {"Overflow", adInteger, {I(2147483648), D(1.5), C(1), T("1.5"), D(std::nan("")), M("2026-11-18 06:00:00")}},
        {"Overflow", adUnsignedTinyInt, {I(-1), I(256)}},
        {"Overflow", adTinyInt, {I(128)}},
        {"Overflow", adUnsignedSmallInt, {I(65536)}},
        {"Overflow", adUnsignedBigInt, {I(-1), N("18446744073709551616"), N("1.5")}},
        {"Overflow", adBigInt, {N("0.1"), D(9223372036854775808.0)}},
        {"Overflow",
         adDouble,
         {I(9007199254740993), N("0.12345678901234567890"), C(9223372036854775807), T("0.123456789012345678"),
          T("1e400")}},
        {"Overflow", adSingle, {D(1.0 / 3), D(1e39), D(1e-50), I(16777217)}},
        {"Overflow", adCurrency, {N("0.00001"), D(0.1 + 0.2), I(922337203685478)}},
        {"Overflow", adNumeric, {D(1e38), T("1e-39")}},
        {"Overflow", adDBDate, {M("2026-11-18 00:00:01")}},
        {"Overflow", adDBTime, {M("2026-11-18")}},
        {"Overflow", adDate, {M("0099-12-31"), D(1e7)}},
        {"Type mismatch", adInteger, {T("abc"), kGuid, Value::OfBytes("1")}},
        {"Type mismatch", adDouble, {T(""), Value::OfBytes("1")}},
        {"Type mismatch", adDate, {T("abc"), B(true)}},
        {"Type mismatch", adBoolean, {T("yes"), T(""), M("2026-11-18")}},
        {"Type mismatch", adGUID, {T("x"), I(1)}},
        {"Type mismatch", adVarBinary, {T("x")}},
        {"Type mismatch", adBinary, {I(1)}},
        {"UTF-16", adVarChar, {Value::OfBytes("abc")}}};
    for (const auto& one : cases)
        for (const Value& value : one.values) {
            Value into;
            const std::string error = ErrorOf([&] { ConvertValue(value, one.type, into); });
            EXPECT_TRUE(error.starts_with(one.word))
                << error << " for " << DefaultText(value) << " into " << static_cast<int>(one.type);
        }
}

TEST(ConvertValueTest, NamesTheValueCutShortAndTheType) {
    Value into, failure;
    std::string hundred;
    for (int k = 0; k < 100; ++k) hundred += "ä";
    const std::string error = ErrorOf([&] { ConvertValue(T(hundred), adDBTimeStamp, into); });
    EXPECT_EQ(error, "Type mismatch: '" + hundred.substr(0, 80) + "...' does not convert to DBTimeStamp");
    failure.SetFailure("page 7 is damaged");
    EXPECT_EQ(ErrorOf([&] { ConvertValue(failure, adVarChar, into); }), "page 7 is damaged");
    EXPECT_EQ(ErrorOf([&] { ConvertValue(failure, adVariant, into); }), "page 7 is damaged");
}

TEST(ConvertValueTest, ReusesTheBuffer) {
    Value into = T(std::string(300, 'x'));
    const char* const buffer = into.AsText().data();
    ConvertValue(T(std::string(200, 'y')), adVarChar, into);
    ConvertValue(D(0.1), adVarChar, into);
    ConvertValue(Value(), adVarChar, into);
    ConvertValue(T("z"), adVarWChar, into);
    EXPECT_EQ(into.AsText().data(), buffer);
}

TEST(ValueNumberTest, RoundsAndTellsWhatIsNoNumber) {
    EXPECT_EQ(ToInteger(D(2.5)), 2);
    EXPECT_EQ(ToInteger(C(35000)), 4);
    EXPECT_EQ(ToInteger(N("9223372036854775806.5")), 9223372036854775806);
    EXPECT_EQ(ToInteger(T("9223372036854775807")), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(ToInteger(B(true)), 1);
    EXPECT_EQ(ToDouble(C(15000)), 1.5);
    EXPECT_EQ(ToDouble(T("1.25")), 1.25);
    EXPECT_TRUE(ToBoolean(T("TRUE")));
    EXPECT_TRUE(ToBoolean(N("-0.5")));
    EXPECT_FALSE(ToBoolean(I(0)));
    EXPECT_EQ(ErrorOf([] { ToInteger(N("9223372036854775807.5")); }), "Overflow");
    EXPECT_EQ(ErrorOf([] { ToInteger(D(1e19)); }), "Overflow");
    EXPECT_EQ(ErrorOf([] { ToInteger(Value()); }), "Invalid use of Null");
    EXPECT_EQ(ErrorOf([] { ToBoolean(T("maybe")); }), "Type mismatch");
    EXPECT_EQ(ErrorOf([] { ToDouble(kGuid); }), "Type mismatch");
}

}  // namespace
}  // namespace varnel
