// The verification of database files, for programs that know no format.
#pragma once

#include <string>

#include "providers/tablefile/FileReport.h"

namespace varnel {

/// Looks at everything in a database file: an Access file, an SQLite one, a FoxPro table, or a container with its
/// tables. storedPath: as users name it. password: "" when none is needed. Throws Error when it cannot be opened, or is
/// of another format.
/// seen: not called for SQLite files, which SQLite looks through itself.
FileReport VerifyFile(const std::string& storedPath, const std::string& password, const RowsSeen& seen);

}  // namespace varnel
