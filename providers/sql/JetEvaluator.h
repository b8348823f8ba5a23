// Works out an expression of the Jet dialect for one row.
#pragma once

#include <span>

#include "providers/sql/SqlAst.h"

namespace varnel::sql {

/// What an expression's columns and markers stand for at the moment.
struct RowContext {
    std::span<const Value> columns;  ///< by Expr::slot
    std::span<const Value> markers;  ///< by Expr::slot
};

/// The expression's value: a column's own, a literal, or scratch. Throws Error{Conversion}.
const Value& Evaluate(const Expr& expression, const RowContext& row, Value& scratch);

}  // namespace varnel::sql
