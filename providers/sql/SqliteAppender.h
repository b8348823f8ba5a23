// New rows for one table, written with one prepared INSERT per set of assigned columns.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ado/types/Provider.h"
#include "providers/sql/SqlAst.h"
#include "providers/sql/SqliteFile.h"
#include "providers/sql/TableShape.h"

namespace varnel::sql {

class SqliteAppender : public Appender {
public:
    /// select: plain columns of one table. Throws Error.
    SqliteAppender(std::shared_ptr<SqliteFile> file, const SelectStatement& select);
    ~SqliteAppender() override;

    const std::vector<ColumnInfo>& Columns() const override { return described_; }
    void Append(std::span<const Value> values, const std::vector<bool>& assigned) override;
    void Commit() override { file_->Commit(); }

private:
    /// The INSERT of one set of assigned columns.
    struct Insert {
        std::vector<bool> assigned;
        TrackedStatement tracked;
    };

    Insert& InsertFor(const std::vector<bool>& assigned);
    void BindRow(sqlite3_stmt* statement, std::span<const Value> values, const std::vector<bool>& assigned);

    std::shared_ptr<SqliteFile> file_;
    TableShape table_;
    std::vector<std::size_t> columns_;  ///< positions in the table, in the SELECT's order
    std::vector<ColumnInfo> described_;
    std::vector<std::string> scratch_;  ///< one per column, for values that are stored in another form
    std::vector<std::unique_ptr<Insert>> inserts_;
    Insert* last_ = nullptr;
};

}  // namespace varnel::sql
