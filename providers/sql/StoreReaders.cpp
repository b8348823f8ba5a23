#include "providers/sql/StoreReaders.h"

#include <algorithm>
#include <utility>

namespace varnel::sql {

PlainReader::PlainReader(std::shared_ptr<StoreTable> table, const std::vector<std::size_t>& columns,
                         std::vector<ColumnInfo> described)
    : table_(std::move(table)), rows_(table_->file->Rows(columns)), described_(std::move(described)) {}

ChosenReader::ChosenReader(std::shared_ptr<StoreTable> table, RowChoice choice, const std::vector<std::size_t>& columns,
                           std::vector<ColumnInfo> described, std::int64_t most)
    : sources_(SourcesOf(choice, columns)),
      described_(std::move(described)),
      rows_(std::move(table), std::move(choice)),
      left_(most) {}

std::vector<ChosenReader::Source> ChosenReader::SourcesOf(RowChoice& choice, const std::vector<std::size_t>& columns) {
    std::vector<Source> sources;
    for (auto column = columns.begin(); column != columns.end(); ++column) {
        const bool usedAgain = std::find(column + 1, columns.end(), *column) != columns.end();
        sources.push_back({choice.wanted.Slot(*column), usedAgain});
    }
    return sources;
}

bool ChosenReader::Next(std::span<Value> row) {
    if (left_ <= 0 || !rows_.Next()) return false;
    --left_;
    if (const std::string* doubt = rows_.Doubt()) {
        for (Value& value : row) value.SetNull();
        row[0].SetFailure(*doubt);
        return true;
    }
    // Values change places: the caller's buffers are filled for the next row.
    const std::span<Value> chosen = rows_.Row();
    for (std::size_t k = 0; k < sources_.size(); ++k) {
        Value& value = chosen[sources_[k].slot];
        if (sources_[k].usedAgain)
            row[k] = value;
        else
            std::swap(row[k], value);
    }
    return true;
}

bool CountReader::Next(std::span<Value> row) {
    if (std::exchange(given_, true)) return false;
    row[0].SetInteger(count_);
    return true;
}

}  // namespace varnel::sql
