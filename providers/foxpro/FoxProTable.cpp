#include "providers/foxpro/FoxProTable.h"

#include <utility>

#include "platform/Error.h"
#include "providers/foxpro/FieldKind.h"
#include "providers/foxpro/FoxProRows.h"
#include "providers/foxpro/TableIndex.h"

namespace varnel::foxpro {
namespace {

constexpr std::size_t kCountBytes = 256 * 1024;

/// ASCII letters only: others are as the code page has them.
std::string LowerCase(std::string text) {
    for (char& c : text) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return text;
}

}  // namespace

FoxProTable::FoxProTable(std::shared_ptr<DbfFile> file, ContainerTable listed, bool showDeleted)
    : file_(std::move(file)), primaryTag_(std::move(listed.primaryTag)), showDeleted_(showDeleted) {
    const auto hold = file_->HoldForReading();
    const DbfHeader& header = file_->Header();
    const bool hasLongNames = listed.columnNames.size() == header.fields.size();
    for (std::size_t k = 0; k < header.fields.size(); ++k) {
        const DbfField& field = header.fields[k];
        names_.push_back(hasLongNames ? std::move(listed.columnNames[k]) : LowerCase(field.name));
        storedNames_.push_back(field.name);
        columns_.push_back(ColumnOfField(field, header.dialect, names_.back()));
    }
}

std::vector<TableColumn> FoxProTable::Describe() {
    const auto hold = file_->HoldForReading();
    const DbfHeader& header = file_->Header();
    std::vector<TableColumn> described;
    for (std::size_t k = 0; k < columns_.size(); ++k) {
        const DbfField& field = header.fields.at(k);
        described.push_back({columns_[k], TypeWordOf(field, header.dialect), false, field.autoIncrement});
    }
    for (const std::size_t k : KeyFieldsOfTag(*file_, primaryTag_)) described.at(k).isKey = true;
    return described;
}

std::optional<std::size_t> FoxProTable::FindColumn(std::string_view name) const {
    if (const auto found = TableFile::FindColumn(name)) return found;
    const std::string folded = FoldCase(name);
    for (std::size_t k = 0; k < storedNames_.size(); ++k) {
        if (FoldCase(storedNames_[k]) == folded) return k;
    }
    return std::nullopt;
}

std::unique_ptr<TableRows> FoxProTable::Rows(std::span<const std::size_t> wanted) {
    return std::make_unique<FoxProRows>(file_, names_, wanted, showDeleted_);
}

std::int64_t FoxProTable::CountRows() {
    const auto hold = file_->HoldForReading();
    const std::size_t recordBytes = file_->Header().recordBytes;
    const RecordNumber last = file_->Records();
    if (last < file_->Header().records || file_->Damage().empty()) {
        // What is there can be counted; that records are missing is said by whoever reads them.
    } else {
        throw Error(ErrorKind::Corrupt, file_->Name(), file_->Damage());
    }
    if (showDeleted_) return static_cast<std::int64_t>(last);
    std::vector<std::uint8_t> block(std::max<std::size_t>(kCountBytes / recordBytes, 1) * recordBytes);
    std::int64_t rows = 0;
    for (RecordNumber first = 1; first <= last;) {
        const auto count =
            static_cast<std::size_t>(std::min<RecordNumber>(block.size() / recordBytes, last - first + 1));
        file_->ReadRecords(first, count, block);
        for (std::size_t k = 0; k < count; ++k) rows += block[k * recordBytes] == kDeletedFlag ? 0 : 1;
        first += count;
    }
    return rows;
}

DbfFile& FoxProTable::Writing() {
    if (!writeHold_) writeHold_ = file_->HoldForWriting();
    return *file_;
}

RecordNumber FoxProTable::NumberOf(RowId row) {
    if (row >= 1 && static_cast<RecordNumber>(row) <= Writing().Records()) return static_cast<RecordNumber>(row);
    throw Error(ErrorKind::Misuse, file_->Name(), "'" + file_->Name() + "' has no record " + std::to_string(row));
}

void FoxProTable::Append(std::span<const Value> values, const std::vector<bool>& assigned) {
    Writing().Append(values, assigned);
}

void FoxProTable::Update(RowId row, std::span<const Value> values, const std::vector<bool>& assigned) {
    Writing().Update(NumberOf(row), values, assigned);
}

void FoxProTable::Delete(RowId row) {
    Writing().Delete(NumberOf(row));
}

void FoxProTable::DeleteAll() {
    Writing().DeleteAll();
}

void FoxProTable::Commit() {
    if (writeHold_) file_->Commit();
}

}  // namespace varnel::foxpro
