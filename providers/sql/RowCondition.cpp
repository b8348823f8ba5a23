#include "providers/sql/RowCondition.h"

#include <algorithm>

#include "platform/Error.h"
#include "providers/sql/ExpressionWriter.h"
#include "providers/sql/JetEvaluator.h"
#include "providers/sql/JetValues.h"

namespace varnel::sql {

std::size_t WantedColumns::Slot(std::size_t column) {
    const auto known = std::find(columns_.begin(), columns_.end(), column);
    const auto slot = static_cast<std::size_t>(known - columns_.begin());
    if (known == columns_.end()) columns_.push_back(column);
    return slot;
}

void BindToRow(Expr& e, const StoreTable& table, std::string_view alias, WantedColumns& wanted) {
    if (e.kind == ExprKind::Column) {
        if (e.quoted) return BindConstant(e);  // outside of a column list a quoted name is a text
        if (const auto column = ColumnNamed(table, alias, e)) {
            e.slot = wanted.Slot(*column);
        } else if (!BindTruthWord(e)) {
            throw UnknownColumn(table.shape, e.owner.empty() ? e.name : e.owner + "." + e.name);
        }
        return;
    }
    if (IsAggregate(e)) return BindConstant(e);  // which refuses it
    BindCalls(e);
    for (Expr& operand : e.operands) BindToRow(operand, table, alias, wanted);
}

Choice RowCondition::Judge(std::span<const Value> row) {
    return TruthOf(Evaluate(condition_, {row, *markers_}, scratch_)).value_or(false) ? Choice::Yes : Choice::No;
}

Choice RowCondition::Decide(std::span<const Value> row) {
    const auto failed = [](const Value& value) { return value.Kind() == ValueKind::Failure; };
    if (std::none_of(row.begin(), row.end(), failed)) return Judge(row);
    // The failed cell may not matter to the condition: only when it does, the row is in doubt.
    try {
        return Judge(row);
    } catch (const Error& error) {
        reason_ = error.what();
        return Choice::Doubt;
    }
}

}  // namespace varnel::sql
