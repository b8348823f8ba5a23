// An open table of a store, as statements see it.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "providers/sql/ExpressionRules.h"
#include "providers/sql/OpenStore.h"
#include "providers/sql/SqlAst.h"
#include "providers/sql/TableShape.h"

namespace varnel::sql {

struct StoreTable {
    std::shared_ptr<OpenStore> store;  ///< lives as long as the table
    std::unique_ptr<TableFile> file;
    TableShape shape;

    const std::vector<ColumnInfo>& Columns() const { return file->Columns(); }
};

/// rules: of the dialect in which statements over the table are written.
/// owner: what the statement wrote before the name; it counts when it is a folder or a connection string.
/// Throws the store's Error when there is no such table.
std::shared_ptr<StoreTable> OpenStoreTable(std::shared_ptr<OpenStore> store, const ExpressionRules& rules,
                                           const std::string& name, const std::string& owner = "");

/// The column that a name stands for, if the name is one of this table, which the statement calls alias as well.
std::optional<std::size_t> ColumnNamed(const StoreTable& table, std::string_view alias, const Expr& name);

/// The columns of "SELECT a,b" or "SELECT *" in order; nothing when an item is anything but a column.
std::optional<std::vector<std::size_t>> PlainColumns(const StoreTable& table, const SelectStatement& select);

/// The columns as the statement's rows describe them: with the aliases that it gives.
std::vector<ColumnInfo> DescribePlain(const StoreTable& table, const SelectStatement& select,
                                      const std::vector<std::size_t>& columns);

}  // namespace varnel::sql
