#include "ado/types/ConnectionString.h"
#include "providers/sql/ExpressionParser.h"
#include "providers/sql/FoxProMoment.h"
#include "providers/sql/FoxProTokens.h"
#include "providers/sql/FoxProTypes.h"
#include "providers/sql/Grammar.h"

namespace varnel::sql {
namespace {

constexpr OperatorWord kOr[] = {{"or", Operator::Or}};
constexpr OperatorWord kAnd[] = {{"and", Operator::And}};
constexpr OperatorLevel kTruths[] = {kOr, kAnd};

constexpr OperatorWord kComparisons[] = {
    {"=", Operator::Equal},         {"==", Operator::ExactEqual},   {"<>", Operator::NotEqual},
    {"#", Operator::NotEqual},      {"!=", Operator::NotEqual},     {"<", Operator::Less},
    {"<=", Operator::LessEqual},    {"=<", Operator::LessEqual},    {">", Operator::Greater},
    {">=", Operator::GreaterEqual}, {"=>", Operator::GreaterEqual}, {"$", Operator::Within}};

constexpr OperatorWord kSum[] = {{"+", Operator::Add}, {"-", Operator::Subtract}};
constexpr OperatorWord kProduct[] = {{"*", Operator::Multiply}, {"/", Operator::Divide}, {"%", Operator::Modulo}};
constexpr OperatorLevel kCalculations[] = {kSum, kProduct};
constexpr OperatorWord kPowers[] = {{"^", Operator::Power}, {"**", Operator::Power}};

/// The literal that an empty date is: Null, but known by its name.
constexpr std::string_view kEmptyMoment = "{}";

Expr Moment(TokenCursor& tokens) {
    const Token token = tokens.Take();
    Expr made = MakeLiteral(Value(), token.at);
    if (IsEmptyMoment(token.text)) {
        made.name = kEmptyMoment;
        return made;
    }
    const std::optional<WrittenMoment> moment = ReadFoxProMoment(token.text);
    if (!moment) tokens.Fail("Date/datetime evaluated to an invalid value: {" + token.text + "}.");
    made.literal.SetDateTime(moment->moment);
    made.withTime = moment->withTime;
    return made;
}

bool Constant(TokenCursor& tokens, Expr& made) {
    const std::string& text = tokens.Now().text;
    if (tokens.Now().kind != TokenKind::Symbol || text.size() < 3) return false;
    const std::size_t at = tokens.Now().at;
    Value value;
    if (text != ".null.") value.SetBoolean(text == ".t." || text == ".y.");
    tokens.Take();
    made = MakeLiteral(std::move(value), at);
    return true;
}

/// $12.34
Expr Currency(TokenCursor& tokens) {
    const Token token = tokens.Take();
    Decimal number;
    if (!ParseDecimal(std::string_view(token.text).substr(1), number)) tokens.Fail();
    Value value;
    value.SetCurrency(CurrencyFromDecimal(number));
    return MakeLiteral(std::move(value), token.at);
}

/// CAST(value AS type): a call with the type's letter, width and decimals (-1 for what is not written).
Expr Cast(ExpressionParser& parser) {
    TokenCursor& tokens = parser.Tokens();
    Expr made;
    made.kind = ExprKind::Call;
    made.name = "cast";
    made.at = tokens.Take().at;
    tokens.NeedSymbol("(");
    made.operands.push_back(parser.Parse());
    tokens.NeedWord("as");
    const FoxProType type = TakeFoxProType(tokens);
    tokens.NeedSymbol(")");
    made.operands.push_back(MakeLiteral(Value::OfText(std::string(1, type.letter)), made.at));
    made.operands.push_back(MakeLiteral(Value::OfInteger(type.width), made.at));
    made.operands.push_back(MakeLiteral(Value::OfInteger(type.decimals), made.at));
    return made;
}

/// LIKE stands where an operand does: the function of that name.
Expr LikeCall(ExpressionParser& parser) {
    TokenCursor& tokens = parser.Tokens();
    Expr made;
    made.kind = ExprKind::Call;
    made.name = "like";
    made.at = tokens.Take().at;
    tokens.NeedSymbol("(");
    do made.operands.push_back(parser.Parse());
    while (tokens.TakeSymbol(","));
    tokens.NeedSymbol(")");
    return made;
}

/// In a list of columns a keyword is a column's name when nothing follows it.
bool KeywordColumn(TokenCursor& tokens, Expr& made) {
    const Token& now = tokens.Now();
    const Token& next = tokens.Ahead(1);
    const bool alone = TokenCursor::IsSymbol(next, ",") || tokens.Is(next, "from");
    if (now.kind != TokenKind::Word || !alone || !IsReservedWord(now.text) || tokens.Is(now, "null")) return false;
    made.kind = ExprKind::Column;
    made.at = now.at;
    made.name = tokens.Take().text;
    return true;
}

bool OwnOperand(ExpressionParser& parser, Expr& made) {
    TokenCursor& tokens = parser.Tokens();
    const Token& now = tokens.Now();
    const bool call = TokenCursor::IsSymbol(tokens.Ahead(1), "(");
    if (now.kind == TokenKind::Date) return made = Moment(tokens), true;
    if (now.kind == TokenKind::Number && now.text[0] == '$') return made = Currency(tokens), true;
    if (call && now.kind == TokenKind::Word && EqualNoCase(now.text, "cast")) return made = Cast(parser), true;
    if (call && now.kind == TokenKind::Word && EqualNoCase(now.text, "like")) return made = LikeCall(parser), true;
    return Constant(tokens, made) || KeywordColumn(tokens, made);
}

bool IsEmptyMomentLiteral(const Expr& e) {
    return e.kind == ExprKind::Literal && e.name == kEmptyMoment;
}

/// An empty date is Null in the rows: to compare with {} asks whether there is a date. No date is before an empty one.
bool CompareWithEmptyMoment(Operator op, Expr& left, Expr& right) {
    const bool emptyLeft = IsEmptyMomentLiteral(left), emptyRight = IsEmptyMomentLiteral(right);
    if (emptyLeft == emptyRight) return false;
    if (emptyLeft && op != Operator::Equal && op != Operator::ExactEqual && op != Operator::NotEqual) {
        std::swap(left, right);
        op = op == Operator::Less        ? Operator::Greater
             : op == Operator::Greater   ? Operator::Less
             : op == Operator::LessEqual ? Operator::GreaterEqual
                                         : Operator::LessEqual;
    } else if (emptyLeft) {
        std::swap(left, right);
    }
    Expr made;
    made.at = left.at;
    if (op == Operator::Less || op == Operator::GreaterEqual) {
        left = MakeLiteral(Value::OfBoolean(op == Operator::GreaterEqual), left.at);
        return true;
    }
    made.kind = ExprKind::IsNull;
    made.negated = op == Operator::NotEqual || op == Operator::Greater;
    made.operands.push_back(std::move(left));
    left = std::move(made);
    return true;
}

/// INLIST and BETWEEN are the operators of that sense.
void OwnCall(Expr& call) {
    if (EqualNoCase(call.name, "inlist") && call.operands.size() >= 2) call.kind = ExprKind::In;
    if (EqualNoCase(call.name, "between") && call.operands.size() == 3) call.kind = ExprKind::Between;
}

}  // namespace

const Grammar kFoxProGrammar = {
    .tokenize = TokenizeFoxPro,
    .truths = kTruths,
    .comparisons = kComparisons,
    .calculations = kCalculations,
    .powers = kPowers,
    .truthNames = false,
    .signBeforePower = true,
    .notSign = "!",
    .shortestKeyword = 4,
    .ownOperand = OwnOperand,
    .ownComparison = CompareWithEmptyMoment,
    .ownCall = OwnCall,
};

}  // namespace varnel::sql
