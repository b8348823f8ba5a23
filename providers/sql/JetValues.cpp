#include "providers/sql/JetValues.h"

#include <algorithm>
#include <cmath>

#include "ado/types/ValueConvert.h"
#include "ado/types/ValueText.h"
#include "platform/CodePage.h"
#include "platform/Error.h"
#include "platform/Rounding.h"

namespace varnel::sql {
namespace {

int Sign(double number) {
    return number < 0 ? -1 : (number > 0 ? 1 : 0);
}

template <class T>
int Order(const T& a, const T& b) {
    return a < b ? -1 : (b < a ? 1 : 0);
}

bool IsAsciiText(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

unsigned char Lower(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 'A' && byte <= 'Z' ? static_cast<unsigned char>(byte + 32) : byte;
}

int CompareAscii(std::string_view a, std::string_view b) {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        const int difference = Lower(a[i]) - Lower(b[i]);
        if (difference != 0) return difference;
    }
    return Order(a.size(), b.size());
}

std::string_view AsBytesView(const Value& value) {
    const auto bytes = value.AsBytes();
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

int CompareWithGuid(const Value& guid, const Value& other) {
    GuidBytes parsed;
    if (other.Kind() == ValueKind::Guid) return Order(guid.AsGuid(), other.AsGuid());
    if (other.Kind() != ValueKind::Text) ThrowTypeMismatch();
    if (ParseGuid(other.AsText(), parsed)) return Order(guid.AsGuid(), parsed);
    return CompareTexts(DefaultText(guid), other.AsText());
}

int CompareNumbers(const Value& a, const Value& b) {
    if (a.Kind() == ValueKind::Integer && b.Kind() == ValueKind::Integer) return Order(a.AsInteger(), b.AsInteger());
    if (IsExact(a) && IsExact(b)) return CompareDecimals(ExactOf(a), ExactOf(b));
    return Order(NumberOf(a), NumberOf(b));
}

}  // namespace

void ThrowTypeMismatch() {
    throw Error(ErrorKind::Conversion, "", "Type mismatch in expression.");
}

bool IsExact(const Value& value) {
    switch (value.Kind()) {
        case ValueKind::Boolean:
        case ValueKind::Integer:
        case ValueKind::Currency:
        case ValueKind::Decimal:
            return true;
        default:
            return false;
    }
}

bool IsNumber(const Value& value) {
    return IsExact(value) || value.Kind() == ValueKind::Single || value.Kind() == ValueKind::Double;
}

Decimal ExactOf(const Value& value) {
    switch (value.Kind()) {
        case ValueKind::Boolean:
            return DecimalFromInt64(value.AsBoolean() ? -1 : 0);
        case ValueKind::Integer:
            return DecimalFromInt64(value.AsInteger());
        case ValueKind::Currency:
            return DecimalFromCurrency(value.AsCurrency());
        case ValueKind::Decimal:
            return value.AsDecimal();
        default:
            ThrowTypeMismatch();
    }
}

double NumberOf(const Value& value) {
    switch (value.Kind()) {
        case ValueKind::Boolean:
            return value.AsBoolean() ? -1 : 0;
        case ValueKind::Integer:
            return static_cast<double>(value.AsInteger());
        case ValueKind::Single:
            return static_cast<double>(value.AsSingle());
        case ValueKind::Double:
            return value.AsDouble();
        case ValueKind::Currency:
            return static_cast<double>(value.AsCurrency()) / kCurrencyScale;
        case ValueKind::Decimal:
            return ToDouble(value.AsDecimal());
        case ValueKind::DateTime:
            return ToAutomationDate(value.AsDateTime());
        case ValueKind::Text:
            if (const auto number = ParseDouble(value.AsText())) return *number;
            break;
        case ValueKind::Failure:
            throw Error(ErrorKind::Conversion, "", std::string(value.FailureText()));
        default:
            break;
    }
    ThrowTypeMismatch();
}

std::int64_t WholeOf(const Value& value) {
    return value.Kind() == ValueKind::Integer ? value.AsInteger() : ToInt64(NumberOf(value));
}

DateTime MomentOf(const Value& value) {
    if (value.Kind() == ValueKind::DateTime) return value.AsDateTime();
    if (value.Kind() != ValueKind::Text) return FromAutomationDate(NumberOf(value));
    if (const auto moment = ParseDateTime(value.AsText())) return *moment;
    ThrowTypeMismatch();
}

std::string_view TextOf(const Value& value, std::string& scratch) {
    switch (value.Kind()) {
        case ValueKind::Null:
            return {};
        case ValueKind::Text:
            return value.AsText();
        case ValueKind::Boolean:
            return value.AsBoolean() ? "-1" : "0";
        default:
            break;
    }
    scratch.clear();
    AppendDefaultText(scratch, value);
    return scratch;
}

std::optional<bool> TruthOf(const Value& value) {
    if (value.IsNull()) return std::nullopt;
    if (value.Kind() == ValueKind::Boolean) return value.AsBoolean();
    return NumberOf(value) != 0;
}

int CompareTexts(std::string_view a, std::string_view b) {
    if (IsAsciiText(a) && IsAsciiText(b)) return CompareAscii(a, b);
    return FoldCase(a).compare(FoldCase(b));
}

int CompareDecimals(const Decimal& a, const Decimal& b) {
    if (a.negative != b.negative) return a.negative ? -1 : 1;
    UInt128 left = a.magnitude, right = b.magnitude;
    constexpr UInt128 kRoom = ~UInt128{0} / 10;
    int order = 0;
    // The one with fewer places gets zeros; when they do not fit it is the larger one anyway.
    for (int scale = a.scale; scale < b.scale && order == 0; ++scale) left > kRoom ? order = 1 : (left *= 10, 0);
    for (int scale = b.scale; scale < a.scale && order == 0; ++scale) right > kRoom ? order = -1 : (right *= 10, 0);
    if (order == 0) order = left < right ? -1 : (left > right ? 1 : 0);
    return a.negative ? -order : order;
}

std::optional<int> CompareValues(const Value& a, const Value& b) {
    if (a.IsNull() || b.IsNull()) return std::nullopt;
    const ValueKind left = a.Kind(), right = b.Kind();
    if (left == ValueKind::Text && right == ValueKind::Text) return CompareTexts(a.AsText(), b.AsText());
    if (left == ValueKind::Guid) return CompareWithGuid(a, b);
    if (right == ValueKind::Guid) return -CompareWithGuid(b, a);
    if (left == ValueKind::Bytes && right == ValueKind::Bytes) return AsBytesView(a).compare(AsBytesView(b));
    const bool moments = left == ValueKind::DateTime || right == ValueKind::DateTime;
    const bool numbers = IsNumber(a) || IsNumber(b);
    if (moments && !numbers) return Order(MomentOf(a), MomentOf(b));
    if (moments) return Sign(NumberOf(a) - NumberOf(b));
    return CompareNumbers(a, b);
}

}  // namespace varnel::sql
