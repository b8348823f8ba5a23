#include "providers/sql/ExpressionTypes.h"

#include <algorithm>

#include "providers/sql/SqlFunctionTable.h"

namespace varnel::sql {
namespace {

DeclaredType TypeOfLiteral(const Value& literal, bool withTime) {
    switch (literal.Kind()) {
        case ValueKind::Boolean:
            return PlainType(adBoolean);
        case ValueKind::Integer: {
            const bool fits = literal.AsInteger() >= INT32_MIN && literal.AsInteger() <= INT32_MAX;
            return PlainType(fits ? adInteger : adBigInt);
        }
        case ValueKind::Double:
            return PlainType(adDouble);
        case ValueKind::DateTime:
            return PlainType(withTime ? adDBTimeStamp : adDate);
        case ValueKind::Text:
            return PlainType(literal.AsText().size() > 255 ? adLongVarWChar : adVarWChar);
        default:
            return PlainType(adVariant);
    }
}

bool IsWholeType(DataTypeEnum type) {
    return type == adInteger || type == adSmallInt || type == adUnsignedTinyInt || type == adBigInt ||
           type == adBoolean;
}
bool IsExactType(DataTypeEnum type) {
    return IsWholeType(type) || type == adCurrency || type == adNumeric || type == adVarNumeric;
}
bool IsFloatType(DataTypeEnum type) {
    return type == adSingle || type == adDouble;
}
bool IsMomentType(DataTypeEnum type) {
    return type == adDate || type == adDBTimeStamp;
}

DataTypeEnum TypeOfCalculation(Operator op, DataTypeEnum a, DataTypeEnum b) {
    if (op == Operator::Power || op == Operator::Divide) return adDouble;
    if (op == Operator::IntegerDivide || op == Operator::Modulo) return adInteger;
    if (op == Operator::JoinTrimmed) return adVarWChar;
    if (op == Operator::AddSeconds) return adDBTimeStamp;
    if (op == Operator::SubtractSeconds) return IsMomentType(b) ? adDouble : adDBTimeStamp;
    if (IsMomentType(a) || IsMomentType(b)) return op == Operator::Subtract && IsMomentType(b) ? adDouble : adDate;
    if (IsTextType(a) && IsTextType(b)) return op == Operator::Add ? adVarWChar : adDouble;
    if (IsFloatType(a) || IsFloatType(b)) return adDouble;
    if (IsWholeType(a) && IsWholeType(b)) return a == adBigInt || b == adBigInt ? adBigInt : adInteger;
    if (!IsExactType(a) || !IsExactType(b)) return adVariant;
    const bool decimals = a == adNumeric || a == adVarNumeric || b == adNumeric || b == adVarNumeric;
    return decimals ? adVarNumeric : adCurrency;
}

DeclaredType TypeOfBinary(const Expr& e, std::span<const DeclaredType> inputs) {
    const bool truth = e.op >= Operator::Equal && e.op <= Operator::Imp;
    if (truth) return PlainType(adBoolean);
    const DataTypeEnum a = TypeOfExpression(e.operands[0], inputs).type,
                       b = TypeOfExpression(e.operands[1], inputs).type;
    if (e.op != Operator::Join) return PlainType(TypeOfCalculation(e.op, a, b));
    return PlainType(a == adLongVarWChar || b == adLongVarWChar ? adLongVarWChar : adVarWChar);
}

/// A function that chooses has the type that all its outcomes share.
DeclaredType TypeOfChoice(const Expr& e, std::span<const DeclaredType> inputs) {
    const Chooses chooses = e.function->chooses;
    if (chooses == Chooses::RowNumber) return PlainType(adInteger);
    const std::size_t step = chooses == Chooses::FirstTrue ? 2 : 1;
    std::optional<DeclaredType> shared;
    for (std::size_t i = 1; i < e.operands.size(); i += step) {
        const Expr& outcome = e.operands[i];
        if (outcome.kind == ExprKind::Literal && outcome.literal.IsNull()) continue;
        const DeclaredType one = TypeOfExpression(outcome, inputs);
        if (shared && one.type != shared->type) return PlainType(adVariant);
        shared = one;
    }
    return shared.value_or(PlainType(adVariant));
}

}  // namespace

bool IsTextType(DataTypeEnum type) {
    return type == adVarWChar || type == adWChar || type == adLongVarWChar;
}

DeclaredType TypeOfExpression(const Expr& e, std::span<const DeclaredType> inputs) {
    switch (e.kind) {
        case ExprKind::Literal:
            return TypeOfLiteral(e.literal, e.withTime);
        case ExprKind::Column:
            return inputs[e.slot];
        case ExprKind::Marker:
            return PlainType(adVariant);
        case ExprKind::Binary:
            return TypeOfBinary(e, inputs);
        case ExprKind::Unary:
            return e.op == Operator::Not ? PlainType(adBoolean) : TypeOfExpression(e.operands[0], inputs);
        case ExprKind::Call:
            if (e.function->run == nullptr) return TypeOfChoice(e, inputs);
            return PlainType(e.function->result);
        case ExprKind::CountAll:
            return PlainType(adInteger);
        default:
            return PlainType(adBoolean);
    }
}

}  // namespace varnel::sql
