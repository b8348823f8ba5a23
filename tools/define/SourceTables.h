// The tables of a source that a session is to move.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ado/Connection.h"

namespace varnel::admin {

struct SourceTable {
    TableInfo info;
    std::vector<TableColumn> columns;
    std::string fault;  ///< why its columns cannot be told, or the session cannot name it; "" when all is well
};

/// patterns: with * and ?, of a name or of "owner.name"; none: every table, and no view.
/// Throws Error{Constraint} when nothing matches, with the patterns that match nothing.
std::vector<SourceTable> ReadSourceTables(const Connection& source, std::string_view kind,
                                          const std::vector<std::string>& patterns);

/// Why the statements of a session cannot name a table or column of this kind of source; "" when they can.
std::string FaultOfSourceName(std::string_view kind, std::string_view name, bool isTable);

}  // namespace varnel::admin
