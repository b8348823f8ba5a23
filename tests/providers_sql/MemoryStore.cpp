#include "tests/providers_sql/MemoryStore.h"

#include <algorithm>

#include "platform/Error.h"
#include "providers/sql/DeclaredTypes.h"
#include "tests/providers_sql/SqlTestDatabase.h"

namespace varnel {
namespace {

class MemoryRows : public TableRows {
public:
    MemoryRows(const MemoryTable& table, std::span<const std::size_t> wanted)
        : rows_(table.rows), breaksAt_(table.breaksAt), wanted_(wanted.begin(), wanted.end()) {}

    bool Next(std::span<Value> row) override {
        if (breaksAt_ == next_) throw Error(ErrorKind::Io, "", "the disk is gone");
        if (next_ == rows_->size()) return false;
        const std::vector<Value>& values = (*rows_)[next_++].values;
        for (std::size_t k = 0; k < wanted_.size(); ++k) row[k] = values[wanted_[k]];
        return true;
    }
    RowId Current() const override { return (*rows_)[next_ - 1].id; }

private:
    std::shared_ptr<const std::vector<MemoryTable::Row>> rows_;
    std::optional<std::size_t> breaksAt_;
    std::vector<std::size_t> wanted_;
    std::size_t next_ = 0;
};

class MemoryFile : public TableFile {
public:
    explicit MemoryFile(std::shared_ptr<MemoryTable> table) : table_(std::move(table)) {}

    const std::vector<ColumnInfo>& Columns() const override { return table_->columns; }
    std::unique_ptr<TableRows> Rows(std::span<const std::size_t> wanted) override {
        table_->asked.emplace_back(wanted.begin(), wanted.end());
        return std::make_unique<MemoryRows>(*table_, wanted);
    }
    std::int64_t CountRows() override { return static_cast<std::int64_t>(table_->rows->size()); }
    void Append(std::span<const Value> values, const std::vector<bool>& assigned) override {
        Refuse();
        std::vector<Value> row(values.size());
        for (std::size_t i = 0; i < row.size(); ++i)
            if (assigned[i]) row[i] = values[i];
        table_->Add(std::move(row));
    }
    void Update(RowId id, std::span<const Value> values, const std::vector<bool>& assigned) override {
        Refuse();
        for (MemoryTable::Row& row : table_->Changing())
            for (std::size_t i = 0; row.id == id && i < values.size(); ++i)
                if (assigned[i]) row.values[i] = values[i];
    }
    void Delete(RowId id) override {
        Refuse();
        std::erase_if(table_->Changing(), [&](const MemoryTable::Row& row) { return row.id == id; });
    }
    void DeleteAll() override {
        table_->Changing().clear();
        table_->wasEmptied = true;
    }
    void Commit() override { ++table_->commits; }

private:
    void Refuse() {
        if (table_->refusesWriteAt == table_->writes++) throw Error(ErrorKind::Constraint, "", "the row is locked");
    }

    std::shared_ptr<MemoryTable> table_;
};

}  // namespace

void MemoryTable::Add(std::vector<Value> values) {
    Changing().push_back({++lastId, std::move(values)});
}

std::vector<MemoryTable::Row>& MemoryTable::Changing() {
    if (rows.use_count() > 1) rows = std::make_shared<std::vector<Row>>(*rows);
    return const_cast<std::vector<Row>&>(*rows);
}

std::vector<std::string> MemoryStore::TableNames() {
    std::vector<std::string> names;
    for (const auto& [name, table] : tables_) names.push_back(name);
    return names;
}

std::unique_ptr<TableFile> MemoryStore::OpenTable(std::string_view name) {
    const auto found = tables_.find(name);
    if (found == tables_.end())
        throw Error(ErrorKind::Constraint, "",
                    "The Jet database engine cannot find the input table or query '" + std::string(name) + "'.");
    return std::make_unique<MemoryFile>(found->second);
}

void MemoryStore::CreateTable(std::string_view name, std::span<const ColumnDefinition> columns) {
    if (tables_.contains(name)) throw Error(ErrorKind::Constraint, "", "exists");
    std::vector<ColumnInfo> described;
    for (const ColumnDefinition& column : columns) {
        const auto type = sql::FindDeclaredType(column.typeWord, column.typeArguments);
        described.push_back(sql::DescribeColumn(column.name, type.value(), !column.notNull && !column.primaryKey));
    }
    Make(std::string(name), std::move(described));
}

void MemoryStore::DropTable(std::string_view name) {
    if (tables_.erase(std::string(name)) == 0) throw Error(ErrorKind::Constraint, "", "does not exist");
}

MemoryTable& MemoryStore::Make(const std::string& name, std::vector<ColumnInfo> columns) {
    auto table = std::make_shared<MemoryTable>();
    table->columns = std::move(columns);
    return *(tables_[name] = std::move(table));
}

MemoryTestDatabase::MemoryTestDatabase(const sql::Dialect& dialect) {
    auto store = std::make_unique<MemoryStore>();
    store_ = store.get();
    auto open = std::make_shared<sql::OpenStore>(std::move(store), "");
    session_ = std::make_unique<sql::TableStoreSession>(std::move(open), dialect, false);
}

std::string MemoryTestDatabase::Ask(const std::string& query) {
    return SqlTestDatabase::AskOn(*session_, query);
}

ColumnInfo ColumnOf(const std::string& name, DataTypeEnum type, std::int64_t size, std::uint8_t scale) {
    ColumnInfo column;
    column.name = name;
    column.type = type;
    column.definedSize = size;
    column.numericScale = scale;
    return column;
}

}  // namespace varnel
