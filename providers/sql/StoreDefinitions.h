// CREATE TABLE as a store takes it.
#pragma once

#include <vector>

#include "providers/sql/SqlAst.h"

namespace varnel::sql {

/// The columns, keys of the whole table written at their columns. Throws Error: a column named twice, a key over a
/// column that is not there, a UNIQUE clause over several columns.
std::vector<ColumnDefinition> DefinitionsOf(const CreateTableStatement& create);

}  // namespace varnel::sql
