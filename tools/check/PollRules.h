// A polled folder: its files, and what becomes of them.
#pragma once

#include <vector>

#include "tools/check/TableFacts.h"

namespace varnel::admin {

/// True when the connection string names the folder that is listed.
bool ReadsWherePolled();
/// The folder and its pattern; needs no table.
void CheckPolledFolder(Findings& found);
/// Files that load into one table, one after the other.
void CheckPolledFiles(const std::vector<TableFacts>& tables, Findings& found);

}  // namespace varnel::admin
