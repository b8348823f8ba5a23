#include "providers/sql/StoreChange.h"

#include <utility>

#include "platform/Error.h"
#include "providers/sql/ChosenRows.h"
#include "providers/sql/Evaluator.h"
#include "providers/sql/ExpressionProgram.h"
#include "providers/sql/ExpressionWriter.h"
#include "providers/sql/KeptRows.h"

namespace varnel::sql {

template <class ChangeOne>
void StoreChange::ChangeRows(ChangeOne&& changeOne) {
    std::size_t done = 0;
    try {
        for (; changeOne(done); ++done) {
            if (!unit_) clock_.RowWritten();
        }
        if (unit_) unit_->Commit();
    } catch (const Error& refused) {
        if (unit_) unit_->Rollback();
        if (unit_ || done == 0) throw;
        throw Error(refused.kind, refused.where,
                    std::string(refused.what()) + " (" + std::to_string(done) + " rows were changed before.)");
    }
}

namespace {

class StoreInsert : public StoreChange {
public:
    StoreInsert(std::shared_ptr<StoreTable> table, const InsertStatement& insert, Markers markers)
        : StoreChange(std::move(table)),
          rows_(insert.rows),
          markers_(std::move(markers)),
          values_(table_->Columns().size()),
          assigned_(values_.size(), false) {
        for (std::size_t i = 0; insert.columns.empty() && i < values_.size(); ++i) columns_.push_back(i);
        for (const std::string& name : insert.columns) columns_.push_back(NeedColumn(table_->shape, name));
        for (const std::size_t column : columns_) assigned_[column] = true;
        for (std::vector<Expr>& row : rows_) {
            if (row.size() != columns_.size())
                throw Error(ErrorKind::Syntax, insert.table,
                            "Number of query values and destination fields are not the same.");
            for (Expr& value : row) BindConstant(value, *table_->shape.rules);
        }
    }

    void Run() override {
        const UnitScope unit(*this, rows_.size() > 1);
        ChangeRows([&](std::size_t done) {
            if (done == rows_.size()) return false;
            Insert(rows_[done]);
            return true;
        });
    }

private:
    void Insert(const std::vector<Expr>& row) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            const Value& value = Evaluate(row[i], {*table_->shape.rules, {}, *markers_}, scratch_);
            ConvertForColumn(*table_->shape.rules, value, table_->Columns()[columns_[i]].type, values_[columns_[i]]);
        }
        Table().Append(values_, assigned_);
    }

    std::vector<std::vector<Expr>> rows_;
    Markers markers_;
    std::vector<std::size_t> columns_;
    std::vector<Value> values_;  ///< one per column of the table
    std::vector<bool> assigned_;
    Value scratch_;
};

class StoreUpdate : public StoreChange {
public:
    StoreUpdate(std::shared_ptr<StoreTable> table, const UpdateStatement& update, Markers markers)
        : StoreChange(std::move(table)),
          markers_(std::move(markers)),
          choice_(ChooseRows(*table_, "", update.where, markers_)),
          values_(table_->Columns().size()),
          assigned_(values_.size(), false) {
        for (const Assignment& assignment : update.assignments) {
            NewValue made{NeedColumn(table_->shape, assignment.column), assignment.value};
            BindToRow(made.expression, *table_, "", choice_.wanted);
            assigned_[made.column] = true;
            newValues_.push_back(std::move(made));
        }
    }

    void Run() override {
        const UnitScope unit(*this, true);
        KeptRows changes(newValues_.size() + 1);
        Collect(changes);
        changes.Rewind();
        std::vector<Value> change(newValues_.size() + 1);
        ChangeRows([&](std::size_t) {
            if (!changes.Next(change)) return false;
            for (std::size_t i = 0; i < newValues_.size(); ++i) std::swap(values_[newValues_[i].column], change[i + 1]);
            Table().Update(change[0].AsInteger(), values_, assigned_);
            return true;
        });
    }

private:
    struct NewValue {
        std::size_t column = 0;
        Expr expression;
    };

    /// The row's id, then its new values.
    void Collect(KeptRows& changes) {
        const ExpressionRules& rules = *table_->shape.rules;
        std::vector<Value> change(newValues_.size() + 1);
        ChosenRows rows(table_, choice_);
        while (rows.NextCertain()) {
            change[0].SetInteger(rows.Current());
            for (std::size_t i = 0; i < newValues_.size(); ++i) {
                const Value& value =
                    Evaluate(newValues_[i].expression, {rules, rows.Row(), *markers_, rows.Current()}, scratch_);
                ConvertForColumn(rules, value, table_->Columns()[newValues_[i].column].type, change[i + 1]);
            }
            changes.Add(change);
        }
    }

    Markers markers_;
    RowChoice choice_;
    std::vector<NewValue> newValues_;
    std::vector<Value> values_;  ///< one per column of the table
    std::vector<bool> assigned_;
    Value scratch_;
};

class StoreDelete : public StoreChange {
public:
    StoreDelete(std::shared_ptr<StoreTable> table, const DeleteStatement& statement, Markers markers)
        : StoreChange(std::move(table)), choice_(ChooseRows(*table_, "", statement.where, std::move(markers))) {}

    void Run() override {
        if (!choice_.condition) {
            Table().DeleteAll();
            return clock_.RowWritten();
        }
        const UnitScope unit(*this, true);
        KeptRows doomed(1);
        std::vector<Value> id(1);
        {
            ChosenRows rows(table_, choice_);
            while (rows.NextCertain()) {
                id[0].SetInteger(rows.Current());
                doomed.Add(id);
            }
        }
        doomed.Rewind();
        ChangeRows([&](std::size_t) {
            if (!doomed.Next(id)) return false;
            Table().Delete(id[0].AsInteger());
            return true;
        });
    }

private:
    RowChoice choice_;
};

}  // namespace

std::unique_ptr<StoreChange> WriteStoreChange(std::shared_ptr<OpenStore> store, const ExpressionRules& rules,
                                              const ParsedStatement& parsed, Markers markers) {
    const auto open = [&](const std::string& name) { return OpenStoreTable(std::move(store), rules, name); };
    if (const auto* insert = std::get_if<InsertStatement>(&parsed.body))
        return std::make_unique<StoreInsert>(open(insert->table), *insert, std::move(markers));
    if (const auto* update = std::get_if<UpdateStatement>(&parsed.body))
        return std::make_unique<StoreUpdate>(open(update->table), *update, std::move(markers));
    if (const auto* statement = std::get_if<DeleteStatement>(&parsed.body))
        return std::make_unique<StoreDelete>(open(statement->table), *statement, std::move(markers));
    throw Error(ErrorKind::NotSupported, "", "Only INSERT, UPDATE and DELETE statements can be prepared.");
}

}  // namespace varnel::sql
