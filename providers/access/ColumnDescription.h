// A table's columns as a record set describes them.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "ado/types/Provider.h"
#include "providers/access/TableDefinition.h"

namespace varnel::access {

/// Positions in table.columns in the order in which users see them.
std::vector<std::size_t> ColumnOrder(const TableDefinition& table);
/// Throws Error{NotSupported} for a type that this program does not know.
ColumnInfo DescribeColumn(const Column& column, Version version);
/// The type in Access's words, as CREATE TABLE takes them; "" for a type that this program does not know.
std::string TypeWordOf(const Column& column);

}  // namespace varnel::access
