// Expressions of the Jet dialect with its own precedence, from the loosest:
// Imp, Eqv, Xor, Or, And, Not, comparisons (with Like, In, Between, Is), &, + -, Mod, \, * /, unary -, ^.
#pragma once

#include "providers/sql/SqlAst.h"
#include "providers/sql/TokenCursor.h"

namespace varnel::sql {

class ExpressionParser {
public:
    explicit ExpressionParser(TokenCursor& tokens) : tokens_(tokens) {}

    /// Throws Error{Syntax}, also for an expression nested too deeply.
    Expr Parse();
    /// How many ? were read so far.
    std::size_t Markers() const { return markers_; }

private:
    Expr Level(std::size_t level);
    Expr LogicalNot();
    Expr Comparison();
    Expr ComparisonTail(Expr left);
    Expr Negation();
    Expr Power();
    Expr Operand();
    Expr Literal();
    Expr EscapedMoment();
    Expr NameOrCall();
    Expr Call(std::string name, std::size_t at);
    Expr Moment(const std::string& text, std::size_t at);

    TokenCursor& tokens_;
    std::size_t markers_ = 0;
    int depth_ = 0;
};

}  // namespace varnel::sql
