#include "providers/sql/ExpressionParser.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <span>

#include "ado/types/ConnectionString.h"
#include "ado/types/ValueConvert.h"
#include "platform/Error.h"

namespace varnel::sql {
namespace {

/// Deeper nesting than any person writes; keeps a hostile filter from using up the stack.
constexpr int kMaxDepth = 100;

struct BinaryWord {
    std::string_view text;
    Operator op;
};

constexpr BinaryWord kImp[] = {{"imp", Operator::Imp}};
constexpr BinaryWord kEqv[] = {{"eqv", Operator::Eqv}};
constexpr BinaryWord kXor[] = {{"xor", Operator::Xor}};
constexpr BinaryWord kOr[] = {{"or", Operator::Or}};
constexpr BinaryWord kAnd[] = {{"and", Operator::And}};
constexpr BinaryWord kJoin[] = {{"&", Operator::Join}};
constexpr BinaryWord kSum[] = {{"+", Operator::Add}, {"-", Operator::Subtract}};
constexpr BinaryWord kModulo[] = {{"mod", Operator::Modulo}};
constexpr BinaryWord kWholeQuotient[] = {{"\\", Operator::IntegerDivide}};
constexpr BinaryWord kProduct[] = {{"*", Operator::Multiply}, {"/", Operator::Divide}};
constexpr BinaryWord kComparisons[] = {
    {"=", Operator::Equal},         {"<>", Operator::NotEqual}, {"!=", Operator::NotEqual}, {"<=", Operator::LessEqual},
    {">=", Operator::GreaterEqual}, {"<", Operator::Less},      {">", Operator::Greater}};

/// From the loosest to the tightest. An empty level stands for a method of its own: Not, then the comparisons.
constexpr std::array<std::span<const BinaryWord>, 12> kLevels = {std::span(kImp),
                                                                 std::span(kEqv),
                                                                 std::span(kXor),
                                                                 std::span(kOr),
                                                                 std::span(kAnd),
                                                                 {},
                                                                 {},
                                                                 std::span(kJoin),
                                                                 std::span(kSum),
                                                                 std::span(kModulo),
                                                                 std::span(kWholeQuotient),
                                                                 std::span(kProduct)};
constexpr std::size_t kNotLevel = 5, kComparisonLevel = 6, kJoinLevel = 7;

Operator MatchOperator(const Token& token, std::span<const BinaryWord> words) {
    for (const BinaryWord& word : words)
        if (TokenCursor::IsWord(token, word.text) || TokenCursor::IsSymbol(token, word.text)) return word.op;
    return Operator::None;
}

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

Expr ExpressionParser::Parse() {
    if (++depth_ > kMaxDepth) tokens_.Fail("Expression too complex in query expression.");
    Expr expression = Level(0);
    --depth_;
    return expression;
}

Expr ExpressionParser::Level(std::size_t level) {
    if (level == kNotLevel) return LogicalNot();
    if (level == kComparisonLevel) return Comparison();
    if (level == kLevels.size()) return Negation();
    Expr left = Level(level + 1);
    for (;;) {
        const Operator op = MatchOperator(tokens_.Now(), kLevels[level]);
        if (op == Operator::None) return left;
        tokens_.Take();
        left = MakeBinary(op, std::move(left), Level(level + 1));
    }
}

Expr ExpressionParser::LogicalNot() {
    const std::size_t at = tokens_.Now().at;
    if (!tokens_.TakeWord("not")) return Comparison();
    if (++depth_ > kMaxDepth) tokens_.Fail("Expression too complex in query expression.");
    Expr inner = LogicalNot();
    --depth_;
    return MakeUnary(Operator::Not, std::move(inner), at);
}

Expr ExpressionParser::Comparison() {
    Expr left = Level(kJoinLevel);
    for (;;) {
        const Operator op = MatchOperator(tokens_.Now(), kComparisons);
        if (op != Operator::None) {
            tokens_.Take();
            left = MakeBinary(op, std::move(left), Level(kJoinLevel));
            continue;
        }
        const Token& now = tokens_.Now();
        const Token& next = TokenCursor::IsWord(now, "not") ? tokens_.Ahead(1) : now;
        const bool tail = TokenCursor::IsWord(next, "like") || TokenCursor::IsWord(next, "alike") ||
                          TokenCursor::IsWord(next, "in") || TokenCursor::IsWord(next, "between") ||
                          TokenCursor::IsWord(now, "is");
        if (!tail) return left;
        left = ComparisonTail(std::move(left));
    }
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
        made.operands.push_back(Level(kJoinLevel));
        tokens_.NeedWord("and");
        made.operands.push_back(Level(kJoinLevel));
    } else if (tokens_.TakeWord("in")) {
        made.kind = ExprKind::In;
        tokens_.NeedSymbol("(");
        do made.operands.push_back(Parse());
        while (tokens_.TakeSymbol(","));
        tokens_.NeedSymbol(")");
    } else {
        tokens_.Take();
        made.kind = ExprKind::Like;
        made.operands.push_back(Level(kJoinLevel));
    }
    return made;
}

Expr ExpressionParser::Negation() {
    const std::size_t at = tokens_.Now().at;
    const bool minus = tokens_.AtSymbol("-");
    if (!minus && !tokens_.AtSymbol("+")) return Power();
    tokens_.Take();
    if (++depth_ > kMaxDepth) tokens_.Fail("Expression too complex in query expression.");
    Expr operand = Negation();
    --depth_;
    return minus ? MakeUnary(Operator::Negate, std::move(operand), at) : operand;
}

Expr ExpressionParser::Power() {
    Expr base = Operand();
    while (tokens_.TakeSymbol("^")) {
        const std::size_t at = tokens_.Now().at;
        const bool minus = tokens_.TakeSymbol("-");
        Expr exponent = Operand();
        if (minus) exponent = MakeUnary(Operator::Negate, std::move(exponent), at);
        base = MakeBinary(Operator::Power, std::move(base), std::move(exponent));
    }
    return base;
}

Expr ExpressionParser::Operand() {
    const Token& now = tokens_.Now();
    if (tokens_.TakeSymbol("(")) {
        if (tokens_.AtWord("select")) tokens_.Fail("Subqueries are not supported in conditions.");
        Expr inside = Parse();
        tokens_.NeedSymbol(")");
        return inside;
    }
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
    if (tokens_.TakeWord("true")) return MakeLiteral(Value::OfBoolean(true), first.at);
    if (tokens_.TakeWord("false")) return MakeLiteral(Value::OfBoolean(false), first.at);
    // ON is the truth value here, and nothing else can follow where an operand stands.
    if (first.kind == TokenKind::Word && !tokens_.AtName() && !tokens_.AtWord("on")) tokens_.Fail();
    Expr made;
    made.at = first.at;
    made.kind = ExprKind::Column;
    made.quoted = first.kind == TokenKind::DoubleQuoted;
    if (!made.quoted && first.kind != TokenKind::Name && first.kind != TokenKind::Word) tokens_.Fail();
    made.name = tokens_.Take().text;
    while (tokens_.AtSymbol(".") || tokens_.AtSymbol("!")) {
        tokens_.Take();
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
    return made;
}

}  // namespace varnel::sql
