#include "providers/access/TableIndex.h"

#include <algorithm>

#include "platform/Error.h"
#include "providers/access/ValueEncoder.h"

namespace varnel::access {

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
    return shape_.BuildStored(key, row, memo);
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
