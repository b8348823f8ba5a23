// The type words of the servers: what a column that a CREATE TABLE defines will hold.
#pragma once

#include <optional>

#include "ado/types/Catalog.h"
#include "repository/model/SessionModel.h"

namespace varnel::admin {

/// The column of the target kind (ORACLE, MSSQL or MySQL) that the load engine's definition of column makes; typeName
/// holds its type word with its size. Nothing when the server knows no such word.
std::optional<TableColumn> ServerColumn(const ColumnEntry& column, bool fromSource);
/// Why the server refuses the size of the definition; "" when it does not.
std::string WhySizeIsRefused(const ColumnEntry& column, bool fromSource);

}  // namespace varnel::admin
