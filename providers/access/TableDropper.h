// DROP TABLE: gives back everything that a table occupies, and takes it out of the system tables.
#pragma once

#include <string_view>

#include "providers/access/DatabaseWriter.h"

namespace varnel::access {

class TableDropper {
public:
    /// Used within a step of the database.
    explicit TableDropper(DatabaseWriter& database) : database_(database) {}

    /// Throws Error{Constraint} when there is no such table or a relationship names it, Error{NotSupported} for the
    /// system's own tables.
    void Drop(std::string_view name);

private:
    void CheckDroppable(const CatalogEntry& entry, const TableDefinition& table);
    void RemoveMap(RowPointer map);

    DatabaseWriter& database_;
};

}  // namespace varnel::access
