// SELECT over a table of a store, by the shortest of four roads:
//   all rows, plain columns      the table's cursor itself
//   count(*)                     the table's own count, or a count of the chosen rows
//   a condition, plain columns   the cursor's rows that the condition chooses
//   everything else              SQLite over a virtual table of the chosen rows: order, groups, expressions
#pragma once

#include <memory>

#include "ado/types/Provider.h"
#include "providers/sql/ExpressionRules.h"
#include "providers/sql/OpenStore.h"
#include "providers/sql/SqlAst.h"

namespace varnel::sql {

/// Throws Error: syntax, unknown table and columns, a read failure.
std::unique_ptr<RowReader> OpenStoreSelect(std::shared_ptr<OpenStore> store, const ExpressionRules& rules,
                                           const SelectStatement& select);

}  // namespace varnel::sql
