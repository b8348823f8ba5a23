// SELECT with order, groups, DISTINCT, aggregates or expressions over a table of a store: SQLite works them out.
#pragma once

#include <memory>

#include "ado/types/Provider.h"
#include "providers/sql/ChosenRows.h"
#include "providers/sql/SqlAst.h"

namespace varnel::sql {

/// choice: the statement's condition; no further columns. Plain columns keep their description and type.
/// A cell that could not be read stays a Failure where it is only delivered; where something is computed with it, and
/// for a row in doubt, the read fails with the cell's words. Throws Error.
std::unique_ptr<RowReader> OpenComputed(std::shared_ptr<StoreTable> table, const SelectStatement& select,
                                        RowChoice choice);

}  // namespace varnel::sql
