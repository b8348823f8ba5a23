#include "providers/sql/RowCondition.h"

#include <algorithm>

#include "platform/Error.h"
#include "providers/sql/Evaluator.h"
#include "providers/sql/ExpressionWriter.h"

namespace varnel::sql {

std::size_t WantedColumns::Slot(std::size_t column) {
    const auto known = std::find(columns_.begin(), columns_.end(), column);
    const auto slot = static_cast<std::size_t>(known - columns_.begin());
    if (known == columns_.end()) columns_.push_back(column);
    return slot;
}

namespace {

void BindNames(Expr& e, const StoreTable& table, std::string_view alias, WantedColumns& wanted) {
    const ExpressionRules& rules = *table.shape.rules;
    if (e.kind == ExprKind::Column) {
        if (e.quoted) return BindConstant(e, rules);  // outside of a column list a quoted name is a text
        if (const auto column = ColumnNamed(table, alias, e)) {
            e.slot = wanted.Slot(*column);
        } else if (!rules.truthWords || !BindTruthWord(e)) {
            throw UnknownColumn(table.shape, e.owner.empty() ? e.name : e.owner + "." + e.name);
        }
        return;
    }
    if (IsAggregate(e)) return BindConstant(e, rules);  // which refuses it
    BindCalls(e, rules);
    for (Expr& operand : e.operands) BindNames(operand, table, alias, wanted);
}

}  // namespace

void BindToRow(Expr& e, const StoreTable& table, std::string_view alias, WantedColumns& wanted) {
    BindNames(e, table, alias, wanted);
    if (table.shape.rules->settle == nullptr) return;
    std::vector<DeclaredType> types;
    for (const std::size_t position : wanted.Positions()) types.push_back(table.shape.columns[position].type);
    table.shape.rules->settle(e, types);
}

Choice RowCondition::Judge(std::span<const Value> row, RowId id) {
    const Value& result = Evaluate(condition_, {rules_, row, *markers_, id}, scratch_);
    return rules_.truth(result).value_or(false) ? Choice::Yes : Choice::No;
}

Choice RowCondition::Decide(std::span<const Value> row, RowId id) {
    const auto failed = [](const Value& value) { return value.Kind() == ValueKind::Failure; };
    if (std::none_of(row.begin(), row.end(), failed)) return Judge(row, id);
    // The failed cell may not matter to the condition: only when it does, the row is in doubt.
    try {
        return Judge(row, id);
    } catch (const Error& error) {
        reason_ = error.what();
        return Choice::Doubt;
    }
}

}  // namespace varnel::sql
