// The command that runs one statement against any connection string.
#pragma once

#include <string>

namespace varnel::admin {

/// Prints the rows of the statement, as an aligned table or as CSV, or "done" when it returns none. Throws Error.
void RunSql(const std::string& connectionString, const std::string& statement, bool csv);

}  // namespace varnel::admin
