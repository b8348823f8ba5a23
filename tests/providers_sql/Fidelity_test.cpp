// Every value that goes into a SQLite file comes out equal, whatever the column's declaration.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "ado/types/ValueText.h"
#include "providers/sql/ValueStorage.h"
#include "tests/providers_sql/SqlTestDatabase.h"
#include "tests/support/ErrorOf.h"

namespace varnel {
namespace {

Value Real(double number) {
    return Value::OfDouble(number);
}
Value Small(float number) {
    return Value::OfSingle(number);
}
std::vector<Value> Texts(const std::vector<std::string>& texts) {
    std::vector<Value> values(1);
    for (const std::string& text : texts) values.push_back(Value::OfText(text));
    return values;
}
std::vector<Value> Decimals(const std::vector<const char*>& numbers) {
    std::vector<Value> values(1);
    for (const char* number : numbers) values.push_back(Value::OfDecimal(number));
    return values;
}
Value Moment(int year, int month, int day, int hour = 0, int minute = 0, int second = 0, int micros = 0) {
    return Value::OfDateTime(FromCivil({year, month, day, hour, minute, second, micros}));
}

struct RoundTrip {
    const char* declaration;
    std::vector<Value> values;
};

std::vector<RoundTrip> RoundTrips() {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const std::vector<Value> texts =
        Texts({"", "00123", "1e5", " 12 ", "-0.50", "12345678901234567890", "line\r\nnext\t", std::string("a\0b", 3),
               "'\"[]`", "€ Ж 😀", "2026-11-18", "{d}"});
    const std::vector<Value> decimals =
        Decimals({"0", "0.1", "-0.1", "123456789012.345", "1234567890123456", "1234567890.123456",
                  "9223372036854775807", "9223372036854775808", "-99999999999999999999999999999999999999",
                  "0.00000000000000000000000000000000000001", "1234567890123456789.0123456789012345678"});
    return {
        {"BigInt", {Value::OfInteger(INT64_MAX), Value::OfInteger(INT64_MIN), Value::OfInteger(0), Value()}},
        {"Long", {Value::OfInteger(INT32_MIN), Value::OfInteger(INT32_MAX)}},
        {"Byte", {Value::OfInteger(255), Value::OfInteger(0)}},
        {"Double",
         {Real(5e-324), Real(1.7976931348623157e308), Real(-1e300), Real(0.1), Real(1.0 / 3), Real(kInfinity),
          Real(-kInfinity), Real(1e18), Real(9007199254740993.0), Value()}},
        {"B", {Real(1e18), Real(9.3e18), Real(-5), Real(0.1), Real(1e300)}},
        {"Single", {Small(0.1F), Small(3.4028235e38F), Small(1e-45F), Small(1e10F), Small(16777216.0F), Value()}},
        {"Currency",
         {Value::OfCurrency(INT64_MAX), Value::OfCurrency(INT64_MIN), Value::OfCurrency(1), Value::OfCurrency(-1),
          Value::OfCurrency(10'000), Value::OfCurrency(999'999'999'999'999), Value::OfCurrency(1'000'000'000'000'001),
          Value()}},
        {"Decimal(38,10)", decimals},
        {"Number", decimals},
        {"YesNo", {Value::OfBoolean(true), Value::OfBoolean(false), Value()}},
        {"DateTime",
         {Moment(100, 1, 1), Moment(9999, 12, 31, 23, 59, 59, 999'999), Moment(1899, 12, 30),
          Moment(1899, 12, 30, 16, 23, 5), Moment(1899, 12, 29, 6), Moment(2026, 11, 18, 16, 23, 5, 250'000), Value()}},
        {"Timestamp", {Moment(2026, 2, 28, 0, 0, 0, 1), Moment(1600, 2, 29)}},
        {"Text(50)", texts},
        {"Memo", texts},
        {"Varchar2(20)", texts},
        {"String(9)", texts},
        {"OleObject",
         {Value::OfBytes(std::string("\0\xFF\x80"
                                     "12",
                                     5)),
          Value::OfBytes(""), Value::OfBytes("123"), Value()}},
        {"Binary(9)", {Value::OfBytes("00123"), Value::OfBytes("text")}},
        {"GUID", {Value::OfGuid("{0123ABCD-0123-4567-89AB-0123456789AB}"), Value()}},
    };
}

void ExpectRoundTrip(SqlTestDatabase& database, const RoundTrip& trip) {
    {
        const auto appender = database.Session().OpenAppender("SELECT V FROM T");
        for (const Value& value : trip.values) appender->Append(std::vector<Value>{value}, {true});
    }
    const auto rows = database.Session().Query("SELECT V FROM T");
    std::vector<Value> row(1);
    for (const Value& value : trip.values) {
        ASSERT_TRUE(rows->Next(row)) << trip.declaration;
        const bool equal = row[0] == value;
        EXPECT_TRUE(equal) << trip.declaration << ": kind " << int(row[0].Kind()) << " "
                           << (row[0].IsNull() || row[0].Kind() == ValueKind::Failure ? "" : DefaultText(row[0]))
                           << " instead of kind " << int(value.Kind()) << " "
                           << (value.IsNull() ? "" : DefaultText(value));
    }
    EXPECT_FALSE(rows->Next(row)) << trip.declaration;
}

TEST(Fidelity, ValuesOfNewTablesComeBackEqual) {
    for (const RoundTrip& trip : RoundTrips()) {
        SqlTestDatabase database;
        database.Run(std::string("CREATE TABLE T (N Long, V ") + trip.declaration + ")");
        ExpectRoundTrip(database, trip);
    }
}

TEST(Fidelity, ValuesOfForeignTablesComeBackEqual) {
    // As other programs declare such columns; SQLite treats several of them as numeric.
    const std::vector<Value> texts = RoundTrips()[12].values;
    const RoundTrip all[] = {{"MEMO", texts},
                             {"string", texts},
                             {"", texts},
                             {"uuid", texts},
                             {"REAL", {Real(0.1), Real(1e300), Real(3)}},
                             {"INTEGER", {Value::OfInteger(INT64_MAX)}},
                             {"numeric(38)", {Value::OfDecimal("12345678901234567890123456789012345678")}}};
    for (const RoundTrip& trip : all) {
        SqlTestDatabase database;
        database.RunRaw(std::string("CREATE TABLE T (N, V ") + trip.declaration + ")");
        ExpectRoundTrip(database, trip);
    }
}

TEST(Fidelity, NaNIsRefusedAndLeavesNoTrace) {
    SqlTestDatabase database;
    database.Run("CREATE TABLE T (V Double)");
    EXPECT_THROW(database.Append("SELECT V FROM T", {Real(std::nan(""))}), Error);
    EXPECT_EQ(database.Ask("SELECT count(*) FROM T"), "0");
}

TEST(Fidelity, StoredFormsOfOtherProgramsAreRead) {
    const struct {
        const char* declaration;
        const char* literal;
        ValueKind kind;
        const char* text;
    } cases[] = {
        {"DATETIME", "'2026-11-18'", ValueKind::DateTime, "11/18/2026"},
        {"DATETIME", "'2026-11-18T16:23:05'", ValueKind::DateTime, "11/18/2026 4:23:05 PM"},
        {"DATE", "'2026-11-18 16:23'", ValueKind::DateTime, "11/18/2026 4:23:00 PM"},
        {"TIME", "'16:23:05.5'", ValueKind::DateTime, "4:23:06 PM"},
        {"DATETIME", "0", ValueKind::DateTime, "1/1/1970"},
        {"DATETIME", "-1", ValueKind::DateTime, "12/31/1969 11:59:59 PM"},
        {"TIMESTAMP", "2461363.25", ValueKind::DateTime, "11/18/2026 6:00:00 PM"},
        {"DATETIME", "'2026-02-30'", ValueKind::Text, "2026-02-30"},
        {"DATETIME", "'soon'", ValueKind::Text, "soon"},
        {"DATETIME", "'2026-11-18 16:23:05Z'", ValueKind::Text, "2026-11-18 16:23:05Z"},
        {"BOOLEAN", "1", ValueKind::Boolean, "True"},
        {"BOOLEAN", "-1", ValueKind::Boolean, "True"},
        {"BOOLEAN", "7", ValueKind::Integer, "7"},
        {"BOOLEAN", "'maybe'", ValueKind::Text, "maybe"},
        {"INTEGER", "1.5", ValueKind::Double, "1.5"},
        {"INTEGER", "'abc'", ValueKind::Text, "abc"},
        {"INT", "3000000000", ValueKind::Integer, "3000000000"},
        {"BIGINT", "CAST('-9223372036854775808' AS BLOB)", ValueKind::Integer, "-9223372036854775808"},
        {"BIGINT", "CAST('9223372036854775808' AS BLOB)", ValueKind::Bytes, "39323233333732303336383534373735383038"},
        {"TEXT", "x'0041'", ValueKind::Bytes, "0041"},
        {"MEMO", "12", ValueKind::Integer, "12"},
        {"CURRENCY", "1.23456", ValueKind::Double, "1.23456"},
        {"CURRENCY", "1.5", ValueKind::Currency, "1.5"},
        {"CURRENCY", "922337203685478", ValueKind::Integer, "922337203685478"},
        {"DECIMAL(9,2)", "1e300", ValueKind::Double, "1E+300"},
        {"DECIMAL(9,2)", "2.125", ValueKind::Decimal, "2.125"},
        {"GUID", "'{0123abcd-0123-4567-89ab-0123456789ab}'", ValueKind::Guid, "{0123ABCD-0123-4567-89AB-0123456789AB}"},
        {"GUID", "'none'", ValueKind::Text, "none"},
        {"", "1.5", ValueKind::Double, "1.5"},
        {"", "'1.5'", ValueKind::Text, "1.5"},
    };
    for (const auto& one : cases) {
        SqlTestDatabase database;
        database.RunRaw(std::string("CREATE TABLE T (V ") + one.declaration + "); INSERT INTO T VALUES (" +
                        one.literal + ")");
        const Value value = database.First("SELECT V FROM T");
        EXPECT_EQ(value.Kind(), one.kind) << one.declaration << " " << one.literal;
        EXPECT_EQ(DefaultText(value), one.text) << one.declaration << " " << one.literal;
    }
}

TEST(Fidelity, TextThatIsNotUtf8IsAFailureOfItsCellOnly) {
    SqlTestDatabase database;
    database.RunRaw("CREATE TABLE T (ID INTEGER, V TEXT); INSERT INTO T VALUES (1, CAST(x'41FF' AS TEXT)), (2, 'ok')");
    EXPECT_EQ(database.Ask("SELECT ID, V FROM T"),
              "1|FAILURE The text in column 'V' of table 'T' is not valid UTF-8.;2|ok");
    EXPECT_EQ(ErrorOf([&] { database.Ask("SELECT ID FROM T WHERE V='x'"); }),
              "The text in column 'V' of table 'T' is not valid UTF-8.");
}

TEST(Fidelity, ValuesAreStoredAsOtherProgramsExpectThem) {
    SqlTestDatabase database;
    database.Run("CREATE TABLE T (D DateTime, C Currency, F YesNo, M Memo)");
    database.Append("SELECT D,C,F,M FROM T", {Moment(2026, 11, 18, 16, 23, 5), Value::OfCurrency(15'000),
                                              Value::OfBoolean(true), Value::OfText("007")});
    EXPECT_EQ(database.AskRaw("SELECT D||'/'||C||'/'||F||'/'||M||typeof(M) FROM T"),
              "2026-11-18 16:23:05/1.5/1/007text");
}

TEST(Fidelity, DigitsThatAreNoNumberAreNotRead) {
    Decimal number;
    for (const char* text : {"", "-", "1.2.3", "1-2", "x", "1e5", "123456789012345678901234567890123456789"})
        EXPECT_FALSE(sql::ReadStoredDigits(text, number)) << text;
}

}  // namespace
}  // namespace varnel
