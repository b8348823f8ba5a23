#include <cmath>
#include <limits>

#include "ado/types/ValueConvert.h"
#include "ado/types/ValueText.h"
#include "platform/Error.h"
#include "platform/Rounding.h"
#include "providers/sql/Arithmetic.h"
#include "providers/sql/ExpressionValues.h"
#include "providers/sql/JetFormat.h"
#include "providers/sql/SqlFunctionTable.h"

namespace varnel::sql {
namespace {

[[noreturn]] void ThrowOverflow() {
    throw Error(ErrorKind::Conversion, "", "Overflow");
}

template <class Target>
void ToWhole(Arguments a, Value& out) {
    const std::int64_t whole = WholeOf(*a[0]);
    if (whole < std::numeric_limits<Target>::min() || whole > std::numeric_limits<Target>::max()) ThrowOverflow();
    out.SetInteger(whole);
}

void CBool(Arguments a, Value& out) {
    if (a[0]->Kind() == ValueKind::Text) return ConvertValue(*a[0], adBoolean, out);
    out.SetBoolean(TruthOf(*a[0]).value_or(false));
}
void CDbl(Arguments a, Value& out) {
    out.SetDouble(NumberOf(*a[0]));
}
void CSng(Arguments a, Value& out) {
    const auto single = static_cast<float>(NumberOf(*a[0]));
    if (std::isinf(single)) ThrowOverflow();
    out.SetSingle(single);
}
Decimal ExactNumber(const Value& value) {
    Decimal number;
    if (IsExact(value)) return ExactOf(value);
    if (value.Kind() == ValueKind::Text && ParseDecimal(value.AsText(), number)) return number;
    return DecimalFromDouble(NumberOf(value));
}
void CCur(Arguments a, Value& out) {
    out.SetCurrency(CurrencyFromDecimal(ExactNumber(*a[0])));
}
void CDec(Arguments a, Value& out) {
    out.SetDecimal(ExactNumber(*a[0]));
}
void CStr(Arguments a, Value& out) {
    if (a[0]->IsNull()) throw Error(ErrorKind::Conversion, "", "Invalid use of Null");
    std::string scratch;
    out.SetText(TextOf(*a[0], scratch));
}
void CVar(Arguments a, Value& out) {
    out = *a[0];
}

void Str(Arguments a, Value& out) {
    Value number;
    if (a[0]->Kind() == ValueKind::Boolean) number.SetInteger(a[0]->AsBoolean() ? -1 : 0);
    out.SetText(NumericText(a[0]->Kind() == ValueKind::Boolean ? number : *a[0]));
}

double ValOfPrefix(const std::string& text) {
    // The longest beginning that reads as a number counts; what is none counts 0.
    std::size_t end = text.find_first_not_of("0123456789+-.eEdD");
    for (std::size_t size = std::min(end, text.size()); size > 0; --size)
        if (const auto number = ParseDouble(std::string_view(text).substr(0, size))) return *number;
    return 0;
}

/// Reads a number from the left of a text; blanks, tabs and line feeds do not count. Knows &H and &O.
void Val(Arguments a, Value& out) {
    std::string scratch, text;
    for (const char c : TextOf(*a[0], scratch))
        if (c != ' ' && c != '\t' && c != '\n') text += c;
    const bool based = text.size() > 2 && text[0] == '&';
    const int base =
        based && (text[1] == 'H' || text[1] == 'h') ? 16 : (based && (text[1] == 'O' || text[1] == 'o') ? 8 : 10);
    if (base == 10) return out.SetDouble(ValOfPrefix(text));
    double number = 0;
    for (std::size_t i = 2; i < text.size(); ++i) {
        const char c = text[i];
        const int digit =
            c >= '0' && c <= '9' ? c - '0' : ((c | 32) >= 'a' && (c | 32) <= 'f' ? (c | 32) - 'a' + 10 : 99);
        if (digit >= base) break;
        number = number * base + digit;
    }
    out.SetDouble(number);
}

/// Applies a rounding step to a number and keeps exact kinds exact.
template <class Step>
void RoundBy(const Value& value, Value& out, Step&& step) {
    if (value.Kind() == ValueKind::Integer || value.Kind() == ValueKind::Boolean) return out.SetInteger(WholeOf(value));
    if (value.Kind() == ValueKind::Currency || value.Kind() == ValueKind::Decimal) {
        Decimal number = ExactOf(value);
        UInt128 rest = 0, unit = 1;
        for (; number.scale > 0; --number.scale, unit *= 10) {
            rest += number.magnitude % 10 * unit;
            number.magnitude /= 10;
        }
        number.magnitude += rest != 0 ? step(number.negative) : 0;
        if (number.magnitude == 0) number.negative = false;
        if (value.Kind() == ValueKind::Currency) return out.SetCurrency(CurrencyFromDecimal(number));
        return out.SetDecimal(number);
    }
    const double number = NumberOf(value);
    const double toZero = std::trunc(number);
    const double rounded = toZero != number && step(number < 0) != 0 ? toZero - 1 : toZero;
    if (value.Kind() == ValueKind::DateTime) return out.SetDateTime(FromAutomationDate(rounded));
    out.SetDouble(rounded);
}

void Int(Arguments a, Value& out) {
    RoundBy(*a[0], out, [](bool negative) { return negative ? 1 : 0; });
}
void Fix(Arguments a, Value& out) {
    RoundBy(*a[0], out, [](bool) { return 0; });
}

void Abs(Arguments a, Value& out) {
    const bool negative = NumberOf(*a[0]) < 0;
    if (negative) return Negate(*a[0], out);
    if (a[0]->Kind() == ValueKind::Text) return out.SetDouble(NumberOf(*a[0]));
    out = *a[0];
}

void Sgn(Arguments a, Value& out) {
    const double number = NumberOf(*a[0]);
    out.SetInteger(number < 0 ? -1 : (number > 0 ? 1 : 0));
}

/// Half to even, on the decimal digits that the number shows.
void Round(Arguments a, Value& out) {
    const std::int64_t places = a.size() > 1 ? WholeOf(*a[1]) : 0;
    if (places < 0 || places > 22) throw Error(ErrorKind::Conversion, "", "Invalid procedure call or argument");
    const double number = NumberOf(*a[0]);
    const bool small = std::fabs(number) < 1e22 && (number == 0 || std::fabs(number) > 1e-15);
    if (!IsExact(*a[0]) && !small) return out.SetDouble(number);
    const Decimal rounded = RoundedToScale(ExactNumber(*a[0]), static_cast<int>(places));
    if (a[0]->Kind() == ValueKind::Integer || a[0]->Kind() == ValueKind::Boolean) return out.SetInteger(WholeOf(*a[0]));
    if (a[0]->Kind() == ValueKind::Currency) return out.SetCurrency(CurrencyFromDecimal(rounded));
    if (a[0]->Kind() == ValueKind::Decimal) return out.SetDecimal(rounded);
    out.SetDouble(ToDouble(rounded));
}

void Sqr(Arguments a, Value& out) {
    const double number = NumberOf(*a[0]);
    if (number < 0) throw Error(ErrorKind::Conversion, "", "Invalid procedure call or argument");
    out.SetDouble(std::sqrt(number));
}
void Exp(Arguments a, Value& out) {
    const double result = std::exp(NumberOf(*a[0]));
    if (std::isinf(result)) ThrowOverflow();
    out.SetDouble(result);
}
void Log(Arguments a, Value& out) {
    const double number = NumberOf(*a[0]);
    if (number <= 0) throw Error(ErrorKind::Conversion, "", "Invalid procedure call or argument");
    out.SetDouble(std::log(number));
}

void IsNull(Arguments a, Value& out) {
    out.SetBoolean(a[0]->IsNull());
}
void IsNumeric(Arguments a, Value& out) {
    const bool reads = a[0]->Kind() == ValueKind::Text && ParseDouble(a[0]->AsText()).has_value();
    out.SetBoolean(reads || IsNumber(*a[0]));
}
void IsDate(Arguments a, Value& out) {
    const bool reads = a[0]->Kind() == ValueKind::Text && ParseDateTime(a[0]->AsText()).has_value();
    out.SetBoolean(reads || a[0]->Kind() == ValueKind::DateTime);
}
void Nz(Arguments a, Value& out) {
    if (!a[0]->IsNull())
        out = *a[0];
    else if (a.size() > 1)
        out = *a[1];
    else
        out.SetText("");
}

void Format(Arguments a, Value& out) {
    std::string scratch;
    out.SetText(a.size() > 1 ? FormatValue(*a[0], TextOf(*a[1], scratch)) : std::string(TextOf(*a[0], scratch)));
}

constexpr SqlFunction kFunctions[] = {
    {"cint", 1, 1, adSmallInt, false, ToWhole<std::int16_t>},
    {"clng", 1, 1, adInteger, false, ToWhole<std::int32_t>},
    {"cbyte", 1, 1, adUnsignedTinyInt, false, ToWhole<std::uint8_t>},
    {"cbool", 1, 1, adBoolean, false, CBool},
    {"cdbl", 1, 1, adDouble, false, CDbl},
    {"csng", 1, 1, adSingle, false, CSng},
    {"ccur", 1, 1, adCurrency, false, CCur},
    {"cdec", 1, 1, adVarNumeric, false, CDec},
    {"cstr", 1, 1, adVarWChar, true, CStr},
    {"cvar", 1, 1, adVariant, true, CVar},
    {"str", 1, 1, adVarWChar, false, Str},
    {"val", 1, 1, adDouble, false, Val},
    {"int", 1, 1, adVariant, false, Int},
    {"fix", 1, 1, adVariant, false, Fix},
    {"abs", 1, 1, adVariant, false, Abs},
    {"sgn", 1, 1, adInteger, false, Sgn},
    {"round", 1, 2, adVariant, false, Round},
    {"sqr", 1, 1, adDouble, false, Sqr},
    {"exp", 1, 1, adDouble, false, Exp},
    {"log", 1, 1, adDouble, false, Log},
    {"isnull", 1, 1, adBoolean, true, IsNull},
    {"isnumeric", 1, 1, adBoolean, true, IsNumeric},
    {"isdate", 1, 1, adBoolean, true, IsDate},
    {"nz", 1, 2, adVariant, true, Nz},
    {"format", 1, 4, adVarWChar, false, Format},
};

}  // namespace

std::span<const SqlFunction> NumberFunctions() {
    return kFunctions;
}

}  // namespace varnel::sql
