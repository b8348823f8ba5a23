// The operators of the Jet dialect that make a value out of two. None of them is called with Null, except Join.
#pragma once

#include "ado/types/Value.h"
#include "providers/sql/SqlAst.h"

namespace varnel::sql {

/// out = a op b for + - * / \ Mod ^. Two texts are joined by +; a division by zero gives Null.
/// Whole numbers, currencies and decimals stay exact where the result fits, else they become doubles.
/// Throws Error{Conversion}. out is neither a nor b.
void Calculate(Operator op, const Value& a, const Value& b, Value& out);
/// out = -a
void Negate(const Value& a, Value& out);
/// out = a & b; Null counts as "".
void JoinTexts(const Value& a, const Value& b, Value& out);

}  // namespace varnel::sql
