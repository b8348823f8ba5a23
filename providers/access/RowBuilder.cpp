#include "providers/access/RowBuilder.h"

#include <algorithm>

#include "platform/Error.h"
#include "providers/access/StoreBytes.h"

namespace varnel::access {
namespace {

constexpr std::size_t kCountBytes = 2, kMostColumns = 255;
constexpr std::size_t kLeastFixedBytes = 2;  ///< in a row without a variable part

/// Bytes of the column's value in the fixed area.
std::size_t FixedBytes(const Column& column) {
    return column.type == ColumnType::Boolean ? 0 : column.length;
}

std::size_t MaskBytes(const TableDefinition& definition) {
    return (definition.columnIds + 7U) / 8;
}

}  // namespace

RowBuilder::RowBuilder(const TableDefinition& definition) : definition_(definition) {
    bool sound = definition.columnIds <= kMostColumns && definition.variableColumns <= kMostColumns;
    for (std::size_t k = 0; k < definition.columns.size(); ++k) {
        const Column& column = definition.columns[k];
        sound = sound && column.id < definition.columnIds &&
                (column.IsFixed() || column.variableNumber < definition.variableColumns);
        if (column.IsFixed())
            variableStart_ = std::max(variableStart_, kCountBytes + column.fixedOffset + FixedBytes(column));
        order_.push_back(k);
    }
    if (definition.variableColumns == 0) variableStart_ = std::max(variableStart_, kCountBytes + kLeastFixedBytes);
    tail_ = MaskBytes(definition) + (definition.variableColumns > 0 ? 2 * (definition.variableColumns + 2U) : 0);
    if (!sound || variableStart_ + tail_ > kLongestRow)
        throw Error(ErrorKind::Corrupt, definition.name,
                    "The table '" + definition.name + "' is damaged: its columns do not lie in one row.");
    std::stable_sort(order_.begin(), order_.end(), [&](std::size_t a, std::size_t b) {
        const Column &first = definition.columns[a], &second = definition.columns[b];
        if (first.IsFixed() != second.IsFixed()) return first.IsFixed();
        return !first.IsFixed() && first.variableNumber < second.variableNumber;
    });
}

void RowBuilder::Start() {
    std::fill_n(row_.begin(), variableStart_, std::uint8_t{0});
    StoreU16(row_, 0, definition_.columnIds);
    mask_.fill(0);
    end_ = variableStart_;
    nextVariable_ = 0;
}

void RowBuilder::ThrowTooLong() const {
    throw Error(ErrorKind::Constraint, definition_.name,
                "Record is too large: a row of table '" + definition_.name + "' holds " + std::to_string(kLongestRow) +
                    " bytes beside its memo and OLE values.");
}

std::size_t RowBuilder::Place(const Column& column) {
    return column.IsFixed() ? kCountBytes + column.fixedOffset : end_;
}

void RowBuilder::Advance(const Column& column, std::size_t bytes) {
    SetBit(column.id);
    if (column.IsFixed()) return;
    for (; nextVariable_ <= column.variableNumber; ++nextVariable_)
        offsets_[nextVariable_] = static_cast<std::uint16_t>(end_);
    end_ += bytes;
    if (end_ + tail_ > kLongestRow) ThrowTooLong();
}

void RowBuilder::Put(const Column& column, const Value& value) {
    if (value.IsNull()) return;
    if (column.type == ColumnType::Boolean) {
        if (encoder_.EncodeBoolean(column, value)) SetBit(column.id);
        return;
    }
    if (!column.IsFixed())
        return Advance(column, encoder_.Encode(column, value, std::span(row_).subspan(Place(column))));
    std::array<std::uint8_t, kLongestStoredValue> stored;
    const std::size_t bytes = encoder_.Encode(column, value, stored);
    std::copy_n(stored.begin(), std::min(bytes, FixedBytes(column)), row_.begin() + Place(column));
    Advance(column, bytes);
}

void RowBuilder::PutStored(const Column& column, std::span<const std::uint8_t> bytes, bool present) {
    if (!present) return;
    if (column.type == ColumnType::Boolean) return SetBit(column.id);
    const std::size_t place = Place(column), most = column.IsFixed() ? FixedBytes(column) : row_.size() - place;
    if (bytes.size() > most) ThrowTooLong();
    std::copy(bytes.begin(), bytes.end(), row_.begin() + static_cast<std::ptrdiff_t>(place));
    Advance(column, bytes.size());
}

std::span<const std::uint8_t> RowBuilder::Finish() {
    std::size_t at = end_;
    if (const std::size_t variables = definition_.variableColumns; variables > 0) {
        for (; nextVariable_ < variables; ++nextVariable_) offsets_[nextVariable_] = static_cast<std::uint16_t>(end_);
        StoreU16(row_, at, end_);
        for (std::size_t k = variables; k-- > 0;) StoreU16(row_, at += 2, offsets_[k]);
        StoreU16(row_, at += 2, variables);
        at += 2;
    }
    const std::size_t maskBytes = MaskBytes(definition_);
    std::copy_n(mask_.begin(), maskBytes, row_.begin() + static_cast<std::ptrdiff_t>(at));
    return std::span(row_).first(at + maskBytes);
}

}  // namespace varnel::access
