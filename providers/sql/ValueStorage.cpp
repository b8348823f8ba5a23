#include "providers/sql/ValueStorage.h"

#include <algorithm>
#include <cmath>

#include "ado/types/ValueText.h"
#include "platform/Error.h"

namespace varnel::sql {
namespace {

/// Fifteen significant digits survive the way into a double and back.
constexpr std::uint64_t kFifteenDigits = 1'000'000'000'000'000;

constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                   1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
constexpr int kLastPower = 15;

StoredForm OfInteger(std::int64_t number) {
    return {StorageClass::Integer, number, 0, {}};
}
StoredForm OfReal(double number) {
    return {StorageClass::Real, 0, number, {}};
}
StoredForm OfText(std::string_view text) {
    return {StorageClass::Text, 0, 0, text};
}
StoredForm OfBlob(std::string_view bytes) {
    return {StorageClass::Blob, 0, 0, bytes};
}

StoredForm StoreDouble(double number) {
    if (std::isnan(number))
        throw Error(ErrorKind::Conversion, "", "The value is not a number (NaN) and cannot be stored.");
    return OfReal(number);
}

StoredForm StoreDigits(const Decimal& number, std::string& scratch) {
    scratch.clear();
    AppendDecimalText(scratch, number);
    return OfBlob(scratch);
}

StoredForm StoreCurrency(std::int64_t scaled, std::string& scratch) {
    if (scaled % kCurrencyScale == 0) return OfInteger(scaled / kCurrencyScale);
    const std::uint64_t size = scaled < 0 ? 0 - static_cast<std::uint64_t>(scaled) : static_cast<std::uint64_t>(scaled);
    if (size < kFifteenDigits) return OfReal(static_cast<double>(scaled) / kCurrencyScale);
    return StoreDigits(DecimalFromCurrency(scaled), scratch);
}

Decimal WithoutTrailingZeros(Decimal number) {
    while (number.scale > 0 && number.magnitude % 10 == 0) number.magnitude /= 10, --number.scale;
    return number;
}

StoredForm StoreDecimal(const Decimal& given, std::string& scratch) {
    const Decimal number = WithoutTrailingZeros(given);
    if (number.scale == 0 && number.magnitude <= static_cast<UInt128>(INT64_MAX)) {
        const auto whole = static_cast<std::int64_t>(number.magnitude);
        return OfInteger(number.negative ? -whole : whole);
    }
    if (number.scale > kLastPower || number.magnitude >= kFifteenDigits) return StoreDigits(number, scratch);
    const double real = static_cast<double>(static_cast<std::uint64_t>(number.magnitude)) / kPowersOfTen[number.scale];
    return OfReal(number.negative ? -real : real);
}

std::string_view BytesView(std::span<const std::uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// Reads exactly count digits at the front of text and removes them; -1 when they are not there.
int TakeDigits(std::string_view& text, std::size_t count) {
    if (text.size() < count) return -1;
    int number = 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (text[i] < '0' || text[i] > '9') return -1;
        number = number * 10 + (text[i] - '0');
    }
    text.remove_prefix(count);
    return number;
}

bool TakeChar(std::string_view& text, char c) {
    if (text.empty() || text.front() != c) return false;
    text.remove_prefix(1);
    return true;
}

bool ReadTimeOfDay(std::string_view text, CivilTime& civil) {
    civil.hour = TakeDigits(text, 2);
    if (civil.hour < 0 || !TakeChar(text, ':')) return false;
    civil.minute = TakeDigits(text, 2);
    if (civil.minute < 0) return false;
    if (!TakeChar(text, ':')) return text.empty();
    civil.second = TakeDigits(text, 2);
    if (civil.second < 0) return false;
    if (!TakeChar(text, '.')) return text.empty();
    if (text.empty()) return false;
    int unit = 100'000;
    for (const char c : text) {
        if (c < '0' || c > '9') return false;
        civil.micros += (c - '0') * unit;
        unit /= 10;
    }
    return true;
}

bool InRange(std::int64_t days) {
    return days >= kFirstDay && days <= kLastDay;
}

/// Whole units and the rest counted forward, also for negative numbers.
DateTime SplitMicros(std::int64_t micros) {
    std::int64_t days = micros / kMicrosPerDay;
    if (micros % kMicrosPerDay < 0) --days;
    return {static_cast<std::int32_t>(days), micros - days * kMicrosPerDay};
}

}  // namespace

bool LooksNumeric(std::string_view text) {
    if (text.empty()) return false;
    return text.find_first_not_of("0123456789+-.eE \t\r\n\f\v") == std::string_view::npos;
}

StoredForm StoreValue(const Value& value, Affinity affinity, std::string& scratch) {
    switch (value.Kind()) {
        case ValueKind::Null:
            return {};
        case ValueKind::Boolean:
            return OfInteger(value.AsBoolean() ? 1 : 0);
        case ValueKind::Integer:
            return OfInteger(value.AsInteger());
        case ValueKind::Single:
            return StoreDouble(static_cast<double>(value.AsSingle()));
        case ValueKind::Double:
            return StoreDouble(value.AsDouble());
        case ValueKind::Currency:
            return StoreCurrency(value.AsCurrency(), scratch);
        case ValueKind::Decimal:
            return StoreDecimal(value.AsDecimal(), scratch);
        case ValueKind::DateTime:
            scratch.clear();
            AppendIsoDateTime(scratch, value.AsDateTime());
            return OfText(scratch);
        case ValueKind::Text: {
            const std::string_view text = value.AsText();
            const bool keepsText = affinity == Affinity::Text || affinity == Affinity::Blob || !LooksNumeric(text);
            return keepsText ? OfText(text) : OfBlob(text);
        }
        case ValueKind::Bytes:
            return OfBlob(BytesView(value.AsBytes()));
        case ValueKind::Guid:
            scratch.clear();
            AppendGuidText(scratch, value.AsGuid());
            return OfText(scratch);
        case ValueKind::Failure:
            break;
    }
    throw Error(ErrorKind::Conversion, "", std::string(value.FailureText()));
}

bool ReadStoredMoment(std::string_view text, DateTime& moment) {
    CivilTime civil;
    const bool timeAlone = text.size() >= 5 && text[2] == ':';
    if (!timeAlone) {
        civil.year = TakeDigits(text, 4);
        if (civil.year < 0 || !TakeChar(text, '-')) return false;
        civil.month = TakeDigits(text, 2);
        if (civil.month < 0 || !TakeChar(text, '-')) return false;
        civil.day = TakeDigits(text, 2);
        if (civil.day < 0) return false;
        const bool dateAlone = text.empty();
        if (!dateAlone && !TakeChar(text, ' ') && !TakeChar(text, 'T')) return false;
        if (!dateAlone && text.empty()) return false;
    }
    if (!text.empty() && !ReadTimeOfDay(text, civil)) return false;
    if (!IsRealCivil(civil)) return false;
    moment = FromCivil(civil);
    return true;
}

bool MomentFromUnixSeconds(std::int64_t seconds, DateTime& moment) {
    constexpr std::int64_t kUnixDay = 25'569, kSecondsPerDay = 86'400;
    std::int64_t days = seconds / kSecondsPerDay;
    if (seconds % kSecondsPerDay < 0) --days;
    if (days < kFirstDay - kUnixDay || days > kLastDay - kUnixDay) return false;
    moment.micros = (seconds - days * kSecondsPerDay) * kMicrosPerSecond;
    moment.days = static_cast<std::int32_t>(days + kUnixDay);
    return true;
}

bool MomentFromJulianDay(double days, DateTime& moment) {
    constexpr double kJulianDayZero = 2'415'018.5, kMillisPerDay = 86'400'000.0;
    const double since = days - kJulianDayZero;
    if (!(since >= kFirstDay && since < kLastDay + 1.0)) return false;
    moment = SplitMicros(std::llround(since * kMillisPerDay) * 1000);
    return InRange(moment.days);
}

bool ReadStoredDigits(std::string_view digits, Decimal& number) {
    if (digits.empty() || digits.size() > kMaxDecimalDigits + 3) return false;
    if (digits.find_first_not_of("0123456789+-.") != std::string_view::npos) return false;
    const auto digit = [](char c) { return c >= '0' && c <= '9'; };
    if (std::none_of(digits.begin(), digits.end(), digit)) return false;
    const std::string_view significant = digits.substr(std::min(digits.find_first_not_of("+-0."), digits.size()));
    return std::count_if(significant.begin(), significant.end(), digit) <= kMaxDecimalDigits &&
           ParseDecimal(digits, number);
}

bool DecimalFromStoredReal(double real, int scale, Decimal& number) {
    if (scale <= kLastPower) {
        const double scaled = std::nearbyint(real * kPowersOfTen[scale]);
        if (std::fabs(scaled) < static_cast<double>(kFifteenDigits) && scaled / kPowersOfTen[scale] == real) {
            number.magnitude = static_cast<std::uint64_t>(std::fabs(scaled));
            number.scale = static_cast<std::uint8_t>(scale);
            number.negative = scaled < 0;
            return true;
        }
    }
    // Seventeen digits behind at most twenty zeros fit into 38 places.
    const double size = std::fabs(real);
    if (!(size == 0 || (size >= 1e-20 && size < 1e38))) return false;
    number = DecimalFromDouble(real);
    return true;
}

bool ExactCurrency(const Decimal& given, std::int64_t& scaled) {
    Decimal number = WithoutTrailingZeros(given);
    if (number.scale > 4 || IntegerDigits(number) > 15) return false;
    for (; number.scale < 4; ++number.scale) number.magnitude *= 10;
    const UInt128 limit = static_cast<UInt128>(INT64_MAX) + (number.negative ? 1 : 0);
    if (number.magnitude > limit) return false;
    const auto size = static_cast<std::uint64_t>(number.magnitude);
    scaled = static_cast<std::int64_t>(number.negative ? 0 - size : size);
    return true;
}

}  // namespace varnel::sql
