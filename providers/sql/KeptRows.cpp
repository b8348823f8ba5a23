#include "providers/sql/KeptRows.h"

#include <utility>

namespace varnel::sql {
namespace {

std::size_t BytesOf(const Value& value) {
    if (value.Kind() == ValueKind::Text) return sizeof value + value.AsText().size();
    if (value.Kind() == ValueKind::Bytes) return sizeof value + value.AsBytes().size();
    return sizeof value;
}

}  // namespace

void KeptRows::Add(std::span<const Value> row) {
    if (!spool_) {
        for (const Value& value : row) memoryUsed_ += BytesOf(value);
        if (memoryUsed_ <= memoryLimit_) {
            values_.insert(values_.end(), row.begin(), row.end());
            return;
        }
        spool_ = std::make_unique<RowSpool>();
    }
    spool_->Add(row);
}

void KeptRows::Rewind() {
    read_ = 0;
    if (spool_) spool_->Rewind();
}

bool KeptRows::Next(std::span<Value> row) {
    if (read_ == values_.size()) return spool_ && spool_->Next(row);
    for (std::size_t i = 0; i < width_; ++i) std::swap(row[i], values_[read_ + i]);
    read_ += width_;
    return true;
}

}  // namespace varnel::sql
