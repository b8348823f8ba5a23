// The operators and literals of key and FOR expressions.
#pragma once

#include <string>
#include <string_view>

#include "providers/foxpro/KeyTerm.h"

namespace varnel::foxpro {

KeyTermPtr TextLiteral(std::string text);
KeyTermPtr NumberLiteral(double number);
KeyTermPtr LogicalLiteral(bool truth);

// Each gives null when the operands' sorts do not go with the operator.

/// "+" joins texts, adds numbers, moves dates by days and moments by seconds; "-" the same but for texts.
KeyTermPtr SumTerm(char sign, KeyTermPtr left, KeyTermPtr right);
/// comparison: "=", "==", "<>", "<", "<=", ">", ">=". Texts compare by bytes, the shorter one filled with blanks; "="
/// and "<>" look only as far as the right one goes.
KeyTermPtr ComparisonTerm(std::string_view comparison, KeyTermPtr left, KeyTermPtr right);
KeyTermPtr AndTerm(KeyTermPtr left, KeyTermPtr right);
KeyTermPtr OrTerm(KeyTermPtr left, KeyTermPtr right);
KeyTermPtr NotTerm(KeyTermPtr operand);

}  // namespace varnel::foxpro
