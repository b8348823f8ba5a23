// What a database holds, as its table MSysObjects lists it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "providers/tablefile/TableFile.h"

namespace varnel::access {

/// The stored codes that matter here; forms, reports and the like have negative ones.
inline constexpr std::int64_t kLocalTable = 1, kOdbcLink = 4, kSavedQuery = 5, kFileLink = 6;

struct CatalogEntry {
    std::int32_t id = 0;  ///< of a local table the page of its definition
    std::int32_t parent = 0;
    std::string name;
    std::int64_t type = 0;
    std::uint32_t flags = 0;
    std::string database;     ///< of a link: the path of the other file
    std::string foreignName;  ///< of a link: the table's name over there
    RowId row = 0;            ///< in MSysObjects

    /// A local table that a user made: not the system's, not hidden by it, not temporary.
    bool IsUserTable() const;
    /// A query that a user made and that selects rows: it can be read, as far as SavedQuery.h goes.
    bool IsSelectQuery() const;
    /// Tables, links and queries share one set of names.
    bool IsTableOrQuery() const;
};

class Catalog {
public:
    Catalog() = default;
    /// damage: what is wrong with an entry that could not be read and is left out; "" when all could.
    Catalog(std::vector<CatalogEntry> entries, std::string damage);

    const std::vector<CatalogEntry>& Entries() const { return entries_; }
    /// The table, link or query of that name, case ignored; null when there is none.
    const CatalogEntry* Find(std::string_view name) const;
    /// Sorted by name, case ignored.
    std::vector<std::string> UserTables() const;
    const std::string& Damage() const { return damage_; }

private:
    std::vector<CatalogEntry> entries_;
    std::string damage_;
};

/// Throws Error{Constraint}, or Error{Corrupt} when the catalog has an entry that cannot be read: it may be this one.
[[noreturn]] void ThrowNoTable(std::string_view name, const Catalog& catalog);

}  // namespace varnel::access
