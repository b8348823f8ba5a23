#include "providers/sql/ChosenRows.h"

#include <utility>

#include "platform/Error.h"

namespace varnel::sql {

RowChoice ChooseRows(const StoreTable& table, std::string_view alias, const std::optional<Expr>& where,
                     Markers markers) {
    RowChoice choice;
    if (!where) return choice;
    Expr bound = *where;
    BindToRow(bound, table, alias, choice.wanted);
    choice.condition.emplace(*table.shape.rules, std::move(bound), std::move(markers));
    return choice;
}

ChosenRows::ChosenRows(std::shared_ptr<StoreTable> table, RowChoice choice)
    : table_(std::move(table)),
      rows_(table_->file->Rows(choice.wanted.Positions())),
      condition_(std::move(choice.condition)),
      row_(choice.wanted.Positions().size()) {}

bool ChosenRows::Next() {
    while (rows_->Next(row_)) {
        const Choice choice = condition_ ? condition_->Decide(row_, rows_->Current()) : Choice::Yes;
        inDoubt_ = choice == Choice::Doubt;
        if (choice != Choice::No) return true;
    }
    return false;
}

bool ChosenRows::NextCertain() {
    const bool more = Next();
    if (more && inDoubt_) throw Error(ErrorKind::Conversion, table_->shape.name, condition_->Reason());
    return more;
}

}  // namespace varnel::sql
