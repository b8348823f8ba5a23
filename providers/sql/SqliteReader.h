// The rows of one query on a SQLite file, straight from the prepared statement; from a temporary file once one of the
// query's tables is about to change.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "ado/types/Provider.h"
#include "providers/sql/ColumnCodec.h"
#include "providers/sql/RowSpool.h"
#include "providers/sql/SqliteFile.h"
#include "providers/sql/SqliteStatement.h"

namespace varnel::sql {

class SqliteReader : public RowReader, private OpenRead {
public:
    /// statement: a SELECT with everything bound.
    SqliteReader(std::shared_ptr<SqliteFile> file, SqliteStatement statement);
    ~SqliteReader() override;

    const std::vector<ColumnInfo>& Columns() const override { return statement_.columns; }
    bool Next(std::span<Value> row) override;

private:
    void KeepRest() noexcept override;
    bool Step(std::span<Value> row);
    void LetGo() noexcept;

    std::shared_ptr<SqliteFile> file_;
    SqliteStatement statement_;
    std::unique_ptr<RowSpool> kept_;
    std::optional<Error> broken_;  ///< why the rows end after the kept ones
    bool open_ = true;             ///< the statement still stands in the file
};

}  // namespace varnel::sql
