#include "ado/types/ValueConvert.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

#include "ado/types/ConnectionString.h"
#include "ado/types/DecimalReading.h"
#include "ado/types/ValueText.h"
#include "platform/CodePage.h"
#include "platform/Error.h"

namespace varnel {
namespace {

constexpr double kTwoTo63 = 9'223'372'036'854'775'808.0;

/// The type's word for a message.
std::string TypeWord(DataTypeEnum type) {
    switch (type) {
        case adBSTR:
            return "Text";
        case adDecimal:
            return "Decimal";
        case adUnsignedSmallInt:
            return "UnsignedSmallInt";
        case adUnsignedInt:
            return "UnsignedInt";
        case adBigInt:
            return "BigInt";
        case adUnsignedBigInt:
            return "UnsignedBigInt";
        default:
            break;
    }
    const std::string word = DesignerTypeName(type);
    return word.empty() ? "type " + std::to_string(static_cast<int>(type)) : word;
}

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
                std::string(what) + ": " + ShownValue(from) + " does not convert to " + TypeWord(type));
}
[[noreturn]] void Mismatch(const Value& from, DataTypeEnum type) {
    Refuse("Type mismatch", from, type);
}
[[noreturn]] void Overflow(const Value& from, DataTypeEnum type) {
    Refuse("Overflow", from, type);
}

Decimal DecimalOfText(const Value& from, DataTypeEnum type) {
    Decimal number;
    switch (ReadDecimal(from.AsText(), number)) {
        case DecimalReading::Number:
            return number;
        case DecimalReading::TooLong:
            Overflow(from, type);
        case DecimalReading::NoNumber:
            break;
    }
    Mismatch(from, type);
}

/// The number with all its digits; floats with the digits of their default text.
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
            Mismatch(from, type);
    }
    if (!fits) Overflow(from, type);
    return number;
}

std::int64_t WholeOfFloat(double number, const Value& from, DataTypeEnum type) {
    if (!(number >= -kTwoTo63 && number < kTwoTo63) || std::trunc(number) != number) Overflow(from, type);
    return static_cast<std::int64_t>(number);
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
    if (!FitsInt64(number, whole) || !(number == DecimalFromInt64(whole))) Overflow(from, type);
    return whole;
}

template <class Whole>
void SetWhole(const Value& from, DataTypeEnum type, Value& into) {
    const std::int64_t number = ExactWhole(from, type);
    if (number < std::int64_t{std::numeric_limits<Whole>::min()} ||
        number > std::int64_t{std::numeric_limits<Whole>::max()}) {
        Overflow(from, type);
    }
    into.SetInteger(number);
}

void SetUnsigned64(const Value& from, DataTypeEnum type, Value& into) {
    const Decimal number = RoundedToScale(ExactDecimal(from, type), 0);
    if (number.negative || number.magnitude > std::numeric_limits<std::uint64_t>::max() ||
        !(number == ExactDecimal(from, type))) {
        Overflow(from, type);
    }
    into.SetDecimal(number);
}

void SetCurrencyExactly(const Value& from, DataTypeEnum type, Value& into) {
    if (from.Kind() == ValueKind::Currency) return into.SetCurrency(from.AsCurrency());
    const Decimal number = ExactDecimal(from, type);
    std::int64_t scaled = 0;
    if (!FitsCurrency(number, scaled) || !(number == DecimalFromCurrency(scaled))) Overflow(from, type);
    into.SetCurrency(scaled);
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
    if (!real) ReadDecimal(text, number) == DecimalReading::TooLong ? Overflow(from, type) : Mismatch(from, type);
    std::size_t digits = 0;
    for (const char c : text.substr(0, text.find_first_of("eE"))) {
        if (c >= '0' && c <= '9' && (c != '0' || digits > 0)) ++digits;
    }
    if (digits > kDigitsOfDouble &&
        (ReadDecimal(text, number) != DecimalReading::Number || !StandsFor(*real, number))) {
        Overflow(from, type);
    }
    return *real;
}

double ExactDouble(const Value& from, DataTypeEnum type) {
    switch (from.Kind()) {
        case ValueKind::Single:
            return from.AsSingle();
        case ValueKind::Double:
            return from.AsDouble();
        case ValueKind::DateTime: {
            const double days = ToAutomationDate(from.AsDateTime());
            if (days < kFirstDay || FromAutomationDate(days) != from.AsDateTime()) Overflow(from, type);
            return days;
        }
        case ValueKind::Text:
            return ExactDoubleOfText(from, type);
        default:
            break;
    }
    const Decimal number = ExactDecimal(from, type);
    const double real = ToDouble(number);
    if (!StandsFor(real, number)) Overflow(from, type);
    return real;
}

void SetSingleExactly(const Value& from, DataTypeEnum type, Value& into) {
    const double real = ExactDouble(from, type);
    const float single = static_cast<float>(real);
    if (static_cast<double>(single) != real && !std::isnan(real)) {
        std::array<char, 32> wide, narrow;
        const auto wideEnd = std::to_chars(wide.data(), wide.data() + wide.size(), real).ptr;
        const auto narrowEnd = std::to_chars(narrow.data(), narrow.data() + narrow.size(), single).ptr;
        if (std::string_view(wide.data(), wideEnd) != std::string_view(narrow.data(), narrowEnd)) Overflow(from, type);
    }
    into.SetSingle(single);
}

