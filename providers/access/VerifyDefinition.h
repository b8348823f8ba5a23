// A table's definition: its pages as bytes, and what it says of columns and indexes.
#pragma once

#include "providers/access/VerifyContext.h"

namespace varnel::access {

/// table: as ReadTableDefinition gives it, with its name. Enters its pages into the ledger.
void VerifyDefinition(VerifyContext& context, const TableDefinition& table);

}  // namespace varnel::access
