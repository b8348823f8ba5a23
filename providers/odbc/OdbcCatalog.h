// What a driver says of its database's tables and their columns. Drivers answer these questions in many ways, some not
// at all: columns come from an empty result of the table itself, and the driver's lists only add to that.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ado/types/Provider.h"
#include "providers/odbc/OdbcLink.h"

namespace varnel::odbc {

/// Tables and views without those of the system. The owner is the schema; the catalog where there are no schemas.
std::vector<TableInfo> ListTables(const std::shared_ptr<OdbcLink>& link);
/// Throws the driver's error when there is no such table.
std::vector<TableColumn> DescribeTable(const std::shared_ptr<OdbcLink>& link, const std::string& owner,
                                       const std::string& table);
/// Schemas that a server keeps for itself, and its own tables in other schemas.
bool IsSystemTable(std::string_view owner, std::string_view table);

}  // namespace varnel::odbc
