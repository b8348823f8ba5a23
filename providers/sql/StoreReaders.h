// The rows of SELECT statements whose values come straight from a table's cursor.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "ado/types/Provider.h"
#include "providers/sql/ChosenRows.h"
#include "providers/sql/StoreTable.h"

namespace varnel::sql {

/// All rows, plain columns: the cursor fills the caller's values.
class PlainReader : public RowReader {
public:
    /// columns: positions in the table. described: one per column.
    PlainReader(std::shared_ptr<StoreTable> table, const std::vector<std::size_t>& columns,
                std::vector<ColumnInfo> described);

    const std::vector<ColumnInfo>& Columns() const override { return described_; }
    bool Next(std::span<Value> row) override { return rows_->Next(row); }

private:
    std::shared_ptr<StoreTable> table_;
    std::unique_ptr<TableRows> rows_;
    std::vector<ColumnInfo> described_;
};

/// Plain columns of the rows that a condition chooses. A row in doubt is delivered as a failed row: a Failure in the
/// first column, Null in the others.
class ChosenReader : public RowReader {
public:
    /// most: how many rows at most.
    ChosenReader(std::shared_ptr<StoreTable> table, RowChoice choice, const std::vector<std::size_t>& columns,
                 std::vector<ColumnInfo> described, std::int64_t most);

    const std::vector<ColumnInfo>& Columns() const override { return described_; }
    bool Next(std::span<Value> row) override;

private:
    /// A column of the result.
    struct Source {
        std::size_t slot = 0;
        bool usedAgain = false;  ///< a later column shows the same value
    };

    static std::vector<Source> SourcesOf(RowChoice& choice, const std::vector<std::size_t>& columns);

    std::vector<Source> sources_;  ///< before rows_: finding them adds to what is wanted
    std::vector<ColumnInfo> described_;
    ChosenRows rows_;
    std::int64_t left_;
};

/// One row with one number.
class CountReader : public RowReader {
public:
    CountReader(ColumnInfo column, std::int64_t count) : described_{std::move(column)}, count_(count) {}

    const std::vector<ColumnInfo>& Columns() const override { return described_; }
    bool Next(std::span<Value> row) override;

private:
    std::vector<ColumnInfo> described_;
    std::int64_t count_;
    bool given_ = false;
};

}  // namespace varnel::sql
