#include "providers/sql/JetProgram.h"

#include "ado/types/ValueConvert.h"
#include "providers/sql/JetEvaluator.h"

namespace varnel::sql {

const Value& JetProgram::Run(sqlite3_value** arguments) {
    for (std::size_t i = 0; i < codecs.size(); ++i) codecs[i].Decode(arguments[i], inputs[i]);
    const Value& result = Evaluate(expression, {inputs, *markers}, scratch_);
    if (resultType == adVariant) return result;
    ConvertForColumn(result, resultType, converted_);
    return converted_;
}

void ConvertForColumn(const Value& from, DataTypeEnum type, Value& into) {
    const bool truthIntoNumber = from.Kind() == ValueKind::Boolean && type != adBoolean && type != adVariant;
    if (!truthIntoNumber) return ConvertValue(from, type, into);
    ConvertValue(Value::OfInteger(from.AsBoolean() ? -1 : 0), type, into);
}

}  // namespace varnel::sql
