// The procedures by which drivers ask SQL Server for its tables, as queries over the database under the double.
#pragma once

#include <optional>
#include <string>

namespace varnel::tds {

/// "exec sp_tables …", "exec sp_columns …" and "exec sp_pkeys …" as a SELECT; nothing for any other statement. Of the
/// parameters only @table_name counts.
std::optional<std::string> CatalogQuery(const std::string& statement);

}  // namespace varnel::tds
