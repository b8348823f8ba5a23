#include "providers/access/TableIndex.h"

#include <algorithm>
#include <optional>

#include "platform/Error.h"
#include "providers/access/ValueEncoder.h"

namespace varnel::access {
namespace {

[[noreturn]] void ThrowDamagedRow(const TableDefinition& table) {
    throw Error(ErrorKind::Corrupt, table.name,
                "The table '" + table.name + "' is damaged: a row cannot be taken apart for an index.");
}

Bytes Cell(const TableDefinition& table, const Column& column, RowView& row) {
    const std::optional<Bytes> cell =
        column.IsFixed() ? row.Fixed(column.fixedOffset, column.length) : row.Variable(column.variableNumber);
    if (!cell) ThrowDamagedRow(table);
    return *cell;
}

void AppendBooleanKey(std::string& key, const Column& column, bool isTrue, bool ascending) {
    Value value;
    value.SetBoolean(isTrue);
    AppendKey(key, value, column, ascending);
}

}  // namespace

bool TableIndex::Touches(const std::vector<bool>& changed) const {
    return std::any_of(Positions().begin(), Positions().end(), [&](std::size_t k) { return changed[k]; });
}

void TableIndex::NeedKeys() const {
    if (!shape_.Obstacle().empty())
        throw Error(ErrorKind::NotSupported, table_.name,
                    shape_.Obstacle() + " Its rows can be read, but not changed.");
}

void TableIndex::NeedValues(const RowView& row) const {
    if ((index_.flags & kRequiredIndex) == 0) return;
    for (const std::size_t k : Positions()) {
        const Column& column = table_.columns[k];
        if (column.type == ColumnType::Boolean || row.Has(column.id)) continue;
        throw Error(ErrorKind::Constraint, table_.name,
                    "Index or primary key cannot contain a Null value: column '" + column.name + "' of table '" +
                        table_.name + "', index '" + index_.name + "'.");
    }
}

KeyState TableIndex::BuildKey(RowView& row, const MemoText& memo, std::string& key) const {
    key.clear();
    std::size_t nulls = 0;
    for (std::size_t k = 0; k < Positions().size(); ++k) {
        const Column& column = table_.columns[Positions()[k]];
        const bool ascending = index_.columns[k].ascending, has = row.Has(column.id);
        if (column.type == ColumnType::Boolean) {
            AppendBooleanKey(key, column, has, ascending);
        } else if (!has) {
            ++nulls;
            AppendNullKey(key, ascending);
        } else {
            AppendStoredKey(key, column.IsLong() ? memo(Positions()[k]) : Cell(table_, column, row), column, ascending);
        }
    }
    if (nulls == Positions().size() && (index_.flags & kIgnoreNullsIndex) != 0) return KeyState::NoEntry;
    CutLongKey(key, 0);
    return nulls > 0 ? KeyState::HasNull : KeyState::Whole;
}

std::string TableIndex::Describe(std::span<const Value* const> values) const {
    std::string text;
    for (const std::size_t k : Positions()) {
        if (!text.empty()) text += ", ";
        text += table_.columns[k].name;
        if (values[k] != nullptr && !values[k]->IsNull()) text += " = '" + ShownValue(*values[k]) + "'";
    }
    return text;
}

}  // namespace varnel::access
