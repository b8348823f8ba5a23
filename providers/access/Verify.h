// Everything in a file held against everything else: pages, maps, definitions, rows, long values, indexes, catalog.
#pragma once

#include <string>
#include <string_view>

#include "providers/access/PageFile.h"
#include "providers/tablefile/FileReport.h"

namespace varnel::access {

/// seen: counts the rows of all tables. Throws what opening the file throws; whatever is wrong inside is reported.
/// Access 97's text keys are not compared.
FileReport VerifyDatabase(std::string_view storedPath, const std::string& password, const RowsSeen& seen);
/// The same of an open file.
FileReport VerifyDatabase(PageFile& file);

}  // namespace varnel::access
