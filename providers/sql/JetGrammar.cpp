#include "providers/sql/Grammar.h"

namespace varnel::sql {
namespace {

constexpr OperatorWord kImp[] = {{"imp", Operator::Imp}};
constexpr OperatorWord kEqv[] = {{"eqv", Operator::Eqv}};
constexpr OperatorWord kXor[] = {{"xor", Operator::Xor}};
constexpr OperatorWord kOr[] = {{"or", Operator::Or}};
constexpr OperatorWord kAnd[] = {{"and", Operator::And}};
constexpr OperatorLevel kTruths[] = {kImp, kEqv, kXor, kOr, kAnd};

constexpr OperatorWord kComparisons[] = {
    {"=", Operator::Equal},         {"<>", Operator::NotEqual}, {"!=", Operator::NotEqual}, {"<=", Operator::LessEqual},
    {">=", Operator::GreaterEqual}, {"<", Operator::Less},      {">", Operator::Greater}};

constexpr OperatorWord kJoin[] = {{"&", Operator::Join}};
constexpr OperatorWord kSum[] = {{"+", Operator::Add}, {"-", Operator::Subtract}};
constexpr OperatorWord kModulo[] = {{"mod", Operator::Modulo}};
constexpr OperatorWord kWholeQuotient[] = {{"\\", Operator::IntegerDivide}};
constexpr OperatorWord kProduct[] = {{"*", Operator::Multiply}, {"/", Operator::Divide}};
constexpr OperatorLevel kCalculations[] = {kJoin, kSum, kModulo, kWholeQuotient, kProduct};

constexpr OperatorWord kPowers[] = {{"^", Operator::Power}};

}  // namespace

const Grammar kJetGrammar = {
    .tokenize = Tokenize,
    .truths = kTruths,
    .comparisons = kComparisons,
    .calculations = kCalculations,
    .powers = kPowers,
    .truthNames = true,
    .signBeforePower = false,
    .notSign = "",
    .shortestKeyword = 0,
    .ownOperand = nullptr,
    .ownComparison = nullptr,
    .ownCall = nullptr,
};

}  // namespace varnel::sql
