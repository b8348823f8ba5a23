#include "providers/access/AccessTable.h"

#include <algorithm>
#include <utility>

#include "platform/Error.h"
#include "providers/access/ColumnDescription.h"

namespace varnel::access {
namespace {

/// What the rows' layout and the columns' description depend on.
bool IsSameColumn(const Column& a, const Column& b) {
    return a.name == b.name && a.type == b.type && a.id == b.id && a.ordinal == b.ordinal && a.length == b.length &&
           a.precision == b.precision && a.scale == b.scale;
}

bool Holds(const RealIndex& index, std::uint16_t columnId) {
    return std::any_of(index.columns.begin(), index.columns.end(),
                       [&](const IndexColumn& column) { return column.columnId == columnId; });
}

/// The file is held by the table for longer than this lives.
class Unit : public TableUnit {
public:
    explicit Unit(DatabaseWriter& writer) : writer_(writer) {}
    void Commit() override { writer_.Commit(); }
    void Rollback() override { writer_.Rollback(); }

private:
    DatabaseWriter& writer_;
};

[[noreturn]] void ThrowReadOnly(const std::string& table) {
    throw Error(ErrorKind::NotSupported, table, "Cannot update. Database or object is read-only.");
}

}  // namespace

AccessTable::AccessTable(std::shared_ptr<Schema> schema, std::shared_ptr<DatabaseWriter> writer,
                         const CatalogEntry& entry)
    : schema_(std::move(schema)),
      writer_(std::move(writer)),
      entry_(entry),
      name_(entry.name),
      definition_(schema_->DefinitionOf(entry)),
      order_(ColumnOrder(*definition_)) {
    for (const std::size_t k : order_)
        columns_.push_back(DescribeColumn(definition_->columns[k], schema_->File()->Shape().version));
}

/// The definition as the file has it now. Needs a hold.
std::shared_ptr<const TableDefinition> AccessTable::Definition() {
    std::shared_ptr<const TableDefinition> now = schema_->DefinitionOf(name_);
    if (now == definition_) return now;
    const auto& was = definition_->columns;
    if (!std::equal(was.begin(), was.end(), now->columns.begin(), now->columns.end(), IsSameColumn))
        throw Error(ErrorKind::Constraint, name_,
                    "The columns of the table '" + name_ + "' have been changed meanwhile.");
    return definition_ = std::move(now);
}

std::vector<TableColumn> AccessTable::Describe() {
    const auto hold = schema_->File()->HoldForReading();
    const auto definition = Definition();
    std::vector<TableColumn> described;
    for (std::size_t k = 0; k < order_.size(); ++k) {
        const Column& column = definition->columns[order_[k]];
        TableColumn& made = described.emplace_back(TableColumn{columns_[k], TypeWordOf(column)});
        made.isAssigned = column.IsAutonumber() || (column.flags & kAutomaticGuidColumn) != 0;
        for (const RealIndex& index : definition->realIndexes)
            made.isKey = made.isKey || (index.primaryKey && Holds(index, column.id));
        if (made.isKey) made.info.nullable = false;  // whatever the column itself says
    }
    return described;
}

std::unique_ptr<TableRows> AccessTable::Rows(std::span<const std::size_t> wanted) {
    const auto hold = schema_->File()->HoldForReading();
    const auto definition = Definition();
    std::vector<std::size_t> columns;
    for (const std::size_t k : wanted) columns.push_back(order_.at(k));
    return std::make_unique<TableReader>(schema_->File(), definition, columns, schema_->TextPage());
}

std::int64_t AccessTable::CountRows() {
    const auto hold = schema_->File()->HoldForReading();
    return CountTableRows(*schema_->File(), *Definition());
}

DatabaseWriter& AccessTable::Writer() {
    if (writer_ == nullptr) ThrowReadOnly(name_);
    if (writing_ == nullptr) writing_ = schema_->File()->HoldForWriting();
    if (writtenState_ != schema_->State()) {
        Definition();
        entry_ = *schema_->Objects().Find(name_);
        writtenState_ = schema_->State();
    }
    return *writer_;
}

void AccessTable::Append(std::span<const Value> values, const std::vector<bool>& assigned) {
    Writer().Insert(entry_, {values, assigned, order_});
}

void AccessTable::Update(RowId row, std::span<const Value> values, const std::vector<bool>& assigned) {
    Writer().Update(entry_, UnpackRowPointer(static_cast<std::uint32_t>(row)), {values, assigned, order_});
}

void AccessTable::Delete(RowId row) {
    Writer().Delete(entry_, UnpackRowPointer(static_cast<std::uint32_t>(row)));
}

void AccessTable::DeleteAll() {
    Writer().DeleteAll(entry_);
}

void AccessTable::Commit() {
    if (writing_ != nullptr) writer_->Commit();
}

std::unique_ptr<TableUnit> AccessTable::BeginUnit() {
    Writer().Commit();
    return std::make_unique<Unit>(*writer_);
}

}  // namespace varnel::access
