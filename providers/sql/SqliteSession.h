// A session on a SQLite file. Readers, appenders and statements of one session may be used side by side.
#pragma once

#include <memory>
#include <string>

#include "ado/types/Provider.h"
#include "providers/sql/SqlAst.h"
#include "providers/sql/SqliteCatalog.h"
#include "providers/sql/SqliteFile.h"

namespace varnel::sql {

class SqliteSession : public ProviderSession {
public:
    /// readOnly: statements that change something fail.
    SqliteSession(std::shared_ptr<SqliteFile> file, bool readOnly) : file_(std::move(file)), readOnly_(readOnly) {}

    std::unique_ptr<RowReader> Query(const std::string& statement) override;
    void Execute(const std::string& statement) override;
    std::unique_ptr<PreparedStatement> Prepare(const std::string& statement,
                                               std::span<const ParameterInfo> parameters) override;
    std::unique_ptr<Appender> OpenAppender(const std::string& selectStatement) override;
    std::vector<TableInfo> Tables() override { return ListTables(*file_); }
    std::vector<TableColumn> Columns(const std::string& owner, const std::string& table) override;
    bool Reset() noexcept override { return file_->TryCommit(); }
    bool Alive() noexcept override { return file_->StillThere(); }

private:
    void RequireWritable() const;
    void Change(const ParsedStatement& parsed);
    void ChangeTables(const std::string& sql);

    std::shared_ptr<SqliteFile> file_;
    bool readOnly_;
};

}  // namespace varnel::sql
