// What a server says of its tables and their columns.
#pragma once

#include <string>
#include <vector>

#include "ado/types/Provider.h"

namespace varnel::mysql {

/// The tables and views of a database, or of all databases but the server's own when database is "".
std::vector<TableInfo> ListTables(ProviderSession& session, const std::string& database);
/// Throws the server's error when there is no such table.
std::vector<TableColumn> DescribeTable(ProviderSession& session, const std::string& database, const std::string& table);

}  // namespace varnel::mysql
