// The rows of one session in the repository's tables, as they are: kept before they are replaced, put back when the
// replacement fails.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "ado/Ado.h"
#include "tools/repository/RepositoryTables.h"

namespace varnel::admin {

/// Rows of one table with the columns that it has in the repository at hand: a repository from elsewhere may lack some
/// of ours and have others of its own.
struct StoredTable {
    std::vector<std::string> columns;
    std::vector<std::vector<Value>> rows;

    bool empty() const { return rows.empty(); }
    /// The value of a column, named without regard to case; Null when the table has no such column.
    const Value& At(std::size_t row, std::string_view column) const;
    /// The place of a column, or the number of columns.
    std::size_t PlaceOf(std::string_view column) const;
};

/// Per table of kRepositoryTables.
using StoredRows = std::array<StoredTable, kRepositoryTables.size()>;
/// The places of the tables in StoredRows and in kRepositoryTables.
enum TablePlace : std::size_t { kSessions, kTables, kColumns };

/// "column=id" for the table's session number.
std::string OfSession(const RepositoryTable& table, std::int16_t id);
/// The rows of a query. Throws Error.
StoredTable ReadStored(const std::string& query, const Connection& repository);
/// Every column that the repository's tables have.
StoredRows KeepRows(const Connection& repository, std::int16_t id);
/// Throws Error{Misuse} with the remedy when the rows hold no session; file: the repository.
void RequireSession(const StoredRows& rows, std::int16_t id, const std::string& file);
/// Deletes the session's rows of all three tables.
void DeleteRows(Connection& repository, std::int16_t id);
/// The last table first: a session exists only once its tables and columns do. A column that the repository lacks is
/// left out where it is Null. Throws Error, among others for a value that has no column.
void AppendRows(const Connection& repository, const StoredRows& rows);

}  // namespace varnel::admin
