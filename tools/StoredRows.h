// The rows of one session in the repository's tables, as they are: kept before they are replaced, put back when the
// replacement fails.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "ado/Ado.h"
#include "tools/RepositoryTables.h"

namespace varnel::admin {

/// Per table of kRepositoryTables, the rows of one session with all columns of the table.
using StoredRows = std::array<std::vector<std::vector<Value>>, kRepositoryTables.size()>;

/// "column=id" for the table's session number.
std::string OfSession(const RepositoryTable& table, std::int16_t id);
StoredRows KeepRows(const Connection& repository, std::int16_t id);
/// Deletes the session's rows of all three tables.
void DeleteRows(Connection& repository, std::int16_t id);
/// The last table first: a session exists only once its tables and columns do.
void AppendRows(const Connection& repository, const StoredRows& rows);

}  // namespace varnel::admin
