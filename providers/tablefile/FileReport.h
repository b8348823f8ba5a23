// What a look at everything in a database file found.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace varnel {

struct FileReport {
    /// Damage: each a sentence that names the place. Empty when the file is sound.
    std::vector<std::string> findings;
    /// Oddities that no program minds, such as pages that were left over.
    std::vector<std::string> notes;
    /// How much was looked at: "4 tables, 24 rows, 7 indexes with 32 entries, 16 pages".
    std::string extent;
};

/// Told now and then how many rows, or records, have been looked at so far; may be empty.
using RowsSeen = std::function<void(std::uint64_t)>;

}  // namespace varnel
