#include "providers/sql/StoreAppender.h"

#include <algorithm>
#include <utility>

#include "platform/Error.h"

namespace varnel::sql {
namespace {

std::vector<std::size_t> NeedPlainColumns(const StoreTable& table, const SelectStatement& select) {
    if (auto columns = PlainColumns(table, select)) {
        for (auto column = columns->begin(); column != columns->end(); ++column)
            if (std::find(column + 1, columns->end(), *column) != columns->end())
                throw Error(ErrorKind::NotSupported, table.shape.name,
                            "Operation must use an updatable query: the column '" + table.Columns()[*column].name +
                                "' is named twice.");
        return std::move(*columns);
    }
    for (const SelectItem& item : select.items)
        if (item.expression.kind == ExprKind::Column) NeedColumn(table.shape, item.expression.name);
    throw Error(ErrorKind::NotSupported, table.shape.name, "Operation must use an updatable query.");
}

bool IsCounting(const std::vector<std::size_t>& columns) {
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (columns[i] != i) return false;
    return true;
}

}  // namespace

StoreAppender::StoreAppender(std::shared_ptr<OpenStore> store, const ExpressionRules& rules,
                             const SelectStatement& select)
    : table_(OpenStoreTable(std::move(store), rules, select.table, select.owner)),
      columns_(NeedPlainColumns(*table_, select)),
      described_(DescribePlain(*table_, select, columns_)),
      wholeRows_(columns_.size() == table_->Columns().size() && IsCounting(columns_)),
      row_(table_->Columns().size()),
      rowAssigned_(row_.size(), false),
      clock_(*table_->file) {}

void StoreAppender::Append(std::span<const Value> values, const std::vector<bool>& assigned) {
    if (wholeRows_) {
        table_->file->Append(values, assigned);
    } else {
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            rowAssigned_[columns_[i]] = assigned[i];
            if (assigned[i]) row_[columns_[i]] = values[i];
        }
        table_->file->Append(row_, rowAssigned_);
    }
    clock_.RowWritten();
}

}  // namespace varnel::sql
