// The sample Access files that tests read.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "providers/access/AccessDatabase.h"

namespace varnel::access {

/// The path of a sample; nothing when this machine has no such file. They are looked for in the folder that the
/// environment variable VARNEL_ACCESS_SAMPLES names, in tests/data/access, and beside the source tree.
std::optional<std::string> SamplePath(const std::string& name);
std::vector<std::uint8_t> BytesOfFile(const std::string& path);
/// The database in these bytes, read from memory.
std::unique_ptr<AccessDatabase> DatabaseOf(const std::vector<std::uint8_t>& bytes,
                                           const std::string& name = "sample.mdb");
/// What a command prints.
std::string OutputOf(const std::string& command);
std::vector<std::string> LinesOf(const std::string& command);

using Rows = std::vector<std::vector<Value>>;
/// All rows, with the columns of these names.
Rows ReadColumns(TableFile& table, const std::vector<std::string>& names);
/// All rows, all columns.
Rows ReadTable(AccessDatabase& database, const std::string& table);
/// The rows' default texts: values joined by a bar, ~ for Null, !words for a failure; rows each ending in a line feed.
std::string Shown(const Rows& rows);

}  // namespace varnel::access
