// The tables of a SQLite file.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "providers/sql/SqliteFile.h"
#include "providers/sql/TableShape.h"

namespace varnel::sql {

/// The real name of the table or view that is called name without regard to case; nothing when there is none.
std::optional<std::string> FindTable(SqliteFile& file, std::string_view name);
/// Throws Error{Constraint} "The Jet database engine cannot find the input table or query 'name'."
TableShape ReadShape(SqliteFile& file, const std::string& name);

/// The file's tables and views, without SQLite's own, by name.
std::vector<TableInfo> ListTables(SqliteFile& file);
/// What the file says of the columns of a table or view. Throws as ReadShape does.
std::vector<TableColumn> DescribeTable(SqliteFile& file, const std::string& name);

}  // namespace varnel::sql
