// What reading a table of the source would meet: the table, its columns, its filter, its rows.
#pragma once

#include <memory>

#include "source/SourceQuery.h"
#include "tools/check/ScratchFolder.h"
#include "tools/check/Side.h"
#include "tools/check/TableFacts.h"

namespace varnel::admin {

/// The count query and the SELECT of the table, as the run sends them.
SourceQueries QueriesOf(const TableFacts& facts);
/// Reads nothing but the shape of the table and the number of rows; fills facts.source and the report's row count.
void CheckSourceTable(const Side& source, TableFacts& facts);

/// A folder that looks as the polled folder will look to the run: the Schema.ini that the run writes, and its files.
/// Null for a source that polls no folder. Throws Error{Io}.
std::unique_ptr<ScratchFolder> PolledFolderAsRead();

}  // namespace varnel::admin
