#include "providers/text/TextTable.h"

#include <utility>

#include "platform/Error.h"
#include "platform/InputFile.h"
#include "providers/text/ColLine.h"
#include "providers/text/LookCache.h"
#include "providers/text/TextRows.h"

namespace varnel::text {

TextTable::TextTable(std::string storedPath, std::string fileName, TextFormat format, std::size_t bufferBytes)
    : storedPath_(std::move(storedPath)),
      fileName_(std::move(fileName)),
      format_(std::move(format)),
      bufferBytes_(bufferBytes),
      look_(LookOf(storedPath_, fileName_, format_, bufferBytes_)) {}

std::vector<TableColumn> TextTable::Describe() {
    std::vector<TableColumn> described;
    for (const ColumnInfo& info : look_->columns) described.push_back({info, std::string(TypeWordOf(info.type))});
    return described;
}

std::unique_ptr<TableRows> TextTable::Rows(std::span<const std::size_t> wanted) {
    const auto source = std::make_shared<FileSource>(InputFile(storedPath_));
    return std::make_unique<TextRows>(source, fileName_, format_, look_, wanted, bufferBytes_);
}

std::int64_t TextTable::CountRows() {
    return LookOf(storedPath_, fileName_, format_, bufferBytes_)->records;
}

void TextTable::Append(std::span<const Value> /*values*/, const std::vector<bool>& /*assigned*/) {
    ThrowReadOnly(fileName_);
}

void TextTable::Update(RowId /*row*/, std::span<const Value> /*values*/, const std::vector<bool>& /*assigned*/) {
    ThrowReadOnly(fileName_);
}

void TextTable::Delete(RowId /*row*/) {
    ThrowReadOnly(fileName_);
}

void TextTable::DeleteAll() {
    ThrowReadOnly(fileName_);
}

void ThrowReadOnly(std::string_view place) {
    throw Error(ErrorKind::NotSupported, std::string(place), "Cannot update. Database or object is read-only.");
}

}  // namespace varnel::text
