// Where a container and its tables are.
#pragma once

#include <string>
#include <string_view>

#include "providers/foxpro/DbcCatalog.h"
#include "providers/foxpro/DbfFile.h"

namespace varnel::foxpro {

/// What a container lists. Needs a hold.
DbcCatalog ReadContainer(DbfFile& container);

/// With its separator; "" for a bare name.
std::string FolderOf(const std::string& path);
/// The stored path that a container's (or a table's) relative path means, seen from folder.
std::string ResolvedPath(const std::string& folder, const std::string& path);
bool IsSameFile(std::string_view pathA, std::string_view pathB);

}  // namespace varnel::foxpro
