// A statement with ? markers on a SQLite file, run once per row. The rows share the file's transaction.
#pragma once

#include <memory>

#include "ado/types/Provider.h"
#include "providers/sql/SqliteFile.h"
#include "providers/sql/SqliteStatement.h"
#include "providers/sql/StatementWriter.h"

namespace varnel::sql {

class SqlitePrepared : public PreparedStatement {
public:
    SqlitePrepared(std::shared_ptr<SqliteFile> file, SqliteStatement statement);
    ~SqlitePrepared() override;

    void Execute(std::span<const Value> parameters) override;
    void Commit() override { file_->Commit(); }

private:
    std::shared_ptr<SqliteFile> file_;
    SqliteStatement statement_;
    BoundValues buffers_;
};

}  // namespace varnel::sql
