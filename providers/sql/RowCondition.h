// Conditions and expressions of a statement, bound to the rows that a table's cursor delivers.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "providers/sql/SqlAst.h"
#include "providers/sql/StoreTable.h"

namespace varnel::sql {

/// The values of a statement's ? markers; shared by everything that reads them.
using Markers = std::shared_ptr<const std::vector<Value>>;

/// The columns that a cursor is asked for, each once.
class WantedColumns {
public:
    /// The place of a column in the cursor's rows.
    std::size_t Slot(std::size_t column);
    const std::vector<std::size_t>& Positions() const { return columns_; }

private:
    std::vector<std::size_t> columns_;
};

/// Replaces the expression's names by slots of wanted, and finds its functions.
/// Throws Error{Syntax}: unknown names and functions, an aggregate.
void BindToRow(Expr& expression, const StoreTable& table, std::string_view alias, WantedColumns& wanted);

enum class Choice : std::uint8_t {
    Yes,
    No,
    Doubt  ///< the condition needs a cell that could not be read
};

class RowCondition {
public:
    /// bound: by BindToRow.
    RowCondition(const ExpressionRules& rules, Expr bound, Markers markers)
        : rules_(rules), condition_(std::move(bound)), markers_(std::move(markers)) {}

    /// id: the row's. Throws Error{Conversion} for values that the condition cannot take ("Type mismatch in
    /// expression.").
    Choice Decide(std::span<const Value> row, RowId id);
    /// Why the last row was in doubt: the words of its failed cell.
    const std::string& Reason() const { return reason_; }

private:
    Choice Judge(std::span<const Value> row, RowId id);

    const ExpressionRules& rules_;
    Expr condition_;
    Markers markers_;
    Value scratch_;
    std::string reason_;
};

}  // namespace varnel::sql
