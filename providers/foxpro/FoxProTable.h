// One FoxPro table as the SQL engine sees it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "providers/foxpro/Container.h"
#include "providers/foxpro/DbfFile.h"
#include "providers/tablefile/TableFile.h"

namespace varnel::foxpro {

/// The file is held for writing from the first change on for as long as the table lives.
class FoxProTable : public TableFile {
public:
    /// listed: as its container has it; empty for a free table, whose columns have the fields' own names in lower case.
    FoxProTable(std::shared_ptr<DbfFile> file, ContainerTable listed, bool showDeleted);

    const std::vector<ColumnInfo>& Columns() const override { return columns_; }
    std::vector<TableColumn> Describe() override;
    /// Also by the names in the file itself.
    std::optional<std::size_t> FindColumn(std::string_view name) const override;
    std::unique_ptr<TableRows> Rows(std::span<const std::size_t> wanted) override;
    std::int64_t CountRows() override;
    void Append(std::span<const Value> values, const std::vector<bool>& assigned) override;
    void Update(RowId row, std::span<const Value> values, const std::vector<bool>& assigned) override;
    void Delete(RowId row) override;
    void DeleteAll() override;
    void Commit() override;

private:
    DbfFile& Writing();
    RecordNumber NumberOf(RowId row);

    std::shared_ptr<DbfFile> file_;
    std::vector<ColumnInfo> columns_;
    std::vector<std::string> names_, storedNames_;
    std::string primaryTag_;
    bool showDeleted_;
    std::unique_ptr<DbfFile::Hold> writeHold_;
};

}  // namespace varnel::foxpro
