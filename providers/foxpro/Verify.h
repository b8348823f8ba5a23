// Looks a table's files through for what contradicts itself.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "providers/tablefile/FileReport.h"

namespace varnel::foxpro {

/// What is wrong with the .dbf file and its memo file, each fault in words that name the file: head against size,
/// record flags, values that cannot be read, memos outside the memo file or upon one another, null flags,
/// autoincrements. Empty when all is well. Reads the whole table; memory grows with the number of memos, 16 bytes each.
/// Throws Error when the file cannot be opened or is no table at all.
std::vector<std::string> VerifyTable(std::string_view storedPath, const RowsSeen& seen = {});

}  // namespace varnel::foxpro
