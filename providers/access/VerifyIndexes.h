// The indexes of one table: their trees, their pages, and an entry for every row.
#pragma once

#include "providers/access/VerifyRows.h"

namespace varnel::access {

/// rows: of the same table, after Run. Enters the indexes' maps and pages into the ledger.
void VerifyIndexes(VerifyContext& context, const TableDefinition& table, VerifyRows& rows);

}  // namespace varnel::access
