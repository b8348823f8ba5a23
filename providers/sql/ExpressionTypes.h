// The type of a computed column, as far as it is known before the first row.
#pragma once

#include <span>

#include "providers/sql/DeclaredTypes.h"
#include "providers/sql/SqlAst.h"

namespace varnel::sql {

/// True for the types of texts that a table of a store reports.
bool IsTextType(DataTypeEnum type);

/// inputs: the types of the expression's bound columns, by slot. adVariant when it depends on the row.
DeclaredType TypeOfExpression(const Expr& expression, std::span<const DeclaredType> inputs);

}  // namespace varnel::sql
