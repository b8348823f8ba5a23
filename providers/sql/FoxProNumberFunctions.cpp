#include <algorithm>
#include <cmath>

#include "ado/types/ValueConvert.h"
#include "ado/types/ValueText.h"
#include "providers/sql/Arithmetic.h"
#include "providers/sql/ExpressionValues.h"
#include "providers/sql/FoxProForms.h"
#include "providers/sql/FoxProRules.h"
#include "providers/sql/SqlFunctionTable.h"
#include "providers/sql/TextParts.h"

namespace varnel::sql {
namespace {

const Value& NumberArgument(const Value& value) {
    if (!IsNumber(value) || value.Kind() == ValueKind::Boolean) ThrowFoxProArgument();
    return value;
}
double DoubleArgument(const Value& value) {
    return NumberOf(NumberArgument(value));
}

/// The longest beginning that reads as a number; 0 when none does.
void Val(Arguments a, Value& out) {
    if (a[0]->Kind() != ValueKind::Text) ThrowFoxProArgument();
    const std::string_view text = WithoutLeft(a[0]->AsText());
    const std::size_t end = std::min(text.find_first_not_of("0123456789+-.eE"), text.size());
    for (std::size_t size = end; size > 0; --size)
        if (const auto number = ParseDouble(text.substr(0, size))) return out.SetDouble(*number);
    out.SetDouble(0);
}

void Str(Arguments a, Value& out) {
    const std::int64_t width = a.size() > 1 ? static_cast<std::int64_t>(DoubleArgument(*a[1])) : 10;
    const std::int64_t decimals = a.size() > 2 ? static_cast<std::int64_t>(DoubleArgument(*a[2])) : 0;
    if (width < 1 || width > 254 || decimals < 0 || decimals > 18) ThrowFoxProArgument();
    out.SetText(FoxProStr(NumberArgument(*a[0]), static_cast<int>(width), static_cast<int>(decimals)));
}

/// Rounds half away from zero; digits: behind the point, negative ones before it.
void Round(Arguments a, Value& out) {
    const double digits = DoubleArgument(*a[1]);
    if (!(std::fabs(digits) <= 30)) ThrowFoxProArgument();
    RoundFoxPro(NumberArgument(*a[0]), static_cast<int>(digits), out);
}

template <double (*Step)(double)>
void ToWhole(Arguments a, Value& out) {
    const Value& number = NumberArgument(*a[0]);
    if (number.Kind() == ValueKind::Integer) return out.SetInteger(number.AsInteger());
    const double whole = Step(NumberOf(number));
    if (std::fabs(whole) < 9e15) return out.SetInteger(static_cast<std::int64_t>(whole));
    out.SetDouble(whole);
}
double Truncated(double number) {
    return std::trunc(number);
}
double Floored(double number) {
    return std::floor(number);
}
double Raised(double number) {
    return std::ceil(number);
}

void Abs(Arguments a, Value& out) {
    if (DoubleArgument(*a[0]) < 0) return Negate(*a[0], out);
    out = *a[0];
}
void Sign(Arguments a, Value& out) {
    const double number = DoubleArgument(*a[0]);
    out.SetInteger(number < 0 ? -1 : (number > 0 ? 1 : 0));
}
void Mod(Arguments a, Value& out) {
    FoxProRules(true, false).calculate(Operator::Modulo, *a[0], *a[1], out);
}

template <int Sense>
void Extreme(Arguments a, Value& out) {
    const Value* best = a[0];
    for (const Value* one : a)
        if (CompareFoxPro(*one, *best).value_or(0) * Sense > 0) best = one;
    out = *best;
}

void SetChecked(Value& out, double number) {
    if (std::isnan(number) || std::isinf(number)) ThrowFoxProArgument();
    out.SetDouble(number);
}
template <double (*Function)(double)>
void Apply(Arguments a, Value& out) {
    SetChecked(out, Function(DoubleArgument(*a[0])));
}
double SquareRoot(double number) {
    return std::sqrt(number);
}
double Exponential(double number) {
    return std::exp(number);
}
double Logarithm(double number) {
    return std::log(number);
}
double Logarithm10(double number) {
    return std::log10(number);
}

constexpr SqlFunction kFunctions[] = {
    {"val", 1, 1, adDouble, false, Val},
    {"str", 1, 3, adVarWChar, false, Str},
    {"int", 1, 1, adVariant, false, ToWhole<Truncated>},
    {"floor", 1, 1, adVariant, false, ToWhole<Floored>},
    {"ceiling", 1, 1, adVariant, false, ToWhole<Raised>},
    {"round", 2, 2, adVariant, false, Round},
    {"abs", 1, 1, adVariant, false, Abs},
    {"sign", 1, 1, adInteger, false, Sign},
    {"mod", 2, 2, adVariant, false, Mod},
    {"max", 2, kMostArguments, adVariant, false, Extreme<1>},
    {"min", 2, kMostArguments, adVariant, false, Extreme<-1>},
    {"sqrt", 1, 1, adDouble, false, Apply<SquareRoot>},
    {"exp", 1, 1, adDouble, false, Apply<Exponential>},
    {"log", 1, 1, adDouble, false, Apply<Logarithm>},
    {"log10", 1, 1, adDouble, false, Apply<Logarithm10>},
};

}  // namespace

std::span<const SqlFunction> FoxProNumberFunctions() {
    return kFunctions;
}

}  // namespace varnel::sql
