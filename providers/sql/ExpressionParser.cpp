#include "providers/sql/ExpressionParser.h"

#include <algorithm>
#include <charconv>

#include "ado/types/ConnectionString.h"
#include "ado/types/ValueConvert.h"
#include "platform/Error.h"

namespace varnel::sql {
namespace {

/// Deeper nesting than any person writes; keeps a hostile filter from using up the stack.
constexpr int kMaxDepth = 100;

/// A whole number, a double, or a decimal where a double would not keep all digits.
Value NumberValue(const std::string& digits) {
    constexpr std::ptrdiff_t kDigitsOfDouble = 15;
    Value value;
    std::int64_t whole = 0;
    const char* end = digits.data() + digits.size();
    const auto read = std::from_chars(digits.data(), end, whole);
    if (read.ec == std::errc() && read.ptr == end) return Value::OfInteger(whole);
    const auto count = std::count_if(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; });
    const bool scientific = digits.find_first_of("eE") != std::string::npos;
    if (!scientific && count > kDigitsOfDouble && count <= kMaxDecimalDigits) return Value::OfDecimal(digits);
    const std::optional<double> number = ParseDouble(digits);
    if (!number) throw Error(ErrorKind::Syntax, digits, "Overflow in the number " + digits + ".");
    value.SetDouble(*number);
    return value;
}

}  // namespace

Expr MakeBinary(Operator op, Expr left, Expr right) {
    Expr made;
    made.kind = ExprKind::Binary;
    made.op = op;
    made.at = left.at;
    made.operands.push_back(std::move(left));
    made.operands.push_back(std::move(right));
    return made;
}

Expr MakeUnary(Operator op, Expr operand, std::size_t at) {
    Expr made;
    made.kind = ExprKind::Unary;
    made.op = op;
    made.at = at;
    made.operands.push_back(std::move(operand));
    return made;
}

Expr MakeLiteral(Value value, std::size_t at) {
    Expr made;
    made.literal = std::move(value);
    made.at = at;
    return made;
}

Expr ExpressionParser::Deeper(Expr (ExpressionParser::*read)()) {
    if (++depth_ > kMaxDepth) tokens_.Fail("Expression too complex in query expression.");
    Expr made = (this->*read)();
    --depth_;
    return made;
}

Expr ExpressionParser::Parse() {
    if (++depth_ > kMaxDepth) tokens_.Fail("Expression too complex in query expression.");
    Expr expression = Truths(0);
    --depth_;
    return expression;
}

Expr ExpressionParser::Truths(std::size_t level) {
    if (level == grammar_.truths.size()) return LogicalNot();
    Expr left = Truths(level + 1);
    for (Operator op = tokens_.TakeOperator(grammar_.truths[level]); op != Operator::None;
         op = tokens_.TakeOperator(grammar_.truths[level]))
        left = MakeBinary(op, std::move(left), Truths(level + 1));
    return left;
}

Expr ExpressionParser::LogicalNot() {
    const std::size_t at = tokens_.Now().at;
    if (!tokens_.TakeWord("not") && !tokens_.TakeSymbol(grammar_.notSign)) return Comparison();
    return MakeUnary(Operator::Not, Deeper(&ExpressionParser::LogicalNot), at);
}

Expr ExpressionParser::Comparison() {
    Expr left = Calculation();
    for (;;) {
        if (const Operator op = tokens_.TakeOperator(grammar_.comparisons); op != Operator::None) {
            Expr right = Calculation();
            if (grammar_.ownComparison == nullptr || !grammar_.ownComparison(op, left, right))
                left = MakeBinary(op, std::move(left), std::move(right));
            continue;
        }
        if (!AtComparisonTail()) return left;
        left = ComparisonTail(std::move(left));
    }
}

bool ExpressionParser::AtComparisonTail() const {
    if (tokens_.AtWord("is")) return true;
    const std::size_t behindNot = tokens_.AtWord("not") ? 1 : 0;
    for (const std::string_view word : {"like", "alike", "in", "between"})
        if (tokens_.Is(tokens_.Ahead(behindNot), word)) return true;
    return false;
}

Expr ExpressionParser::ComparisonTail(Expr left) {
    Expr made;
    made.at = left.at;
    if (tokens_.TakeWord("is")) {
        made.kind = ExprKind::IsNull;
        made.negated = tokens_.TakeWord("not");
        tokens_.NeedWord("null");
        made.operands.push_back(std::move(left));
        return made;
    }
    made.negated = tokens_.TakeWord("not");
    made.operands.push_back(std::move(left));
    if (tokens_.TakeWord("between")) {
        made.kind = ExprKind::Between;
        made.operands.push_back(Calculation());
        tokens_.NeedWord("and");
        made.operands.push_back(Calculation());
        return made;
    }
    if (!tokens_.TakeWord("in")) return Like(std::move(made));
    made.kind = ExprKind::In;
    tokens_.NeedSymbol("(");
    do made.operands.push_back(Parse());
    while (tokens_.TakeSymbol(","));
    tokens_.NeedSymbol(")");
    return made;
}

Expr ExpressionParser::Like(Expr made) {
    tokens_.Take();
    made.kind = ExprKind::Like;
    made.operands.push_back(Calculation());
    if (tokens_.TakeWord("escape")) made.operands.push_back(Calculation());
    return made;
}

Expr ExpressionParser::Calculations(std::size_t level) {
    if (level == grammar_.calculations.size()) return grammar_.signBeforePower ? Power() : Signed();
    Expr left = Calculations(level + 1);
    for (Operator op = tokens_.TakeOperator(grammar_.calculations[level]); op != Operator::None;
         op = tokens_.TakeOperator(grammar_.calculations[level]))
        left = MakeBinary(op, std::move(left), Calculations(level + 1));
    return left;
}

