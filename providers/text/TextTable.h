// One text file as a table that is only read.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "providers/tablefile/TableFile.h"
#include "providers/text/FileLook.h"

namespace varnel::text {

/// The columns are those of the file when the table was opened. Rows and CountRows read the file as it is then.
class TextTable : public TableFile {
public:
    /// Throws Error: no such file, an empty one, one that cannot be read.
    TextTable(std::string storedPath, std::string fileName, TextFormat format, std::size_t bufferBytes);

    const std::vector<ColumnInfo>& Columns() const override { return look_->columns; }
    std::vector<TableColumn> Describe() override;
    /// Also by the header's own text, by F and the position, and by the first 64 characters.
    std::optional<std::size_t> FindColumn(std::string_view name) const override { return look_->names.Find(name); }
    std::unique_ptr<TableRows> Rows(std::span<const std::size_t> wanted) override;
    std::int64_t CountRows() override;
    /// All of these throw Error{NotSupported}.
    void Append(std::span<const Value> values, const std::vector<bool>& assigned) override;
    void Update(RowId row, std::span<const Value> values, const std::vector<bool>& assigned) override;
    void Delete(RowId row) override;
    void DeleteAll() override;
    void Commit() override {}

private:
    std::string storedPath_, fileName_;
    TextFormat format_;
    std::size_t bufferBytes_;
    std::shared_ptr<const FileLook> look_;
};

/// "Cannot update. Database or object is read-only."
[[noreturn]] void ThrowReadOnly(std::string_view place);

}  // namespace varnel::text
