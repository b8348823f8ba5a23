// Opens a repository file through the data layer.
#pragma once

#include <string>

#include "ado/Connection.h"

namespace varnel::admin {

/// value as it stands behind "keyword=" in a connection string, in quotes.
std::string QuotedValue(const std::string& value);
/// Throws Error{Io} with the remedy when the file does not exist.
Connection OpenRepository(const std::string& file);

}  // namespace varnel::admin
