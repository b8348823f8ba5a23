#include "providers/access/IndexKey.h"

#include <array>

#include "platform/Error.h"
#include "providers/access/KeyBytes.h"
#include "providers/access/TextKey.h"

namespace varnel::access {
namespace {

// The checksum of the bytes that a long key loses is linear: the remainder of each bit of a byte.
constexpr std::array<std::uint16_t, 8> kChecksumBits = {0x0580, 0x0F80, 0x1B80, 0x3380, 0x6380, 0xC380, 0x8381, 0x0383};

std::uint16_t ChecksumStep(std::uint16_t sum) {
    std::uint16_t mixed = 0;
    for (std::size_t bit = 0; bit < kChecksumBits.size(); ++bit) {
        if (((sum >> bit) & 1) != 0) mixed ^= kChecksumBits[bit];
    }
    return static_cast<std::uint16_t>((sum >> 8) ^ mixed);
}

std::uint16_t Checksum(std::string_view dropped) {
    std::uint16_t sum = 0;
    for (std::size_t k = 0; k < dropped.size(); ++k) {
        sum = static_cast<std::uint16_t>(sum ^ (static_cast<unsigned char>(dropped[k]) << 8));
        if (k + 1 < dropped.size()) sum = ChecksumStep(sum);
    }
    return sum;
}

}  // namespace

void AppendNullKey(std::string& key, bool ascending) {
    key.push_back(ascending ? '\0' : '\xFF');
}

void CutLongKey(std::string& key, std::size_t start) {
    if (key.size() - start <= kLongestKey) return;
    const std::size_t kept = start + kLongestKey - 2;
    const std::uint16_t sum = Checksum(std::string_view(key).substr(kept));
    key.resize(kept);
    key.push_back(static_cast<char>(sum >> 8));
    key.push_back(static_cast<char>(sum & 0xFF));
}

void AppendRowId(std::string& entry, RowPointer row) {
    for (const unsigned shift : {16U, 8U, 0U}) entry.push_back(static_cast<char>(row.page >> shift & 0xFF));
    entry.push_back(static_cast<char>(row.row));
}

RowPointer RowIdOf(std::string_view entry) {
    RowPointer row;
    for (const char c : entry.substr(entry.size() - kRowIdLength, 3)) {
        row.page = row.page << 8 | static_cast<unsigned char>(c);
    }
    row.row = static_cast<std::uint8_t>(entry.back());
    return row;
}

IndexKey::IndexKey(const TableDefinition& table, const RealIndex& index) : table_(&table), index_(&index) {
    for (const IndexColumn& part : index.columns) {
        std::size_t at = 0;
        while (at < table.columns.size() && table.columns[at].id != part.columnId) ++at;
        if (at == table.columns.size()) {
            throw Error(ErrorKind::Corrupt, table.name,
                        "Index '" + index.name + "' of table '" + table.name + "' names a column that does not exist.");
        }
        positions_.push_back(at);
        plans_.push_back(PlanCell(table.columns[at]));
    }
    FindObstacle();
}

void IndexKey::FindObstacle() {
    const std::string start = "Index '" + index_->name + "' of table '" + table_->name + "' ";
    for (const std::size_t at : positions_) {
        const Column& column = table_->columns[at];
        if (column.type == ColumnType::Text || column.type == ColumnType::Memo) {
            if (CanBuildTextKeys(column.sortOrder)) continue;
            obstacle_ = start + "sorts texts by the rules of language " + SortOrderName(column.sortOrder) +
                        ", which this program does not have.";
        } else if (!HasKeys(column.type)) {
            obstacle_ = start + "is on a column of a type that this program does not index.";
        }
    }
}

KeyState IndexKey::Build(std::string& key, std::span<const Value> row) const {
    if (!obstacle_.empty()) throw Error(ErrorKind::NotSupported, table_->name, obstacle_);
    key.clear();
    std::size_t nulls = 0;
    for (std::size_t k = 0; k < positions_.size(); ++k) {
        const Column& column = table_->columns[positions_[k]];
        const Value& value = row[positions_[k]];
        if (value.IsNull() && column.type != ColumnType::Boolean) ++nulls;
        AppendKey(key, value, column, index_->columns[k].ascending);
    }
    return Finish(key, nulls);
}

KeyState IndexKey::BuildStored(std::string& key, RowView& row, const MemoText& memo) const {
    if (!obstacle_.empty()) throw Error(ErrorKind::NotSupported, table_->name, obstacle_);
    key.clear();
    std::size_t nulls = 0;
    for (std::size_t k = 0; k < plans_.size(); ++k) {
        const CellPlan& plan = plans_[k];
        const bool ascending = index_->columns[k].ascending;
        if (plan.type == ColumnType::Boolean) {
            AppendBooleanKey(key, row.Has(plan.id), ascending);
        } else if (!row.Has(plan.id)) {
            AppendNullKey(key, ascending);
            ++nulls;
        } else {
            AppendCell(key, k, row, memo);
        }
    }
    return Finish(key, nulls);
}

void IndexKey::AppendCell(std::string& key, std::size_t k, RowView& row, const MemoText& memo) const {
    const CellPlan& plan = plans_[k];
    const Column& column = table_->columns[positions_[k]];
    const bool ascending = index_->columns[k].ascending;
    if (column.IsLong()) return AppendStoredKey(key, memo(positions_[k]), column, ascending);
    const auto cell = plan.fixed ? row.Fixed(plan.place, plan.size) : row.Variable(plan.place);
    if (!cell) {
        throw Error(ErrorKind::Corrupt, table_->name,
                    "The table '" + table_->name + "' is damaged: a row cannot be taken apart for an index.");
    }
    AppendStoredKey(key, *cell, column, ascending);
}

KeyState IndexKey::Finish(std::string& key, std::size_t nulls) const {
    if (nulls > 0 && (index_->flags & kRequiredIndex) != 0) {
        throw Error(ErrorKind::Constraint, table_->name,
                    "Index or primary key cannot contain a Null value: index '" + index_->name + "' of table '" +
                        table_->name + "'.");
    }
    if (nulls == positions_.size() && (index_->flags & kIgnoreNullsIndex) != 0) return KeyState::NoEntry;
    CutLongKey(key, 0);
    return nulls > 0 ? KeyState::HasNull : KeyState::Whole;
}

}  // namespace varnel::access
