// A new, empty Jet 4 database.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/DateTime.h"
#include "providers/access/Layout.h"

namespace varnel::access {

/// All bytes of the file. created: the creation time of its objects.
std::vector<std::uint8_t> BlankDatabase(DateTime created);

/// Makes the file; it appears at once and whole. Throws Error{Io}; "File already exists" when there is one.
void CreateBlankDatabase(std::string_view storedPath);

/// Makes a page of zeros a leaf of the table owner's index. entries: in ascending order, and all have room.
void FormatIndexLeaf(std::span<std::uint8_t> page, PageNumber owner, std::span<const std::string> entries);

}  // namespace varnel::access
