// A new, empty Jet 4 database.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/DateTime.h"

namespace varnel::access {

/// All bytes of the file. created: the creation time of its objects.
std::vector<std::uint8_t> BlankDatabase(DateTime created);

/// Makes the file; it appears at once and whole. Throws Error{Io}; "File already exists" when there is one.
void CreateBlankDatabase(std::string_view storedPath);

}  // namespace varnel::access
