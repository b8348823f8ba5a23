#include <charconv>
#include <cmath>
#include <string>
#include <system_error>

#include "ado/types/ConnectionString.h"
#include "ado/types/DecimalReading.h"
#include "ado/types/ValueConvert.h"
#include "platform/Error.h"
#include "platform/Rounding.h"

namespace varnel {
namespace {

/// Raises what a value that is no number is to be refused with.
[[noreturn]] void ThrowNoNumber(const Value& value) {
    if (value.Kind() == ValueKind::Failure) throw Error(ErrorKind::Conversion, "", std::string(value.FailureText()));
    throw Error(ErrorKind::Conversion, "", value.IsNull() ? "Invalid use of Null" : "Type mismatch");
}

double NumberOfText(const Value& value) {
    const std::optional<double> number = ParseDouble(value.AsText());
    if (!number) ThrowNoNumber(value);
    return *number;
}

}  // namespace

std::optional<double> ParseDouble(std::string_view text) {
    text = TrimBlanks(text);
    bool negative = false;
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
        negative = text.front() == '-';
        text.remove_prefix(1);
    }
    if (text.empty() || !(text.front() == '.' || (text.front() >= '0' && text.front() <= '9'))) return std::nullopt;
    double number = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    if (read.ptr != text.data() + text.size()) return std::nullopt;
    if (read.ec == std::errc::result_out_of_range) {
        // Too small a number is zero; too large a one is none.
        Decimal ignored;
        const std::size_t exponent = text.find_first_of("eE");
        const bool isTiny = exponent != std::string_view::npos && text.substr(exponent + 1).starts_with('-');
        if (!isTiny && ReadDecimal(text, ignored) != DecimalReading::Number) return std::nullopt;
        number = 0;
    } else if (read.ec != std::errc()) {
        return std::nullopt;
    }
    return negative ? -number : number;
}

double ToDouble(const Value& value) {
    switch (value.Kind()) {
        case ValueKind::Boolean:
            return value.AsBoolean() ? 1 : 0;
        case ValueKind::Integer:
            return static_cast<double>(value.AsInteger());
        case ValueKind::Single:
            return value.AsSingle();
        case ValueKind::Double:
            return value.AsDouble();
        case ValueKind::Currency:
            return ToDouble(DecimalFromCurrency(value.AsCurrency()));
        case ValueKind::Decimal:
            return ToDouble(value.AsDecimal());
        case ValueKind::DateTime:
            return ToAutomationDate(value.AsDateTime());
        case ValueKind::Text:
            return NumberOfText(value);
        default:
            ThrowNoNumber(value);
    }
}

bool ToBoolean(const Value& value) {
    if (value.Kind() == ValueKind::Boolean) return value.AsBoolean();
    if (value.Kind() == ValueKind::Text) {
        const std::string_view word = TrimBlanks(value.AsText());
        if (EqualNoCase(word, "True")) return true;
        if (EqualNoCase(word, "False")) return false;
    }
    return ToDouble(value) != 0;
}

std::int64_t ToInteger(const Value& value) {
    if (value.Kind() == ValueKind::Integer) return value.AsInteger();
    Decimal number;
    switch (value.Kind()) {
        case ValueKind::Currency:
            number = DecimalFromCurrency(value.AsCurrency());
            break;
        case ValueKind::Decimal:
            number = value.AsDecimal();
            break;
        case ValueKind::Text:
            if (ReadDecimal(value.AsText(), number) == DecimalReading::Number) break;
            return ToInt64(ToDouble(value));
        default:
            return ToInt64(ToDouble(value));
    }
    std::int64_t whole = 0;
    if (!FitsInt64(number, whole)) throw Error(ErrorKind::Conversion, "", "Overflow");
    return whole;
}

}  // namespace varnel
