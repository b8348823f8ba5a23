// The rows of a table as values.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "providers/access/CellDecoder.h"
#include "providers/access/TableScan.h"
#include "providers/tablefile/TableFile.h"

namespace varnel::access {

/// A row's id is its packed row pointer. A cell that cannot be read is a Failure that names table, column and place;
/// in a row that cannot be read all cells are. Holds the file for reading until the last row or its own end.
class TableReader : public TableRows {
public:
    /// columns: positions in table->columns. codePage: of Access 97's texts, else null. Throws Error{Corrupt},
    /// Error{Io}.
    TableReader(std::shared_ptr<PageFile> file, std::shared_ptr<const TableDefinition> table,
                std::span<const std::size_t> columns, const CodePage* codePage);

    bool Next(std::span<Value> row) override;
    RowId Current() const override { return current_; }
    /// Fills row with the row of that id. False when there is none.
    bool Seek(RowId at, std::span<Value> row);

private:
    void Decode(std::span<Value> row);
    void SetFailure(std::size_t k, Fault fault, Value& value) const;

    std::shared_ptr<PageFile> file_;
    std::shared_ptr<const TableDefinition> table_;
    std::vector<std::size_t> columns_;
    std::vector<CellPlan> plans_;
    std::unique_ptr<PageFile::Hold> hold_;
    std::optional<TableScan> scan_;
    std::optional<CellDecoder> decoder_;
    RowView view_;
    RowId current_ = 0;
};

}  // namespace varnel::access
