#include "providers/sql/ExpressionValues.h"

#include <cmath>

#include "ado/types/ValueConvert.h"
#include "ado/types/ValueText.h"
#include "platform/Error.h"
#include "platform/Rounding.h"

namespace varnel::sql {
namespace {

template <class T>
int Order(const T& a, const T& b) {
    return a < b ? -1 : (b < a ? 1 : 0);
}

std::string_view BytesOf(const Value& value) {
    const auto bytes = value.AsBytes();
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
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

int CompareMoments(DateTime a, DateTime b) {
    return Order(a, b);
}

int CompareBytes(const Value& a, const Value& b) {
    return BytesOf(a).compare(BytesOf(b));
}

int CompareNumbers(const Value& a, const Value& b) {
    if (a.Kind() == ValueKind::Integer && b.Kind() == ValueKind::Integer) return Order(a.AsInteger(), b.AsInteger());
    if (IsExact(a) && IsExact(b)) return CompareDecimals(ExactOf(a), ExactOf(b));
    return Order(NumberOf(a), NumberOf(b));
}

}  // namespace varnel::sql
