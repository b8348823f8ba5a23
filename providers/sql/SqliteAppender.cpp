#include "providers/sql/SqliteAppender.h"

#include <algorithm>

#include "providers/sql/ColumnCodec.h"
#include "providers/sql/SqliteCatalog.h"

namespace varnel::sql {
namespace {

std::vector<std::size_t> NamedColumns(const TableShape& table, const SelectStatement& select) {
    std::vector<std::size_t> columns;
    if (select.everything)
        for (std::size_t i = 0; i < table.columns.size(); ++i) columns.push_back(i);
    for (const SelectItem& item : select.items) {
        if (item.expression.kind != ExprKind::Column)
            throw Error(ErrorKind::NotSupported, table.name, "Operation must use an updatable query.");
        columns.push_back(NeedColumn(table, item.expression.name));
    }
    return columns;
}

}  // namespace

SqliteAppender::SqliteAppender(std::shared_ptr<SqliteFile> file, const SelectStatement& select)
    : file_(std::move(file)), table_(ReadShape(*file_, select.table)), columns_(NamedColumns(table_, select)) {
    for (const std::size_t column : columns_) {
        const ShapeColumn& shape = table_.columns[column];
        described_.push_back(DescribeColumn(shape.name, shape.type, !shape.notNull));
    }
    scratch_.resize(columns_.size());
}

SqliteAppender::~SqliteAppender() {
    file_->TryCommit();
}

SqliteAppender::Insert& SqliteAppender::InsertFor(const std::vector<bool>& assigned) {
    if (last_ != nullptr && last_->assigned == assigned) return *last_;
    for (const auto& insert : inserts_)
        if (insert->assigned == assigned) return *(last_ = insert.get());
    std::string names, marks;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        if (!assigned[i]) continue;
        names += (names.empty() ? "" : ",") + QuotedName(table_.columns[columns_[i]].name);
        marks += marks.empty() ? "?" : ",?";
    }
    const std::string into = "INSERT INTO " + QuotedName(table_.name);
    auto made = std::make_unique<Insert>();
    made->assigned = assigned;
    made->tracked =
        file_->Prepare(names.empty() ? into + " DEFAULT VALUES" : into + " (" + names + ") VALUES (" + marks + ")");
    inserts_.push_back(std::move(made));
    return *(last_ = inserts_.back().get());
}

void SqliteAppender::BindRow(sqlite3_stmt* statement, std::span<const Value> values,
                             const std::vector<bool>& assigned) {
    int parameter = 0;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        if (!assigned[i]) continue;
        const ShapeColumn& column = table_.columns[columns_[i]];
        if (column.refusesNull && values[i].IsNull())
            throw Error(ErrorKind::Constraint, file_->StoredPath(),
                        "The field '" + column.name + "' cannot contain a Null value.");
        const int code = BindForm(statement, ++parameter, StoreValue(values[i], column.affinity, scratch_[i]));
        if (code != SQLITE_OK) throw file_->Failure(code);
    }
}

void SqliteAppender::Append(std::span<const Value> values, const std::vector<bool>& assigned) {
    Insert& insert = InsertFor(assigned);
    sqlite3_stmt* statement = insert.tracked.statement.get();
    BindRow(statement, values, assigned);
    file_->BeforeWriting(insert.tracked.tables.writes);
    file_->BeginRows();
    const int code = sqlite3_step(statement);
    if (code != SQLITE_DONE) {
        const Error refused = file_->RowRefused(code);
        sqlite3_reset(statement);
        throw refused;
    }
    sqlite3_reset(statement);
    file_->RowWritten();
}

}  // namespace varnel::sql
