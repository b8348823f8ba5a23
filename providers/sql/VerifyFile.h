// A database file looked at as a whole, whatever its format.
#pragma once

#include <string>

#include "providers/tablefile/FileReport.h"

namespace varnel::sql {

/// storedPath: a file as users name it. Its bytes say what it is. password: "" when none is needed. Throws Error{Io}
/// when there is no such file, Error{NotSupported} for a format that cannot be verified, and what opening throws.
FileReport VerifyFile(const std::string& storedPath, const std::string& password, const RowsSeen& seen);

}  // namespace varnel::sql
