// What concerns the session as a whole, or is seen in its definition alone.
#pragma once

#include "tools/check/TableFacts.h"

namespace varnel::admin {

/// Kind words, sub-kinds, folders of FoxPro tables, the log file.
void CheckSessionWords(Findings& found);
void CheckLog(Findings& found);
/// Load options, columns, numbers of one table.
void CheckTableWords(const TableFacts& facts);

}  // namespace varnel::admin
