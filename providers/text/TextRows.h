// The rows of a text file as values.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "providers/tablefile/TableFile.h"
#include "providers/text/FileLook.h"
#include "providers/text/Records.h"

namespace varnel::text {

/// A row's id is its number in the file, from 1 on, the header line not counted. A value that is none of its column's
/// type is a Failure that names file, record and column; so is the last wanted value of a record with more values than
/// the file has columns.
class TextRows : public TableRows {
public:
    TextRows(const std::shared_ptr<const ByteSource>& source, std::string fileName, TextFormat format,
             std::shared_ptr<const FileLook> look, std::span<const std::size_t> wanted, std::size_t bufferBytes);
    bool Next(std::span<Value> row) override;
    RowId Current() const override { return current_; }

private:
    void ReadValue(std::size_t column, Value& value);
    std::string Place() const;

    std::string fileName_;
    TextFormat format_;
    std::shared_ptr<const FileLook> look_;
    std::vector<std::size_t> wanted_;
    std::unique_ptr<Records> records_;
    std::string scratch_;
    RowId current_ = 0;
};

}  // namespace varnel::text
