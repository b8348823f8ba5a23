#include "providers/sql/FoxProForms.h"

#include <cmath>
#include <cstdio>

#include "ado/types/ValueText.h"
#include "providers/sql/ExpressionValues.h"

namespace varnel::sql {
namespace {

Decimal DecimalOf(const Value& number) {
    return IsExact(number) ? ExactOf(number) : DecimalFromDouble(NumberOf(number));
}

/// Takes digits away until scale is reached; a negative scale leaves zeros before the point.
Decimal Rounded(Decimal number, int scale) {
    int places = number.scale;
    UInt128 last = 0;
    for (; places > scale && number.magnitude != 0; --places) {
        last = number.magnitude % 10;
        number.magnitude /= 10;
    }
    if (places > scale) return {};
    if (last >= 5) ++number.magnitude;
    for (; places < 0; ++places) number.magnitude *= 10;
    number.scale = static_cast<std::uint8_t>(places);
    if (number.magnitude == 0) number.negative = false;
    return number;
}

/// The number with exactly this many digits behind the point.
std::string FixedText(const Decimal& number, int decimals) {
    std::string text;
    AppendDecimalText(text, Rounded(number, decimals));
    if (decimals == 0) return text;
    const std::size_t point = text.find('.');
    const std::size_t shown = point == std::string::npos ? 0 : text.size() - point - 1;
    if (point == std::string::npos) text += '.';
    return text.append(static_cast<std::size_t>(decimals) - shown, '0');
}

}  // namespace

void RoundFoxPro(const Value& number, int digits, Value& out) {
    // What 38 digits cannot hold has no digits to round, or none that would stay.
    const double size = std::fabs(NumberOf(number));
    if (!IsExact(number) && size >= 1e22) return out.SetDouble(NumberOf(number));
    if (!IsExact(number) && size < 1e-15) return out.SetDouble(0);
    const Decimal rounded = Rounded(DecimalOf(number), digits);
    if (number.Kind() == ValueKind::Decimal) return out.SetDecimal(rounded);
    if (number.Kind() == ValueKind::Currency) return out.SetCurrency(CurrencyFromDecimal(rounded));
    const double result = ToDouble(rounded);
    if (number.Kind() == ValueKind::Integer && std::fabs(result) < 9e15)
        return out.SetInteger(static_cast<std::int64_t>(result));
    out.SetDouble(result);
}

std::string FoxProStr(const Value& number, int width, int decimals) {
    const auto room = static_cast<std::size_t>(width);
    const Decimal exact = DecimalOf(number);
    for (int shown = decimals; shown >= 0; --shown) {
        const std::string text = FixedText(exact, shown);
        if (text.size() <= room) return std::string(room - text.size(), ' ') + text;
    }
    return std::string(room, '*');
}

std::string FoxProDate(DateTime moment) {
    const CivilTime civil = ToCivil(moment);
    char text[32];
    std::snprintf(text, sizeof text, "%02d/%02d/%02d", civil.month, civil.day, civil.year % 100);
    return text;
}

std::string FoxProDateTime(DateTime moment) {
    const CivilTime civil = ToCivil(moment);
    const int hour = civil.hour % 12 == 0 ? 12 : civil.hour % 12;
    char text[64];
    std::snprintf(text, sizeof text, " %02d:%02d:%02d %s", hour, civil.minute, civil.second,
                  civil.hour < 12 ? "AM" : "PM");
    return FoxProDate(moment) + text;
}

std::string FoxProText(const Value& value) {
    switch (value.Kind()) {
        case ValueKind::Null:
            return ".NULL.";
        case ValueKind::Boolean:
            return value.AsBoolean() ? ".T." : ".F.";
        case ValueKind::DateTime:
            return value.AsDateTime().micros == 0 ? FoxProDate(value.AsDateTime()) : FoxProDateTime(value.AsDateTime());
        default:
            return DefaultText(value);
    }
}

}  // namespace varnel::sql
