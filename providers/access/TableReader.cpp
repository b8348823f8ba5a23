#include "providers/access/TableReader.h"

#include <string>
#include <utility>

#include "providers/access/UsageMapReader.h"

namespace varnel::access {
namespace {

void AddAll(PageSet& pages, const PageSet& more) {
    for (auto page = more.Next(0); page; page = more.Next(*page + 1)) pages.Add(*page);
}

}  // namespace

TableReader::TableReader(std::shared_ptr<PageFile> file, std::shared_ptr<const TableDefinition> table,
                         std::span<const std::size_t> columns, const CodePage* codePage)
    : file_(std::move(file)),
      table_(std::move(table)),
      columns_(columns.begin(), columns.end()),
      hold_(file_->HoldForReading()),
      view_(file_->Shape().version) {
    PageSet longValuePages;
    for (const std::size_t k : columns_) {
        const Column& column = table_->columns.at(k);
        plans_.push_back(PlanCell(column));
        if (column.IsLong()) AddAll(longValuePages, ReadUsageMap(*file_, column.ownedMap));
    }
    scan_.emplace(*file_, *table_, std::move(longValuePages));
    decoder_.emplace(*file_, scan_->Pages(), codePage);
}

bool TableReader::Next(std::span<Value> row) {
    if (!scan_) return false;
    if (!scan_->Next()) {
        decoder_.reset();
        scan_.reset();
        hold_.reset();
        return false;
    }
    Decode(row);
    return true;
}

bool TableReader::Seek(RowId at, std::span<Value> row) {
    if (!scan_ || at < 0 || at > UINT32_MAX) return false;
    if (!scan_->Seek(UnpackRowPointer(static_cast<std::uint32_t>(at)))) return false;
    Decode(row);
    return true;
}

void TableReader::Decode(std::span<Value> row) {
    current_ = PackRowPointer(scan_->Where());
    Fault rowFault = scan_->RowFault();
    if (rowFault == nullptr) rowFault = view_.Attach(scan_->Row());
    for (std::size_t k = 0; k < plans_.size(); ++k) {
        const Fault fault = rowFault != nullptr ? rowFault : decoder_->Decode(plans_[k], view_, row[k]);
        if (fault != nullptr) SetFailure(k, fault, row[k]);
    }
}

void TableReader::SetFailure(std::size_t k, Fault fault, Value& value) const {
    const RowPointer at = scan_->Where();
    value.SetFailure("Column '" + table_->columns[columns_[k]].name + "' of table '" + table_->name + "', row " +
                     std::to_string(at.row) + " of page " + std::to_string(at.page) + ", cannot be read: " + fault);
}

}  // namespace varnel::access