Expr ExpressionParser::Signed() {
    const std::size_t at = tokens_.Now().at;
    const bool minus = tokens_.AtSymbol("-");
    if (!minus && !tokens_.AtSymbol("+")) return grammar_.signBeforePower ? Operand() : Power();
    tokens_.Take();
    Expr operand = Deeper(&ExpressionParser::Signed);
    return minus ? MakeUnary(Operator::Negate, std::move(operand), at) : operand;
}

Expr ExpressionParser::Power() {
    Expr base = grammar_.signBeforePower ? Signed() : Operand();
    for (Operator op = tokens_.TakeOperator(grammar_.powers); op != Operator::None;
         op = tokens_.TakeOperator(grammar_.powers))
        base = MakeBinary(op, std::move(base), PowerOperand());
    return base;
}

Expr ExpressionParser::PowerOperand() {
    if (grammar_.signBeforePower) return Signed();
    const std::size_t at = tokens_.Now().at;
    const bool minus = tokens_.TakeSymbol("-");
    Expr exponent = Operand();
    return minus ? MakeUnary(Operator::Negate, std::move(exponent), at) : exponent;
}

Expr ExpressionParser::Operand() {
    const Token& now = tokens_.Now();
    if (tokens_.TakeSymbol("(")) {
        if (tokens_.AtWord("select")) tokens_.Fail("Subqueries are not supported in conditions.");
        Expr inside = Parse();
        tokens_.NeedSymbol(")");
        return inside;
    }
    Expr own;
    if (grammar_.ownOperand != nullptr && grammar_.ownOperand(*this, own)) return own;
    if (tokens_.AtSymbol("{")) return EscapedMoment();
    if (now.kind == TokenKind::Marker) {
        Expr made;
        made.kind = ExprKind::Marker;
        made.slot = markers_++;
        made.at = tokens_.Take().at;
        return made;
    }
    if (now.kind == TokenKind::Text || now.kind == TokenKind::Number || now.kind == TokenKind::Date) return Literal();
    return NameOrCall();
}

Expr ExpressionParser::Literal() {
    const Token& token = tokens_.Take();
    if (token.kind == TokenKind::Text) return MakeLiteral(Value::OfText(token.text), token.at);
    if (token.kind == TokenKind::Number) return MakeLiteral(NumberValue(token.text), token.at);
    return Moment(token.text, token.at);
}

Expr ExpressionParser::Moment(const std::string& text, std::size_t at) {
    const std::optional<DateTime> moment = ParseDateTime(text);
    if (!moment) tokens_.Fail("Syntax error in date in query expression '#" + text + "#'.");
    return MakeLiteral(Value::OfDateTime(*moment), at);
}

Expr ExpressionParser::EscapedMoment() {
    const std::size_t at = tokens_.Take().at;
    const std::string kind = tokens_.Take().text;
    if (!EqualNoCase(kind, "d") && !EqualNoCase(kind, "t") && !EqualNoCase(kind, "ts")) tokens_.Fail();
    if (tokens_.Now().kind != TokenKind::Text) tokens_.Fail();
    Expr moment = Moment(tokens_.Take().text, at);
    tokens_.NeedSymbol("}");
    return moment;
}

Expr ExpressionParser::NameOrCall() {
    const Token first = tokens_.Now();
    if (first.kind == TokenKind::Word && TokenCursor::IsSymbol(tokens_.Ahead(1), "(")) {
        tokens_.Take();
        return Call(first.text, first.at);
    }
    if (tokens_.TakeWord("null")) return MakeLiteral(Value(), first.at);
    if (grammar_.truthNames && tokens_.TakeWord("true")) return MakeLiteral(Value::OfBoolean(true), first.at);
    if (grammar_.truthNames && tokens_.TakeWord("false")) return MakeLiteral(Value::OfBoolean(false), first.at);
    // ON is the truth value here, and nothing else can follow where an operand stands.
    if (first.kind == TokenKind::Word && !tokens_.AtName() && !tokens_.AtWord("on")) tokens_.Fail();
    Expr made;
    made.at = first.at;
    made.kind = ExprKind::Column;
    made.quoted = first.kind == TokenKind::DoubleQuoted;
    if (!made.quoted && first.kind != TokenKind::Name && first.kind != TokenKind::Word) tokens_.Fail();
    made.name = tokens_.Take().text;
    while (tokens_.TakeSymbol(".") || (grammar_.notSign.empty() && tokens_.TakeSymbol("!"))) {
        made.owner = std::move(made.name);
        made.quoted = false;
        made.name = tokens_.TakeName();
    }
    return made;
}

Expr ExpressionParser::Call(std::string name, std::size_t at) {
    Expr made;
    made.kind = ExprKind::Call;
    made.name = std::move(name);
    made.at = at;
    tokens_.NeedSymbol("(");
    if (EqualNoCase(made.name, "count") && tokens_.TakeSymbol("*")) {
        made.kind = ExprKind::CountAll;
        tokens_.NeedSymbol(")");
        return made;
    }
    if (tokens_.TakeSymbol(")")) return made;
    do made.operands.push_back(Parse());
    while (tokens_.TakeSymbol(","));
    tokens_.NeedSymbol(")");
    if (grammar_.ownCall != nullptr) grammar_.ownCall(made);
    return made;
}

}  // namespace varnel::sql
