// What a stored filter means here.
#pragma once

#include "tools/check/TableFacts.h"

namespace varnel::admin {

/// Points out patterns of LIKE that do not match as whoever wrote them may have meant.
void CheckFilterText(const TableFacts& facts);

}  // namespace varnel::admin
