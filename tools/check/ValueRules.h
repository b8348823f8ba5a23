// The values themselves: the rows of the source read once, each value held against where it goes.
#pragma once

#include "tools/check/Side.h"
#include "tools/check/TableFacts.h"

namespace varnel::admin {

/// Reads all rows of the table. Needs facts.source, and facts.target for a database.
void CheckValues(const Side& source, const TableFacts& facts);

}  // namespace varnel::admin
