// The operators that make a value out of two, as far as the dialects share them. None is called with Null, except
// JoinTexts.
#pragma once

#include "ado/types/Value.h"
#include "providers/sql/SqlAst.h"

namespace varnel::sql {

/// out = a op b for + - * / ^ on numbers, moments as their day numbers; the result is a number. A division by zero and
/// a power that has no value give Null. Whole numbers, currencies and decimals stay exact where the result fits, else
/// they become doubles. Throws Error{Conversion}. out is neither a nor b.
void CalculateNumbers(Operator op, const Value& a, const Value& b, Value& out);
/// out = -a
void Negate(const Value& a, Value& out);
/// out = a & b; Null counts as "".
void JoinTexts(const Value& a, const Value& b, Value& out);

}  // namespace varnel::sql
