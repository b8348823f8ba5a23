// The property blob of a table whose columns have a rule beside their definition (TableProperties.h has its form).
#pragma once

#include <span>
#include <string>

namespace varnel::access {

/// For a table in which these columns are required. Empty when there are none.
std::string RequiredColumnsBlob(std::span<const std::string> columns);

}  // namespace varnel::access
