// A query kept in a store, read as if it were a table.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "ado/types/Provider.h"
#include "providers/sql/StoreTable.h"

namespace varnel::sql {

/// The table or the kept query of that name, for reading. owner: as in OpenStoreTable. Throws Error; Error{Corrupt} for
/// a query that is made of itself.
std::shared_ptr<StoreTable> OpenStoreSource(std::shared_ptr<OpenStore> store, const ExpressionRules& rules,
                                            const std::string& name, const std::string& owner = "");

/// Its rows are those of the statement each time it is run; a row's id is its number, from 1 on.
class ViewTable : public TableFile {
public:
    ViewTable(std::shared_ptr<OpenStore> store, const ExpressionRules& rules, SelectStatement select);

    const std::vector<ColumnInfo>& Columns() const override { return columns_; }
    std::unique_ptr<TableRows> Rows(std::span<const std::size_t> wanted) override;
    std::int64_t CountRows() override;
    /// These throw Error{Constraint} "Operation must use an updatable query."
    void Append(std::span<const Value> values, const std::vector<bool>& assigned) override;
    void Update(RowId row, std::span<const Value> values, const std::vector<bool>& assigned) override;
    void Delete(RowId row) override;
    void DeleteAll() override;
    void Commit() override {}

private:
    std::unique_ptr<RowReader> Run();

    std::shared_ptr<OpenStore> store_;
    const ExpressionRules& rules_;
    SelectStatement select_;
    std::unique_ptr<RowReader> first_;  ///< the run that told the columns; the first cursor takes it over
    std::vector<ColumnInfo> columns_;
};

}  // namespace varnel::sql
