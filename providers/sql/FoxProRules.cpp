#include "providers/sql/FoxProRules.h"

#include <algorithm>
#include <cmath>

#include "ado/types/ConnectionString.h"
#include "platform/Error.h"
#include "providers/sql/Arithmetic.h"
#include "providers/sql/ExpressionTypes.h"
#include "providers/sql/ExpressionValues.h"
#include "providers/sql/SqlFunctionTable.h"
#include "providers/sql/TextParts.h"

namespace varnel::sql {
namespace {

bool IsText(const Value& value) {
    return value.Kind() == ValueKind::Text;
}
bool IsMoment(const Value& value) {
    return value.Kind() == ValueKind::DateTime;
}
bool IsFoxProNumber(const Value& value) {
    return IsNumber(value) && value.Kind() != ValueKind::Boolean;
}

/// As if the shorter one were filled up with blanks.
int ComparePadded(std::string_view a, std::string_view b) {
    const std::size_t common = std::min(a.size(), b.size());
    const int order = a.substr(0, common).compare(b.substr(0, common));
    if (order != 0 || a.size() == b.size()) return order;
    const std::string_view rest = a.size() > b.size() ? a.substr(common) : b.substr(common);
    const std::size_t other = rest.find_first_not_of(' ');
    if (other == std::string_view::npos) return 0;
    const bool restIsMore = static_cast<unsigned char>(rest[other]) > ' ';
    return restIsMore == (a.size() > b.size()) ? 1 : -1;
}

std::optional<bool> Within(const Value& part, const Value& whole) {
    if (part.IsNull() || whole.IsNull()) return std::nullopt;
    if (!IsText(part) || !IsText(whole)) ThrowOperandMismatch();
    return !part.AsText().empty() && whole.AsText().find(part.AsText()) != std::string_view::npos;
}

std::optional<bool> Holds(Operator op, const Value& a, const Value& b) {
    if (op == Operator::Within) return Within(a, b);
    const std::optional<int> order = CompareFoxPro(a, b);
    return order ? std::optional<bool>(OrderHolds(op, *order)) : std::nullopt;
}

/// The right text's end ends the comparison; an empty one equals everything.
std::optional<bool> HoldsForPrefix(Operator op, const Value& a, const Value& b) {
    const bool equality = op == Operator::Equal || op == Operator::NotEqual;
    if (!equality || !IsText(a) || !IsText(b)) return Holds(op, a, b);
    const std::size_t common = std::min(a.AsText().size(), b.AsText().size());
    const bool equal = a.AsText().substr(0, common) == b.AsText().substr(0, common);
    return equal == (op == Operator::Equal);
}

/// + puts texts together; - does so too, but moves the blanks at the end of the left one to the end of both.
void JoinFoxPro(Operator op, std::string_view a, std::string_view b, Value& out) {
    const std::string_view left = op == Operator::Add ? a : WithoutRight(a);
    std::string joined(left);
    joined += b;
    joined.append(a.size() - left.size(), ' ');
    out.SetText(joined);
}

DateTime Later(DateTime from, double amount, bool seconds) {
    const double days = seconds ? 0 : std::trunc(amount);
    const double wholeDays = seconds ? std::floor(amount / 86'400) : days;
    if (!(std::fabs(wholeDays) < 5e6)) ThrowFoxProArgument();
    std::int64_t day = from.days + static_cast<std::int64_t>(wholeDays);
    std::int64_t micros = from.micros;
    if (seconds) micros += std::llround((amount - wholeDays * 86'400) * static_cast<double>(kMicrosPerSecond));
    if (micros >= kMicrosPerDay) micros -= kMicrosPerDay, ++day;
    if (day < kFirstDay || day > kLastDay) ThrowFoxProArgument();
    return {static_cast<std::int32_t>(day), micros};
}

/// A moment and a number of days (of seconds, for a date-time), or the distance of two moments.
void CalculateMoment(Operator op, const Value& a, const Value& b, Value& out) {
    const bool seconds = op == Operator::AddSeconds || op == Operator::SubtractSeconds;
    const bool add = op == Operator::Add || op == Operator::AddSeconds;
    const bool subtract = op == Operator::Subtract || op == Operator::SubtractSeconds;
    if (subtract && IsMoment(a) && IsMoment(b)) {
        const DateTime left = a.AsDateTime(), right = b.AsDateTime();
        const std::int64_t days = std::int64_t{left.days} - right.days;
        if (!seconds) return out.SetInteger(days);
        return out.SetDouble(static_cast<double>(days * 86'400) +
                             static_cast<double>(left.micros - right.micros) / static_cast<double>(kMicrosPerSecond));
    }
    if (add && IsFoxProNumber(a)) return out.SetDateTime(Later(b.AsDateTime(), NumberOf(a), seconds));
    if ((!add && !subtract) || !IsMoment(a) || !IsFoxProNumber(b)) ThrowOperandMismatch();
    out.SetDateTime(Later(a.AsDateTime(), add ? NumberOf(b) : -NumberOf(b), seconds));
}

/// % and MOD(): the result has the sign of the divisor.
void Remainder(const Value& a, const Value& b, Value& out) {
    const bool whole = a.Kind() == ValueKind::Integer && b.Kind() == ValueKind::Integer;
    if (NumberOf(b) == 0) return out.SetNull();
    if (whole) {
        const std::int64_t divisor = b.AsInteger();
        const std::int64_t rest = divisor == -1 ? 0 : a.AsInteger() % divisor;
        return out.SetInteger(rest != 0 && (rest < 0) != (divisor < 0) ? rest + divisor : rest);
    }
    const double divisor = NumberOf(b);
    const double rest = std::fmod(NumberOf(a), divisor);
    out.SetDouble(rest != 0 && (rest < 0) != (divisor < 0) ? rest + divisor : rest);
}

void CalculateFoxPro(Operator op, const Value& a, const Value& b, Value& out) {
    if (IsText(a) && IsText(b)) {
        if (op == Operator::JoinTrimmed) op = Operator::Subtract;
        if (op != Operator::Add && op != Operator::Subtract) ThrowOperandMismatch();
        return JoinFoxPro(op, a.AsText(), b.AsText(), out);
    }
    if (IsMoment(a) || IsMoment(b)) return CalculateMoment(op, a, b, out);
    if (!IsFoxProNumber(a) || !IsFoxProNumber(b)) ThrowOperandMismatch();
    if (op == Operator::Modulo) return Remainder(a, b, out);
    CalculateNumbers(op, a, b, out);
}

void NegateFoxPro(const Value& a, Value& out) {
    if (!IsFoxProNumber(a)) ThrowOperandMismatch();
    Negate(a, out);
}

std::optional<bool> TruthOfFoxPro(const Value& value) {
    if (value.IsNull()) return std::nullopt;
    if (value.Kind() != ValueKind::Boolean) ThrowOperandMismatch();
    return value.AsBoolean();
}

std::string_view LikeText(const Value& value, std::string&) {
    if (!IsText(value)) ThrowOperandMismatch();
    return WithoutRight(value.AsText());
}

constexpr SqlFunction kChoices[] = {
    {"iif", 3, 3, adVariant, true, nullptr, Chooses::ByCondition},
    {"icase", 2, 200, adVariant, true, nullptr, Chooses::FirstTrue},
    {"recno", 0, 1, adInteger, true, nullptr, Chooses::RowNumber},
};

const SqlFunction* FoxProFunction(std::string_view name) {
    const std::span<const SqlFunction> tables[] = {kChoices, FoxProTextFunctions(), FoxProNumberFunctions(),
                                                   FoxProDateFunctions(), FoxProValueFunctions()};
    return FindFunction(tables, name);
}

Error UnknownFunction(const std::string& name) {
    return {ErrorKind::Syntax, name,
            "File '" + AsciiLower(name) + ".prg' does not exist. (There is no function '" + name + "'.)"};
}
Error WrongArguments(const std::string& name) {
    return {ErrorKind::Syntax, name,
            "Function argument value, type, or count is invalid. (Too few or too many arguments of '" + name + "'.)"};
}
Error UnknownColumn(const std::string& name, const std::string& table) {
    if (table.empty()) return {ErrorKind::Syntax, name, "Variable '" + AsciiUpper(name) + "' is not found."};
    return {ErrorKind::Syntax, name,
            "SQL: Column '" + AsciiUpper(name) + "' is not found. (There is none in table '" + table + "'.)"};
}

/// An empty date is Null in the rows, so that EMPTY() of a date asks for Null.
void SettleEmptyMoment(Expr& e, std::span<const DeclaredType> types) {
    if (e.operands.size() != 1 || (!EqualNoCase(e.name, "empty") && !EqualNoCase(e.name, "isblank"))) return;
    const DataTypeEnum type = TypeOfExpression(e.operands[0], types).type;
    if (type == adDate || type == adDBTimeStamp) e.kind = ExprKind::IsNull;
}

/// A sum with a date-time counts seconds, one with a date days: only the types of the operands tell them apart.
void SettleTypes(Expr& e, std::span<const DeclaredType> types) {
    for (Expr& operand : e.operands) SettleTypes(operand, types);
    if (e.kind == ExprKind::Call) SettleEmptyMoment(e, types);
    if (e.kind != ExprKind::Binary || (e.op != Operator::Add && e.op != Operator::Subtract)) return;
    const DataTypeEnum left = TypeOfExpression(e.operands[0], types).type,
                       right = TypeOfExpression(e.operands[1], types).type;
    const bool add = e.op == Operator::Add;
    if (left == adDBTimeStamp || right == adDBTimeStamp)
        e.op = add ? Operator::AddSeconds : Operator::SubtractSeconds;
    else if (!add && IsTextType(left) && IsTextType(right))
        e.op = Operator::JoinTrimmed;
}

const SqlFunction* FunctionWithoutDeleted(std::string_view name) {
    return EqualNoCase(name, "deleted") ? nullptr : FoxProFunction(name);
}

constexpr ExpressionRules MakeRules(bool ansi, bool deletedShown) {
    return {
        .compare = CompareFoxPro,
        .holds = ansi ? Holds : HoldsForPrefix,
        .calculate = CalculateFoxPro,
        .negate = NegateFoxPro,
        .truth = TruthOfFoxPro,
        .likeText = LikeText,
        .like = {.sets = false, .foldsCase = false},
        .function = deletedShown ? FunctionWithoutDeleted : FoxProFunction,
        .unknownFunction = UnknownFunction,
        .wrongArguments = WrongArguments,
        .unknownColumn = UnknownColumn,
        .settle = SettleTypes,
        .truthAsNumber = 1,
        .foldsCase = false,
        .rangesGoBothWays = false,
        .truthWords = false,
    };
}

}  // namespace

void ThrowOperandMismatch() {
    throw Error(ErrorKind::Conversion, "", "Operator/operand type mismatch.");
}
void ThrowFoxProArgument() {
    throw Error(ErrorKind::Conversion, "", "Function argument value, type, or count is invalid.");
}

std::optional<int> CompareFoxPro(const Value& a, const Value& b) {
    if (a.IsNull() || b.IsNull()) return std::nullopt;
    if (IsText(a) && IsText(b)) return ComparePadded(a.AsText(), b.AsText());
    if (IsMoment(a) && IsMoment(b)) return CompareMoments(a.AsDateTime(), b.AsDateTime());
    if (IsFoxProNumber(a) && IsFoxProNumber(b)) return CompareNumbers(a, b);
    if (a.Kind() == ValueKind::Boolean && b.Kind() == ValueKind::Boolean) return a.AsBoolean() - b.AsBoolean();
    if (a.Kind() == ValueKind::Bytes && b.Kind() == ValueKind::Bytes) return CompareBytes(a, b);
    ThrowOperandMismatch();
}

const ExpressionRules& FoxProRules(bool ansi, bool deletedShown) {
    static constexpr ExpressionRules kRules[2][2] = {{MakeRules(false, false), MakeRules(false, true)},
                                                     {MakeRules(true, false), MakeRules(true, true)}};
    return kRules[ansi ? 1 : 0][deletedShown ? 1 : 0];
}

}  // namespace varnel::sql
