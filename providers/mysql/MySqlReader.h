// The rows of one query, streamed from the server over the binary protocol, in which floating-point numbers keep every
// bit. Memory is bounded by one row.
#pragma once

#include <memory>
#include <vector>

#include "ado/types/Provider.h"
#include "providers/mysql/MySqlDecoder.h"
#include "providers/mysql/MySqlLink.h"

namespace varnel::mysql {

class MySqlReader : public RowReader {
public:
    /// executed: a statement that was executed and whose rows are waiting on the link.
    MySqlReader(std::shared_ptr<MySqlLink> link, StatementHandle executed);
    /// Reads a small unread rest; a larger one ends the connection.
    ~MySqlReader() override;

    const std::vector<ColumnInfo>& Columns() const override { return columns_; }
    bool Next(std::span<Value> row) override;

private:
    void Describe();
    bool Fetch();
    void Finish();
    bool ReadSmallRest() noexcept;
    [[noreturn]] void FailRows();

    std::shared_ptr<MySqlLink> link_;
    StatementHandle statement_;
    std::vector<ColumnInfo> columns_;
    std::vector<CellDecoder> cells_;
    bool open_ = true;
};

/// Reads and drops what else a finished statement returns (further results of a procedure). Returns false on failure.
bool DropFurtherResults(MYSQL_STMT* statement) noexcept;

}  // namespace varnel::mysql
