#include "ado/types/ExactNumbers.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "ado/types/DecimalReading.h"
#include "ado/types/ValueConvert.h"
#include "ado/types/ValueText.h"
#include "platform/Error.h"

namespace varnel {
namespace {

constexpr double kTwoTo63 = 9'223'372'036'854'775'808.0;

/// The value as a message shows it: no more than 40 characters, bytes only by their number.
std::string ShownValue(const Value& value) {
    constexpr std::size_t kShownCharacters = 40;
    if (value.Kind() == ValueKind::Bytes) return std::to_string(value.AsBytes().size()) + " bytes";
    std::string text = DefaultText(value);
    std::size_t end = 0;
    for (std::size_t characters = 0; end < text.size(); ++end) {
        const bool starts = (static_cast<unsigned char>(text[end]) & 0xC0) != 0x80;
        if (starts && ++characters > kShownCharacters) break;
    }
    const bool isCut = end < text.size();
    return "'" + text.substr(0, end) + (isCut ? "..." : "") + "'";
}

[[noreturn]] void Refuse(const char* what, const Value& from, DataTypeEnum type) {
    throw Error(ErrorKind::Conversion, "",
                std::string(what) + ": " + ShownValue(from) + " does not convert to " + TypeName(type));
}

Decimal DecimalOfText(const Value& from, DataTypeEnum type) {
    Decimal number;
    switch (ReadDecimal(from.AsText(), number)) {
        case DecimalReading::Number:
            return number;
        case DecimalReading::TooLong:
            RefuseOverflow(from, type);
        case DecimalReading::NoNumber:
            break;
    }
    RefuseMismatch(from, type);
}

std::int64_t WholeOfFloat(double number, const Value& from, DataTypeEnum type) {
    if (!(number >= -kTwoTo63 && number < kTwoTo63) || std::trunc(number) != number) RefuseOverflow(from, type);
    return static_cast<std::int64_t>(number);
}

/// True when the double stands for the decimal: equal, or the one whose shortest digits it is.
bool StandsFor(double real, const Decimal& number) {
    constexpr UInt128 kSurelyHeld = 1'000'000'000'000'000;  // 15 digits always survive
    constexpr int kUsualScale = 22;
    if (number.magnitude < kSurelyHeld && number.scale <= kUsualScale) return true;
    Decimal shortest;
    if (DecimalOfShortest(real, shortest) && shortest == number) return true;
    constexpr double kTwoTo127 = kTwoTo63 * kTwoTo63 * 2;
    const double magnitude = std::fabs(real);
    return std::trunc(real) == real && magnitude < kTwoTo127 &&
           number == Decimal{static_cast<UInt128>(magnitude), 0, real < 0};
}

double ExactDoubleOfText(const Value& from, DataTypeEnum type) {
    constexpr std::size_t kDigitsOfDouble = 17;  // a text of no more may have been printed from a double
    const std::string_view text = from.AsText();
    const std::optional<double> real = ParseDouble(text);
    Decimal number;
    if (!real)
        ReadDecimal(text, number) == DecimalReading::TooLong ? RefuseOverflow(from, type) : RefuseMismatch(from, type);
    std::size_t digits = 0;
    for (const char c : text.substr(0, text.find_first_of("eE"))) {
        if (c >= '0' && c <= '9' && (c != '0' || digits > 0)) ++digits;
    }
    if (digits > kDigitsOfDouble &&
        (ReadDecimal(text, number) != DecimalReading::Number || !StandsFor(*real, number))) {
        RefuseOverflow(from, type);
    }
    return *real;
}

}  // namespace

void RefuseMismatch(const Value& from, DataTypeEnum type) {
    Refuse("Type mismatch", from, type);
}
void RefuseOverflow(const Value& from, DataTypeEnum type) {
    Refuse("Overflow", from, type);
}

Decimal ExactDecimal(const Value& from, DataTypeEnum type) {
    Decimal number;
    bool fits = true;
    switch (from.Kind()) {
        case ValueKind::Boolean:
            return DecimalFromInt64(from.AsBoolean() ? 1 : 0);
        case ValueKind::Integer:
            return DecimalFromInt64(from.AsInteger());
        case ValueKind::Currency:
            return DecimalFromCurrency(from.AsCurrency());
        case ValueKind::Decimal:
            return from.AsDecimal();
        case ValueKind::Single:
            fits = DecimalOfShortest(from.AsSingle(), number);
            break;
        case ValueKind::Double:
            fits = DecimalOfShortest(from.AsDouble(), number);
            break;
        case ValueKind::DateTime:
            fits = DecimalOfShortest(ToAutomationDate(from.AsDateTime()), number);
            break;
        case ValueKind::Text:
            return DecimalOfText(from, type);
        default:
            RefuseMismatch(from, type);
    }
    if (!fits) RefuseOverflow(from, type);
    return number;
}

std::int64_t ExactWhole(const Value& from, DataTypeEnum type) {
    switch (from.Kind()) {
        case ValueKind::Boolean:
            return from.AsBoolean() ? 1 : 0;
        case ValueKind::Integer:
            return from.AsInteger();
        case ValueKind::Single:
            return WholeOfFloat(from.AsSingle(), from, type);
        case ValueKind::Double:
            return WholeOfFloat(from.AsDouble(), from, type);
        case ValueKind::DateTime:
            return WholeOfFloat(ToAutomationDate(from.AsDateTime()), from, type);
        default:
            break;
    }
    const Decimal number = ExactDecimal(from, type);
    std::int64_t whole = 0;
    if (!FitsInt64(number, whole) || !(number == DecimalFromInt64(whole))) RefuseOverflow(from, type);
    return whole;
}

Decimal ExactUnsigned64(const Value& from, DataTypeEnum type) {
    const Decimal exact = ExactDecimal(from, type);
    const Decimal number = RoundedToScale(exact, 0);
    if (number.negative || number.magnitude > std::numeric_limits<std::uint64_t>::max() || !(number == exact)) {
        RefuseOverflow(from, type);
    }
    return number;
}

std::int64_t ExactCurrency(const Value& from, DataTypeEnum type) {
    if (from.Kind() == ValueKind::Currency) return from.AsCurrency();
    const Decimal number = ExactDecimal(from, type);
    std::int64_t scaled = 0;
    if (!FitsCurrency(number, scaled) || !(number == DecimalFromCurrency(scaled))) RefuseOverflow(from, type);
    return scaled;
}

double ExactDouble(const Value& from, DataTypeEnum type) {
    switch (from.Kind()) {
        case ValueKind::Single:
            return from.AsSingle();
        case ValueKind::Double:
            return from.AsDouble();
        case ValueKind::DateTime: {
            const double days = ToAutomationDate(from.AsDateTime());
            if (days < kFirstDay || FromAutomationDate(days) != from.AsDateTime()) RefuseOverflow(from, type);
            return days;
        }
        case ValueKind::Text:
            return ExactDoubleOfText(from, type);
        default:
            break;
    }
    const Decimal number = ExactDecimal(from, type);
    const double real = ToDouble(number);
    if (!StandsFor(real, number)) RefuseOverflow(from, type);
    return real;
}

float ExactSingle(const Value& from, DataTypeEnum type) {
    if (from.Kind() == ValueKind::Single) return from.AsSingle();
    const double real = ExactDouble(from, type);
    const float single = static_cast<float>(real);
    if (static_cast<double>(single) != real && !std::isnan(real)) {
        std::array<char, 32> wide, narrow;
        const auto wideEnd = std::to_chars(wide.data(), wide.data() + wide.size(), real).ptr;
        const auto narrowEnd = std::to_chars(narrow.data(), narrow.data() + narrow.size(), single).ptr;
        if (std::string_view(wide.data(), wideEnd) != std::string_view(narrow.data(), narrowEnd))
            RefuseOverflow(from, type);
    }
    return single;
}

}  // namespace varnel
