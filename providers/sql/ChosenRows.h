// The rows of a table that a condition chooses.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "providers/sql/RowCondition.h"
#include "providers/sql/StoreTable.h"

namespace varnel::sql {

/// What to read: columns, and which rows.
struct RowChoice {
    WantedColumns wanted;
    std::optional<RowCondition> condition;  ///< none: all rows
};

/// The condition of a statement, its columns being the first of those wanted. alias: a second name of the table.
/// Throws Error{Syntax}.
RowChoice ChooseRows(const StoreTable& table, std::string_view alias, const std::optional<Expr>& where,
                     Markers markers);

class ChosenRows {
public:
    ChosenRows(std::shared_ptr<StoreTable> table, RowChoice choice);

    /// Goes on to the next chosen row, or returns false after the last. Throws Error; then there are no more rows.
    bool Next();
    /// The same, but a row in doubt throws the words of its failed cell.
    bool NextCertain();
    /// The row at hand, by slot; the caller may take values out of it.
    std::span<Value> Row() { return row_; }
    RowId Current() const { return rows_->Current(); }
    /// The words of the failed cell that left open whether the row is chosen; null when it is.
    const std::string* Doubt() const { return inDoubt_ ? &condition_->Reason() : nullptr; }

private:
    std::shared_ptr<StoreTable> table_;  ///< outlives rows_
    std::unique_ptr<TableRows> rows_;
    std::optional<RowCondition> condition_;
    std::vector<Value> row_;
    bool inDoubt_ = false;
};

}  // namespace varnel::sql