DateTime MomentOf(const Value& from, DataTypeEnum type) {
    switch (from.Kind()) {
        case ValueKind::DateTime:
            return from.AsDateTime();
        case ValueKind::Text: {
            const std::optional<DateTime> moment = ParseDateTime(from.AsText());
            if (!moment) Mismatch(from, type);
            return *moment;
        }
        case ValueKind::Integer:
        case ValueKind::Single:
        case ValueKind::Double:
        case ValueKind::Currency:
        case ValueKind::Decimal: {
            const double days = ToDouble(from);
            if (!(days > kFirstDay - 1.0 && days < kLastDay + 1.0)) Overflow(from, type);
            return FromAutomationDate(days);
        }
        default:
            Mismatch(from, type);
    }
}

void SetMoment(const Value& from, DataTypeEnum type, Value& into) {
    const DateTime moment = MomentOf(from, type);
    const bool outside = type == adDate && (moment.days < kFirstDay || moment.days > kLastDay);
    const bool timeInDate = type == adDBDate && moment.micros != 0;
    const bool dateInTime = type == adDBTime && moment.days != 0;
    if (outside || timeInDate || dateInTime) Overflow(from, type);
    into.SetDateTime(moment);
}

void SetTruth(const Value& from, DataTypeEnum type, Value& into) {
    const bool isNumber = from.Kind() <= ValueKind::Decimal;
    const std::string_view word = from.Kind() == ValueKind::Text ? TrimBlanks(from.AsText()) : std::string_view();
    const bool isWord = EqualNoCase(word, "True") || EqualNoCase(word, "False") || ParseDouble(word);
    if (!isNumber && !isWord) Mismatch(from, type);
    into.SetBoolean(ToBoolean(from));
}

void SetGuidOf(const Value& from, DataTypeEnum type, Value& into) {
    GuidBytes guid{};
    if (from.Kind() == ValueKind::Guid) {
        guid = from.AsGuid();
    } else if (from.Kind() != ValueKind::Text || !ParseGuid(TrimBlanks(from.AsText()), guid)) {
        Mismatch(from, type);
    }
    into.SetGuid(guid);
}

void SetTextOf(const Value& from, Value& into) {
    if (from.Kind() == ValueKind::Text) {
        into.SetText(from.AsText());
    } else if (from.Kind() == ValueKind::Bytes) {
        AppendUtf8FromUtf16(into.StartText(), from.AsBytes());
    } else {
        AppendDefaultText(into.StartText(), from);
    }
}

void SetBytesOf(const Value& from, DataTypeEnum type, Value& into) {
    if (from.Kind() != ValueKind::Bytes) Mismatch(from, type);
    into.SetBytes(from.AsBytes());
}

/// The value as it is, without the buffer that it may keep from an earlier text.
void CopyValue(const Value& from, Value& into) {
    switch (from.Kind()) {
        case ValueKind::Null:
            return into.SetNull();
        case ValueKind::Boolean:
            return into.SetBoolean(from.AsBoolean());
        case ValueKind::Integer:
            return into.SetInteger(from.AsInteger());
        case ValueKind::Single:
            return into.SetSingle(from.AsSingle());
        case ValueKind::Double:
            return into.SetDouble(from.AsDouble());
        case ValueKind::Currency:
            return into.SetCurrency(from.AsCurrency());
        case ValueKind::Decimal:
            return into.SetDecimal(from.AsDecimal());
        case ValueKind::DateTime:
            return into.SetDateTime(from.AsDateTime());
        case ValueKind::Text:
            return into.SetText(from.AsText());
        case ValueKind::Bytes:
            return into.SetBytes(from.AsBytes());
        case ValueKind::Guid:
            return into.SetGuid(from.AsGuid());
        case ValueKind::Failure:
            return into.SetFailure(from.FailureText());
    }
}

}  // namespace

void ConvertValue(const Value& from, DataTypeEnum type, Value& into) {
    if (from.IsNull()) return into.SetNull();
    if (from.Kind() == ValueKind::Failure) throw Error(ErrorKind::Conversion, "", std::string(from.FailureText()));
    switch (type) {
        case adEmpty:
        case adVariant:
            return CopyValue(from, into);
        case adSmallInt:
            return SetWhole<std::int16_t>(from, type, into);
        case adInteger:
            return SetWhole<std::int32_t>(from, type, into);
        case adTinyInt:
            return SetWhole<std::int8_t>(from, type, into);
        case adUnsignedTinyInt:
            return SetWhole<std::uint8_t>(from, type, into);
        case adUnsignedSmallInt:
            return SetWhole<std::uint16_t>(from, type, into);
        case adUnsignedInt:
            return SetWhole<std::uint32_t>(from, type, into);
        case adBigInt:
            return SetWhole<std::int64_t>(from, type, into);
        case adUnsignedBigInt:
            return SetUnsigned64(from, type, into);
        case adSingle:
            return SetSingleExactly(from, type, into);
        case adDouble:
            return into.SetDouble(ExactDouble(from, type));
        case adCurrency:
            return SetCurrencyExactly(from, type, into);
        case adDecimal:
        case adNumeric:
        case adVarNumeric:
            return into.SetDecimal(ExactDecimal(from, type));
        case adDate:
        case adDBDate:
        case adDBTime:
        case adDBTimeStamp:
            return SetMoment(from, type, into);
        case adBoolean:
            return SetTruth(from, type, into);
        case adGUID:
            return SetGuidOf(from, type, into);
        case adBSTR:
        case adChar:
        case adWChar:
        case adVarChar:
        case adLongVarChar:
        case adVarWChar:
        case adLongVarWChar:
            return SetTextOf(from, into);
        case adBinary:
        case adVarBinary:
        case adLongVarBinary:
            return SetBytesOf(from, type, into);
    }
    Mismatch(from, type);
}

}  // namespace varnel
