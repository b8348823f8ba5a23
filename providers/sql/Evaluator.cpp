#include "providers/sql/Evaluator.h"

#include <algorithm>
#include <array>
#include <optional>

#include "platform/Error.h"
#include "platform/Utf8.h"
#include "providers/sql/ExpressionValues.h"
#include "providers/sql/SqlFunctionTable.h"

namespace varnel::sql {
namespace {

const Value& SetTruth(const std::optional<bool>& truth, Value& out) {
    if (truth)
        out.SetBoolean(*truth);
    else
        out.SetNull();
    return out;
}

std::optional<bool> Negated(std::optional<bool> truth, bool negated) {
    return truth ? std::optional<bool>(*truth != negated) : truth;
}

std::optional<bool> Truth(const Expr& expression, const RowContext& row) {
    Value scratch;
    return row.rules.truth(Evaluate(expression, row, scratch));
}

std::optional<bool> Logic(const Expr& e, const RowContext& row) {
    std::optional<bool> left = Truth(e.operands[0], row);
    if (e.op == Operator::Imp) left = Negated(left, true);  // a Imp b is Not a Or b
    const bool both = e.op == Operator::And;
    const bool either = e.op == Operator::Or || e.op == Operator::Imp;
    if (both && left == false) return false;
    if (either && left == true) return true;
    const std::optional<bool> right = Truth(e.operands[1], row);
    if (both && right == false) return false;
    if (either && right == true) return true;
    if (!left || !right) return std::nullopt;
    if (both || either) return both;
    return (*left != *right) == (e.op == Operator::Xor);
}

std::optional<bool> Between(const Expr& e, const RowContext& row) {
    Value a, b, c;
    const Value& value = Evaluate(e.operands[0], row, a);
    const Value& one = Evaluate(e.operands[1], row, b);
    const Value& other = Evaluate(e.operands[2], row, c);
    const std::optional<int> first = row.rules.compare(value, one), second = row.rules.compare(value, other);
    if (!first || !second) return std::nullopt;
    const bool upward = *first >= 0 && *second <= 0, downward = *first <= 0 && *second >= 0;
    return (upward || (downward && row.rules.rangesGoBothWays)) != e.negated;
}

std::optional<bool> In(const Expr& e, const RowContext& row) {
    Value a;
    const Value& value = Evaluate(e.operands[0], row, a);
    bool unknown = false;
    for (std::size_t i = 1; i < e.operands.size(); ++i) {
        Value b;
        const std::optional<int> order = row.rules.compare(value, Evaluate(e.operands[i], row, b));
        if (order == 0) return !e.negated;
        unknown = unknown || !order;
    }
    if (unknown) return std::nullopt;
    return e.negated;
}

/// The one character of an ESCAPE clause; 0 when there is none.
char32_t EscapeOf(const Expr& e, const RowContext& row) {
    if (e.operands.size() < 3) return 0;
    Value a;
    std::string scratch;
    const std::string_view written = TextOf(Evaluate(e.operands[2], row, a), scratch);
    std::size_t at = 0;
    return written.empty() ? 0 : NextCodePoint(written, at);
}

std::optional<bool> Like(const Expr& e, const RowContext& row) {
    Value a, b;
    const Value& value = Evaluate(e.operands[0], row, a);
    const Value& pattern = Evaluate(e.operands[1], row, b);
    if (value.IsNull() || pattern.IsNull()) return std::nullopt;
    std::string text, signs;
    return MatchesLike(row.rules.likeText(value, text), row.rules.likeText(pattern, signs), row.rules.like,
                       EscapeOf(e, row)) != e.negated;
}

const Value& Binary(const Expr& e, const RowContext& row, Value& scratch) {
    if (e.op >= Operator::And && e.op <= Operator::Imp) return SetTruth(Logic(e, row), scratch);
    Value left, right;
    const Value& a = Evaluate(e.operands[0], row, left);
    const Value& b = Evaluate(e.operands[1], row, right);
    if (e.op >= Operator::Equal && e.op <= Operator::Within) return SetTruth(row.rules.holds(e.op, a, b), scratch);
    const bool null = e.op != Operator::Join && (a.IsNull() || b.IsNull());
    if (null)
        scratch.SetNull();
    else
        row.rules.calculate(e.op, a, b, scratch);
    return scratch;
}

const Value& Unary(const Expr& e, const RowContext& row, Value& scratch) {
    if (e.op == Operator::Not) return SetTruth(Negated(Truth(e.operands[0], row), true), scratch);
    Value inner;
    const Value& operand = Evaluate(e.operands[0], row, inner);
    if (operand.IsNull())
        scratch.SetNull();
    else
        row.rules.negate(operand, scratch);
    return scratch;
}

const Value& FirstTrue(const std::vector<Expr>& options, const RowContext& row, Value& scratch) {
    std::size_t i = 0;
    for (; i + 1 < options.size(); i += 2)
        if (Truth(options[i], row).value_or(false)) return Evaluate(options[i + 1], row, scratch);
    if (i < options.size()) return Evaluate(options[i], row, scratch);
    return scratch.SetNull(), scratch;
}

const Value& ByPosition(const std::vector<Expr>& options, const RowContext& row, Value& scratch) {
    Value number;
    const Value& index = Evaluate(options[0], row, number);
    const std::int64_t chosen = index.IsNull() ? 0 : WholeOf(index);
    if (chosen >= 1 && chosen < static_cast<std::int64_t>(options.size()))
        return Evaluate(options[static_cast<std::size_t>(chosen)], row, scratch);
    return scratch.SetNull(), scratch;
}

/// The functions that work out only what they choose.
const Value& Choice(const Expr& e, const RowContext& row, Value& scratch) {
    switch (e.function->chooses) {
        case Chooses::ByCondition:
            return Evaluate(e.operands[Truth(e.operands[0], row).value_or(false) ? 1 : 2], row, scratch);
        case Chooses::FirstTrue:
            return FirstTrue(e.operands, row, scratch);
        case Chooses::ByPosition:
            return ByPosition(e.operands, row, scratch);
        default:
            break;
    }
    if (row.number == 0)
        throw Error(ErrorKind::NotSupported, e.name, e.name + "() can be used in a WHERE condition only.");
    return scratch.SetInteger(row.number), scratch;
}

const Value& Call(const Expr& e, const RowContext& row, Value& scratch) {
    if (e.function->run == nullptr) return Choice(e, row, scratch);
    std::array<Value, kMostArguments> buffers;
    std::array<const Value*, kMostArguments> arguments{};
    for (std::size_t i = 0; i < e.operands.size(); ++i) {
        arguments[i] = &Evaluate(e.operands[i], row, buffers[i]);
        if (arguments[i]->IsNull() && !e.function->takesNull) return scratch.SetNull(), scratch;
    }
    e.function->run({arguments.data(), e.operands.size()}, scratch);
    return scratch;
}

/// A cell that could not be read fails the expression that needs it.
const Value& Readable(const Value& value) {
    if (value.Kind() == ValueKind::Failure) throw Error(ErrorKind::Conversion, "", std::string(value.FailureText()));
    return value;
}

}  // namespace

bool OrderHolds(Operator op, int order) {
    switch (op) {
        case Operator::Equal:
        case Operator::ExactEqual:
            return order == 0;
        case Operator::NotEqual:
            return order != 0;
        case Operator::Less:
            return order < 0;
        case Operator::LessEqual:
            return order <= 0;
        case Operator::Greater:
            return order > 0;
        default:
            return order >= 0;
    }
}

const Value& Evaluate(const Expr& e, const RowContext& row, Value& scratch) {
    switch (e.kind) {
        case ExprKind::Literal:
            return e.literal;
        case ExprKind::Column:
            return Readable(row.columns[e.slot]);
        case ExprKind::Marker:
            return Readable(row.markers[e.slot]);
        case ExprKind::Unary:
            return Unary(e, row, scratch);
        case ExprKind::Binary:
            return Binary(e, row, scratch);
        case ExprKind::Between:
            return SetTruth(Between(e, row), scratch);
        case ExprKind::In:
            return SetTruth(In(e, row), scratch);
        case ExprKind::Like:
            return SetTruth(Like(e, row), scratch);
        case ExprKind::Call:
            return Call(e, row, scratch);
        case ExprKind::IsNull: {
            Value inner;
            const bool null = Evaluate(e.operands[0], row, inner).IsNull();
            return SetTruth(null != e.negated, scratch);
        }
        case ExprKind::CountAll:
            break;
    }
    throw Error(ErrorKind::Syntax, e.name, "Cannot have aggregate function in this place of the statement.");
}

}  // namespace varnel::sql
