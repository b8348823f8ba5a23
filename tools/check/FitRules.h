// Which values of a source column its target column may not hold, told from the two types alone.
#pragma once

#include "tools/check/TableFacts.h"

namespace varnel::admin {

/// Needs facts.source and facts.target. certainOnly: only what every value meets.
void CheckFit(const TableFacts& facts, bool certainOnly);

}  // namespace varnel::admin
