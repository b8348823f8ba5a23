#include "providers/sql/JetRules.h"

#include <algorithm>

#include "ado/types/ValueText.h"
#include "platform/CodePage.h"
#include "providers/sql/Arithmetic.h"
#include "providers/sql/ExpressionValues.h"
#include "providers/sql/SqlFunctionTable.h"

namespace varnel::sql {
namespace {

template <class T>
int Order(const T& a, const T& b) {
    return a < b ? -1 : (b < a ? 1 : 0);
}

bool IsAsciiText(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

unsigned char Lower(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 'A' && byte <= 'Z' ? static_cast<unsigned char>(byte + 32) : byte;
}

int CompareAscii(std::string_view a, std::string_view b) {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        const int difference = Lower(a[i]) - Lower(b[i]);
        if (difference != 0) return difference;
    }
    return Order(a.size(), b.size());
}

int CompareWithGuid(const Value& guid, const Value& other) {
    GuidBytes parsed;
    if (other.Kind() == ValueKind::Guid) return Order(guid.AsGuid(), other.AsGuid());
    if (other.Kind() != ValueKind::Text) ThrowTypeMismatch();
    if (ParseGuid(other.AsText(), parsed)) return Order(guid.AsGuid(), parsed);
    return CompareTexts(DefaultText(guid), other.AsText());
}

/// \ and Mod round both sides to whole numbers first.
void DivideWhole(Operator op, const Value& a, const Value& b, Value& out) {
    const std::int64_t left = WholeOf(a), right = WholeOf(b);
    if (right == 0) return out.SetNull();
    if (right == -1) return op == Operator::Modulo ? out.SetInteger(0) : Negate(Value::OfInteger(left), out);
    out.SetInteger(op == Operator::Modulo ? left % right : left / right);
}

std::optional<bool> Holds(Operator op, const Value& a, const Value& b) {
    const std::optional<int> order = CompareValues(a, b);
    return order ? std::optional<bool>(OrderHolds(op, *order)) : std::nullopt;
}

constexpr SqlFunction kChoices[] = {
    {"iif", 3, 3, adVariant, true, nullptr, Chooses::ByCondition},
    {"switch", 2, 64, adVariant, true, nullptr, Chooses::FirstTrue},
    {"choose", 2, 64, adVariant, true, nullptr, Chooses::ByPosition},
};

const SqlFunction* JetFunction(std::string_view name) {
    const std::span<const SqlFunction> tables[] = {kChoices, TextFunctions(), NumberFunctions(), DateFunctions()};
    return FindFunction(tables, name);
}

Error UnknownFunction(const std::string& name) {
    return {ErrorKind::Syntax, name, "Undefined function '" + name + "' in expression."};
}
Error WrongArguments(const std::string& name) {
    return {ErrorKind::Syntax, name,
            "Wrong number of arguments used with function '" + name + "' in query expression."};
}
Error UnknownColumn(const std::string& name, const std::string& table) {
    const std::string what = table.empty() ? "'" + name + "' is unknown here."
                                           : "There is no column '" + name + "' in table '" + table + "'.";
    return {ErrorKind::Syntax, name, "No value given for one or more required parameters. (" + what + ")"};
}

}  // namespace

int CompareTexts(std::string_view a, std::string_view b) {
    if (IsAsciiText(a) && IsAsciiText(b)) return CompareAscii(a, b);
    return FoldCase(a).compare(FoldCase(b));
}

std::optional<int> CompareValues(const Value& a, const Value& b) {
    if (a.IsNull() || b.IsNull()) return std::nullopt;
    const ValueKind left = a.Kind(), right = b.Kind();
    if (left == ValueKind::Text && right == ValueKind::Text) return CompareTexts(a.AsText(), b.AsText());
    if (left == ValueKind::Guid) return CompareWithGuid(a, b);
    if (right == ValueKind::Guid) return -CompareWithGuid(b, a);
    if (left == ValueKind::Bytes && right == ValueKind::Bytes) return CompareBytes(a, b);
    const bool moments = left == ValueKind::DateTime || right == ValueKind::DateTime;
    if (moments && !IsNumber(a) && !IsNumber(b)) return CompareMoments(MomentOf(a), MomentOf(b));
    return CompareNumbers(a, b);
}

void Calculate(Operator op, const Value& a, const Value& b, Value& out) {
    const bool texts = a.Kind() == ValueKind::Text && b.Kind() == ValueKind::Text;
    if (op == Operator::Join || (texts && op == Operator::Add)) return JoinTexts(a, b, out);
    if (a.IsNull() || b.IsNull()) return out.SetNull();
    if (op == Operator::IntegerDivide || op == Operator::Modulo) return DivideWhole(op, a, b, out);
    CalculateNumbers(op, a, b, out);
    const bool leftMoment = a.Kind() == ValueKind::DateTime, rightMoment = b.Kind() == ValueKind::DateTime;
    const bool moment = (op == Operator::Add && (leftMoment || rightMoment)) ||
                        (op == Operator::Subtract && leftMoment && !rightMoment);
    if (moment && !out.IsNull()) out.SetDateTime(FromAutomationDate(out.AsDouble()));
}

const ExpressionRules kJetRules = {
    .compare = CompareValues,
    .holds = Holds,
    .calculate = Calculate,
    .negate = Negate,
    .truth = TruthOf,
    .likeText = TextOf,
    .like = {.sets = true, .foldsCase = true},
    .function = JetFunction,
    .unknownFunction = UnknownFunction,
    .wrongArguments = WrongArguments,
    .unknownColumn = UnknownColumn,
    .settle = nullptr,
    .truthAsNumber = -1,
    .foldsCase = true,
    .rangesGoBothWays = true,
    .truthWords = true,
};

}  // namespace varnel::sql
