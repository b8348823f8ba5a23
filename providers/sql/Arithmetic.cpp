#include "providers/sql/Arithmetic.h"

#include <cmath>

#include "providers/sql/ExpressionValues.h"
#include "providers/sql/ValueStorage.h"

namespace varnel::sql {
namespace {

constexpr UInt128 kDecimalLimit = [] {
    UInt128 limit = 1;
    for (int i = 0; i < kMaxDecimalDigits; ++i) limit *= 10;
    return limit;
}();

bool IsWhole(const Value& value) {
    return value.Kind() == ValueKind::Integer || value.Kind() == ValueKind::Boolean;
}
std::int64_t Whole(const Value& value) {
    return value.Kind() == ValueKind::Boolean ? (value.AsBoolean() ? -1 : 0) : value.AsInteger();
}

bool CalculateWhole(Operator op, std::int64_t a, std::int64_t b, Value& out) {
    std::int64_t result = 0;
    bool overflow = true;
    if (op == Operator::Add) overflow = __builtin_add_overflow(a, b, &result);
    if (op == Operator::Subtract) overflow = __builtin_sub_overflow(a, b, &result);
    if (op == Operator::Multiply) overflow = __builtin_mul_overflow(a, b, &result);
    if (overflow) return false;
    out.SetInteger(result);
    return true;
}

/// Gives number this scale; false when the digits do not fit.
bool Widen(Decimal& number, int scale) {
    for (; number.scale < scale; ++number.scale) {
        if (number.magnitude >= kDecimalLimit / 10) return false;
        number.magnitude *= 10;
    }
    return true;
}

bool AddDecimals(Decimal a, Decimal b, Decimal& sum) {
    if (!Widen(a, b.scale) || !Widen(b, a.scale)) return false;
    sum = a;
    if (a.negative == b.negative) {
        sum.magnitude = a.magnitude + b.magnitude;
    } else if (a.magnitude >= b.magnitude) {
        sum.magnitude = a.magnitude - b.magnitude;
    } else {
        sum.magnitude = b.magnitude - a.magnitude;
        sum.negative = b.negative;
    }
    if (sum.magnitude == 0) sum.negative = false;
    return sum.magnitude < kDecimalLimit;
}

bool MultiplyDecimals(const Decimal& a, const Decimal& b, Decimal& product) {
    if (a.magnitude != 0 && b.magnitude > (kDecimalLimit - 1) / a.magnitude) return false;
    if (a.scale + b.scale > kMaxDecimalDigits) return false;
    product.magnitude = a.magnitude * b.magnitude;
    product.scale = static_cast<std::uint8_t>(a.scale + b.scale);
    product.negative = product.magnitude != 0 && a.negative != b.negative;
    return true;
}

bool CalculateExact(Operator op, const Value& a, const Value& b, Value& out) {
    Decimal right = ExactOf(b), result;
    if (op == Operator::Subtract && right.magnitude != 0) right.negative = !right.negative;
    if (op == Operator::Multiply ? !MultiplyDecimals(ExactOf(a), right, result)
                                 : !AddDecimals(ExactOf(a), right, result))
        return false;
    const bool decimals = a.Kind() == ValueKind::Decimal || b.Kind() == ValueKind::Decimal;
    std::int64_t scaled = 0;
    if (!decimals && ExactCurrency(result, scaled))
        out.SetCurrency(scaled);
    else
        out.SetDecimal(result);
    return true;
}

double CalculateDouble(Operator op, double a, double b) {
    switch (op) {
        case Operator::Add:
            return a + b;
        case Operator::Subtract:
            return a - b;
        case Operator::Multiply:
            return a * b;
        case Operator::Power:
            return std::pow(a, b);
        default:
            return a / b;
    }
}

}  // namespace

void CalculateNumbers(Operator op, const Value& a, const Value& b, Value& out) {
    const bool plain = op == Operator::Add || op == Operator::Subtract || op == Operator::Multiply;
    if (plain && IsWhole(a) && IsWhole(b) && CalculateWhole(op, Whole(a), Whole(b), out)) return;
    if (plain && IsExact(a) && IsExact(b) && CalculateExact(op, a, b, out)) return;
    const double left = NumberOf(a), right = NumberOf(b);
    if (op == Operator::Divide && right == 0) return out.SetNull();
    const double result = CalculateDouble(op, left, right);
    if (std::isnan(result)) return out.SetNull();
    out.SetDouble(result);
}

void Negate(const Value& a, Value& out) {
    if (IsWhole(a) && Whole(a) != INT64_MIN) return out.SetInteger(-Whole(a));
    if (a.Kind() == ValueKind::Currency && a.AsCurrency() != INT64_MIN) return out.SetCurrency(-a.AsCurrency());
    if (a.Kind() == ValueKind::Decimal) {
        Decimal number = a.AsDecimal();
        number.negative = number.magnitude != 0 && !number.negative;
        return out.SetDecimal(number);
    }
    out.SetDouble(-NumberOf(a));
}

void JoinTexts(const Value& a, const Value& b, Value& out) {
    std::string scratch;
    std::string joined(TextOf(a, scratch));
    joined += TextOf(b, scratch);
    out.SetText(joined);
}

}  // namespace varnel::sql
