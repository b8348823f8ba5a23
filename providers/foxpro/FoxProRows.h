// The rows of a table, as they were when the reading began.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "providers/foxpro/DbfFile.h"
#include "providers/foxpro/FieldReader.h"
#include "providers/foxpro/KeptCopy.h"
#include "providers/tablefile/TableFile.h"

namespace varnel::foxpro {

/// A row's id is its record number. A value that cannot be read is a Failure that names file, record and column. When
/// the file holds other records than its head says, the rows end with that error.
class FoxProRows : public TableRows, private DbfFile::Watcher {
public:
    /// columnNames: of all columns, for failures.
    FoxProRows(std::shared_ptr<DbfFile> file, std::vector<std::string> columnNames, std::span<const std::size_t> wanted,
               bool showDeleted);
    ~FoxProRows() override;
    FoxProRows(const FoxProRows&) = delete;
    FoxProRows& operator=(const FoxProRows&) = delete;

    bool Next(std::span<Value> row) override;
    RowId Current() const override { return static_cast<RowId>(current_); }

private:
    void BeforeChange(bool memosGo) override;
    bool WantsMemos() const;
    void KeepRecords();
    void KeepMemos(const ByteFile& memos);
    bool NextRecord();
    bool NextBlock();
    void ReadValue(std::size_t column, Value& value);

    std::shared_ptr<DbfFile> file_;
    std::unique_ptr<DbfFile::Hold> hold_;
    std::vector<std::string> columnNames_;
    std::vector<std::size_t> wanted_;
    bool showDeleted_;
    std::size_t recordBytes_;
    RecordNumber last_;            ///< of the reading
    RecordNumber blockStart_ = 1;  ///< number of the first record in the block
    std::size_t blockRecords_ = 0, inBlock_ = 0;
    RecordNumber current_ = 0;
    std::span<const std::uint8_t> record_;
    std::vector<std::uint8_t> block_;
    std::unique_ptr<FieldReader> reader_;
    /// Once the file has been changed: the records behind the block, and the memos.
    std::unique_ptr<KeptCopy> keptRecords_, keptMemos_;
    std::unique_ptr<MemoReader> keptMemoReader_;
};

}  // namespace varnel::foxpro
