// Works out an expression for one row, by the rules of its dialect.
#pragma once

#include <span>

#include "providers/sql/ExpressionRules.h"

namespace varnel::sql {

/// What an expression's columns and markers stand for at the moment.
struct RowContext {
    const ExpressionRules& rules;
    std::span<const Value> columns;  ///< by Expr::slot
    std::span<const Value> markers;  ///< by Expr::slot
    std::int64_t number = 0;         ///< of the row at hand; 0 where rows are not numbered
};

/// The expression's value: a column's own, a literal, or scratch. Throws Error{Conversion}.
const Value& Evaluate(const Expr& expression, const RowContext& row, Value& scratch);

}  // namespace varnel::sql
