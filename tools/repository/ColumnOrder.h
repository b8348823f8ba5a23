// The order of a session's columns in the repository, which is the order in which tables are made and files written.
#pragma once

#include "tools/repository/StoredRows.h"

namespace varnel::admin {

/// An Access database puts new rows where others were deleted. When it has mixed up the columns of the session that
/// were just appended (given, in their order; kept: as they are read back), the table of columns is written anew, those
/// of other sessions as they stood. Throws Error; the table then holds the rows that it held before.
void KeepColumnOrder(Connection& repository, std::int16_t id, const StoredRows& given, const StoredRows& kept);

}  // namespace varnel::admin
