// CREATE TABLE: the pages of a new table, and its rows in the system tables.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "providers/access/DatabaseWriter.h"

namespace varnel::access {

class TableMaker {
public:
    /// Used within a step of the database.
    explicit TableMaker(DatabaseWriter& database) : database_(database) {}

    /// Throws Error{Constraint} when the name is taken or no name for a table, and for columns that make no table;
    /// Error{Syntax} for an unknown type word.
    void Make(std::string_view name, std::span<const ColumnDefinition> columns);

private:
    void CheckName(std::string_view name);
    void AddColumns(std::span<const ColumnDefinition> columns);
    void AddIndexes(std::span<const ColumnDefinition> columns);
    void AddIndex(const std::string& name, const std::vector<std::uint16_t>& columnIds, bool primary);
    void TakePages();
    RowPointer NewMap();
    void WritePages();

    DatabaseWriter& database_;
    TableDefinition table_;
    PageNumber mapPage_ = 0;
};

}  // namespace varnel::access
