// A store whose tables live in memory and fail on request: what the SQL layer needs of a format, without a format.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "providers/sql/TableStoreSession.h"
#include "providers/tablefile/TableFile.h"

namespace varnel {

/// A table's content, shared by all that opened it.
struct MemoryTable {
    struct Row {
        RowId id = 0;
        std::vector<Value> values;
    };
    std::vector<ColumnInfo> columns;
    std::shared_ptr<const std::vector<Row>> rows = std::make_shared<std::vector<Row>>();
    RowId lastId = 0;

    std::vector<std::vector<std::size_t>> asked;  ///< the columns of every cursor so far
    std::optional<std::size_t> breaksAt;          ///< reading this row (from 0) throws "the disk is gone"
    std::optional<std::size_t> refusesWriteAt;    ///< this write (from 0) throws "the row is locked"
    std::size_t writes = 0;
    int commits = 0;
    bool wasEmptied = false;  ///< by DeleteAll

    /// Adds a row; one value per column.
    void Add(std::vector<Value> values);
    /// The rows as a list of its own, to be changed; open cursors keep theirs.
    std::vector<Row>& Changing();
};

class MemoryStore : public TableStore {
public:
    std::vector<std::string> TableNames() override;
    std::unique_ptr<TableFile> OpenTable(std::string_view name) override;
    void CreateTable(std::string_view name, std::span<const ColumnDefinition> columns) override;
    void DropTable(std::string_view name) override;

    MemoryTable& Table(const std::string& name) { return *tables_.at(name); }
    /// Makes a table of these columns.
    MemoryTable& Make(const std::string& name, std::vector<ColumnInfo> columns);

private:
    std::map<std::string, std::shared_ptr<MemoryTable>, std::less<>> tables_;
};

/// A session on an empty MemoryStore, with the questions of SqlTestDatabase.
class MemoryTestDatabase {
public:
    explicit MemoryTestDatabase(const sql::Dialect& dialect = sql::kJetDialect);

    MemoryStore& Store() { return *store_; }
    ProviderSession& Session() { return *session_; }
    void Run(const std::string& statement) { session_->Execute(statement); }
    std::string Ask(const std::string& query);

private:
    MemoryStore* store_;
    std::unique_ptr<ProviderSession> session_;
};

/// A column of its type's usual size.
ColumnInfo ColumnOf(const std::string& name, DataTypeEnum type, std::int64_t size = 50,
                    std::uint8_t scale = kNotStated);

}  // namespace varnel
