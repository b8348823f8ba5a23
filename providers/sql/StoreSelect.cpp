#include "providers/sql/StoreSelect.h"

#include <limits>
#include <utility>

#include "providers/sql/ComputedReader.h"
#include "providers/sql/StoreReaders.h"

namespace varnel::sql {
namespace {

bool IsOrderedOrGrouped(const SelectStatement& select) {
    return select.distinct || select.having || !select.groupBy.empty() || !select.orderBy.empty();
}

bool IsCount(const SelectStatement& select) {
    return !select.everything && !select.top && select.items.size() == 1 &&
           select.items[0].expression.kind == ExprKind::CountAll;
}

/// As many rows as the same statement delivers, those in doubt among them.
std::int64_t CountChosen(const std::shared_ptr<StoreTable>& table, RowChoice choice) {
    if (!choice.condition) return table->file->CountRows();
    ChosenRows rows(table, std::move(choice));
    std::int64_t count = 0;
    while (rows.Next()) ++count;
    return count;
}

ColumnInfo CountColumn(const SelectItem& item) {
    return DescribeColumn(item.alias.empty() ? "Expr1000" : item.alias, PlainType(adInteger), true);
}

}  // namespace

std::unique_ptr<RowReader> OpenStoreSelect(std::shared_ptr<OpenStore> store, const ExpressionRules& rules,
                                           const SelectStatement& select) {
    std::shared_ptr<StoreTable> table = OpenStoreTable(std::move(store), rules, select.table, select.owner);
    RowChoice choice =
        ChooseRows(*table, select.tableAlias, select.where, std::make_shared<const std::vector<Value>>());
    if (IsOrderedOrGrouped(select)) return OpenComputed(std::move(table), select, std::move(choice));
    if (IsCount(select))
        return std::make_unique<CountReader>(CountColumn(select.items[0]), CountChosen(table, std::move(choice)));
    const auto columns = PlainColumns(*table, select);
    if (!columns) return OpenComputed(std::move(table), select, std::move(choice));
    std::vector<ColumnInfo> described = DescribePlain(*table, select, *columns);
    if (!choice.condition && !select.top)
        return std::make_unique<PlainReader>(std::move(table), *columns, std::move(described));
    const std::int64_t most = select.top.value_or(std::numeric_limits<std::int64_t>::max());
    return std::make_unique<ChosenReader>(std::move(table), std::move(choice), *columns, std::move(described), most);
}

}  // namespace varnel::sql
