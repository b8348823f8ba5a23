#include "providers/sql/ExpressionProgram.h"

#include <cmath>

#include "ado/types/ValueConvert.h"
#include "providers/sql/Evaluator.h"

namespace varnel::sql {
namespace {

/// A floating-point number that 38 decimal digits do not hold; a number of open precision takes it as it is.
bool IsBeyondDecimals(const Value& value) {
    const bool single = value.Kind() == ValueKind::Single;
    if (!single && value.Kind() != ValueKind::Double) return false;
    const double size = std::fabs(single ? static_cast<double>(value.AsSingle()) : value.AsDouble());
    return size != 0 && (size < 1e-20 || size >= 1e37);
}

}  // namespace

const Value& ExpressionProgram::Run(sqlite3_value** arguments) {
    for (std::size_t i = 0; i < codecs.size(); ++i) codecs[i].Decode(arguments[i], inputs[i]);
    const Value& result = Evaluate(expression, {*rules, inputs, *markers}, scratch_);
    if (resultType == adVariant) return result;
    ConvertForColumn(*rules, result, resultType, converted_);
    return converted_;
}

void ConvertForColumn(const ExpressionRules& rules, const Value& from, DataTypeEnum type, Value& into) {
    if (type == adVarNumeric && IsBeyondDecimals(from)) {
        into = from;
        return;
    }
    const bool truthIntoNumber = from.Kind() == ValueKind::Boolean && type != adBoolean && type != adVariant;
    if (!truthIntoNumber) return ConvertValue(from, type, into);
    ConvertValue(Value::OfInteger(from.AsBoolean() ? rules.truthAsNumber : 0), type, into);
}

}  // namespace varnel::sql
