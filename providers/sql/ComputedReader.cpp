#include "providers/sql/ComputedReader.h"

#include <algorithm>
#include <utility>

#include "providers/sql/ScanModule.h"
#include "providers/sql/SqlFunctions.h"
#include "providers/sql/SqliteHandle.h"
#include "providers/sql/StatementWriter.h"

namespace varnel::sql {
namespace {

constexpr const char* kPageCache = "PRAGMA cache_size=-8192";  // KiB; larger sorts go to a temporary file

Database OpenMemory() {
    sqlite3* raw = nullptr;
    const int code = sqlite3_open_v2(":memory:", &raw, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    Database database(raw);
    if (code != SQLITE_OK) throw SqliteError(raw, code, "");
    sqlite3_exec(raw, kPageCache, nullptr, nullptr, nullptr);
    RegisterFunctions(raw);
    return database;
}

void AddNamed(const TableShape& shape, const Expr& expression, std::vector<std::size_t>& columns) {
    if (expression.kind == ExprKind::Column) {
        const std::ptrdiff_t found = FindColumn(shape, expression.name);
        const auto column = static_cast<std::size_t>(found);
        const bool known = std::find(columns.begin(), columns.end(), column) != columns.end();
        if (found >= 0 && !known) columns.push_back(column);
    }
    for (const Expr& operand : expression.operands) AddNamed(shape, operand, columns);
}

/// The columns that the statement names outside of its condition, in table order.
std::vector<std::size_t> NamedColumns(const TableShape& shape, const SelectStatement& select) {
    std::vector<std::size_t> columns;
    if (select.everything)
        for (std::size_t i = 0; i < shape.columns.size(); ++i) columns.push_back(i);
    for (const SelectItem& item : select.items) AddNamed(shape, item.expression, columns);
    for (const Expr& expression : select.groupBy) AddNamed(shape, expression, columns);
    if (select.having) AddNamed(shape, *select.having, columns);
    for (const OrderItem& item : select.orderBy) AddNamed(shape, item.expression, columns);
    std::sort(columns.begin(), columns.end());
    return columns;
}

class ComputedReader : public RowReader {
public:
    ComputedReader(std::shared_ptr<StoreTable> table, const SelectStatement& select, RowChoice choice)
        : scan_{std::move(table), std::move(choice), {}, {}}, database_(OpenMemory()) {
        for (const std::size_t column : NamedColumns(scan_.table->shape, select))
            scan_.columns.push_back({column, scan_.choice.wanted.Slot(column)});
        RegisterScan(database_.get(), scan_);
        Write(select);
        DescribeColumns(select);
    }

    const std::vector<ColumnInfo>& Columns() const override { return statement_.columns; }

    bool Next(std::span<Value> row) override {
        if (scan_.failure) throw Error(*scan_.failure);
        if (atEnd_) return false;
        sqlite3_stmt* handle = statement_.tracked.statement.get();
        const int code = sqlite3_step(handle);
        if (code == SQLITE_ROW) {
            for (std::size_t i = 0; i < row.size(); ++i)
                statement_.codecs[i].Decode(sqlite3_column_value(handle, static_cast<int>(i)), row[i]);
            return true;
        }
        if (code != SQLITE_DONE) Fail(code);
        atEnd_ = true;
        return false;
    }

private:
    void Write(const SelectStatement& select) {
        SelectStatement rest = select;
        rest.where.reset();  // the scan applies it
        statement_.markers = std::make_shared<std::vector<Value>>();
        const std::string sql = WriteSelectText(scan_.table->shape, rest, kScanName, statement_);
        statement_.tracked.statement = PrepareStatement(database_.get(), sql, scan_.table->shape.name);
        sqlite3_stmt* handle = statement_.tracked.statement.get();
        for (const BoundProgram& bound : statement_.programs)
            sqlite3_bind_pointer(handle, bound.number, bound.program.get(), kProgramPointer, nullptr);
    }

    void DescribeColumns(const SelectStatement& select) {
        const StoreTable& table = *scan_.table;
        for (std::size_t k = 0; k < statement_.columns.size(); ++k) {
            const auto column = select.everything ? std::optional<std::size_t>(k)
                                                  : ColumnNamed(table, select.tableAlias, select.items[k].expression);
            if (!column) continue;
            std::string name = std::move(statement_.columns[k].name);
            statement_.columns[k] = table.Columns()[*column];
            statement_.columns[k].name = std::move(name);
        }
    }

    /// What the scan met, in its own words, or what SQLite reports. Stepping on would begin again.
    [[noreturn]] void Fail(int code) {
        if (!scan_.failure) scan_.failure = SqliteError(database_.get(), code, scan_.table->shape.name);
        throw Error(*scan_.failure);
    }

    TableScan scan_;
    Database database_;
    SqliteStatement statement_;
    bool atEnd_ = false;
};

}  // namespace

std::unique_ptr<RowReader> OpenComputed(std::shared_ptr<StoreTable> table, const SelectStatement& select,
                                        RowChoice choice) {
    return std::make_unique<ComputedReader>(std::move(table), select, std::move(choice));
}

}  // namespace varnel::sql
