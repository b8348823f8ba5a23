// The columns that a statement's values go into, and what they have no place for.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ado/types/Value.h"
#include "providers/odbc/OdbcTypes.h"

namespace varnel::odbc {

/// The columns of a SELECT as the server describes them without running it. Nothing when it refuses; statement then
/// has its words.
std::optional<std::vector<OdbcColumn>> DescribeSelect(const StatementHandle& statement, const std::string& select,
                                                      const ConnectionText& connection);

/// Servers drop without a word what a column has no place for: decimal places, parts of a second, the time of day. Such
/// a value is refused instead. Throws Error{Conversion} naming column and value.
/// Returns value, or scratch with a moment that was off a step of the column's by no more than arithmetic with days
/// leaves behind (50 microseconds), put on that step.
const Value& Fitted(const OdbcColumn& column, const Value& value, Value& scratch);

}  // namespace varnel::odbc
