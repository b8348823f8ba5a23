// How a dialect writes its statements: the words and signs that the shared parsers look for.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "providers/sql/SqlAst.h"
#include "providers/sql/SqlTokens.h"

namespace varnel::sql {

class ExpressionParser;

struct OperatorWord {
    std::string_view text;  ///< a keyword in lower case, or a sign
    Operator op;
};
using OperatorLevel = std::span<const OperatorWord>;

struct Grammar {
    std::vector<Token> (*tokenize)(std::string_view statement);
    /// Operators from the loosest to the tightest: those between truths (NOT binds tighter than they), those that
    /// compare, and those that calculate. All bind to the left.
    std::span<const OperatorLevel> truths;
    OperatorLevel comparisons;
    std::span<const OperatorLevel> calculations;
    /// Tighter than all of them.
    OperatorLevel powers;
    bool truthNames;       ///< the words True and False are literals
    bool signBeforePower;  ///< -2^2 is 4; else -4
    /// The signs that mean NOT as the word does; "" for none.
    std::string_view notSign;
    /// Keywords may be cut down to this many letters; 0: they are written in full.
    std::size_t shortestKeyword;
    /// Reads an operand that only this dialect has and returns true, or returns false and has read nothing.
    bool (*ownOperand)(ExpressionParser& parser, Expr& made);
    /// Says whether a literal of these two is compared in a way of its own, and makes left into that; may be null.
    bool (*ownComparison)(Operator op, Expr& left, Expr& right);
    /// Gives a call its own form, where the dialect's functions stand for an operator; may be null.
    void (*ownCall)(Expr& call);
};

extern const Grammar kJetGrammar;
extern const Grammar kFoxProGrammar;

}  // namespace varnel::sql
