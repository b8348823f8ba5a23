// Expressions, read by the grammar of a dialect.
#pragma once

#include "providers/sql/Grammar.h"
#include "providers/sql/SqlAst.h"
#include "providers/sql/TokenCursor.h"

namespace varnel::sql {

class ExpressionParser {
public:
    ExpressionParser(TokenCursor& tokens, const Grammar& grammar) : tokens_(tokens), grammar_(grammar) {}

    /// Throws Error{Syntax}, also for an expression nested too deeply.
    Expr Parse();
    /// How many ? were read so far.
    std::size_t Markers() const { return markers_; }
    /// For the operands that only one dialect has.
    TokenCursor& Tokens() { return tokens_; }

private:
    /// A call of one of the procedures below, counted as a level of nesting.
    Expr Deeper(Expr (ExpressionParser::*read)());
    Expr Truths(std::size_t level);
    Expr LogicalNot();
    Expr Comparison();
    bool AtComparisonTail() const;
    Expr ComparisonTail(Expr left);
    Expr Like(Expr made);
    Expr Calculation() { return Calculations(0); }
    Expr Calculations(std::size_t level);
    Expr Signed();
    Expr Power();
    Expr PowerOperand();
    Expr Operand();
    Expr Literal();
    Expr EscapedMoment();
    Expr NameOrCall();
    Expr Call(std::string name, std::size_t at);
    Expr Moment(const std::string& text, std::size_t at);

    TokenCursor& tokens_;
    const Grammar& grammar_;
    std::size_t markers_ = 0;
    int depth_ = 0;
};

Expr MakeBinary(Operator op, Expr left, Expr right);
Expr MakeUnary(Operator op, Expr operand, std::size_t at);
Expr MakeLiteral(Value value, std::size_t at);

}  // namespace varnel::sql
