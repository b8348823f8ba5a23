// One table of an Access file.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "providers/access/DatabaseWriter.h"
#include "providers/access/Schema.h"
#include "providers/tablefile/TableFile.h"

namespace varnel::access {

/// The columns are those of the table when it was opened, in the order in which users see them; once they are others,
/// every call throws Error{Constraint}.
class AccessTable : public TableFile {
public:
    /// writer: null for a database that is only read. Throws Error: no such table, a damaged definition.
    AccessTable(std::shared_ptr<Schema> schema, std::shared_ptr<DatabaseWriter> writer, const CatalogEntry& entry);

    const std::vector<ColumnInfo>& Columns() const override { return columns_; }
    std::vector<TableColumn> Describe() override;
    std::unique_ptr<TableRows> Rows(std::span<const std::size_t> wanted) override;
    std::int64_t CountRows() override;
    void Append(std::span<const Value> values, const std::vector<bool>& assigned) override;
    void Update(RowId row, std::span<const Value> values, const std::vector<bool>& assigned) override;
    void Delete(RowId row) override;
    void DeleteAll() override;
    void Commit() override;
    std::unique_ptr<TableUnit> BeginUnit() override;

private:
    std::shared_ptr<const TableDefinition> Definition();
    /// What every write needs: the file, from the first write until this table is closed, and a table that is as it
    /// was.
    DatabaseWriter& Writer();

    std::shared_ptr<Schema> schema_;
    std::shared_ptr<DatabaseWriter> writer_;
    CatalogEntry entry_;
    std::unique_ptr<PageFile::Hold> writing_;
    std::uint64_t writtenState_ = 0;  ///< of the schema, at the last write
    std::string name_;
    std::shared_ptr<const TableDefinition> definition_;
    std::vector<std::size_t> order_;  ///< Columns()[k] is definition_->columns[order_[k]]
    std::vector<ColumnInfo> columns_;
};

}  // namespace varnel::access
