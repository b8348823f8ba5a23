// Inserts rows into the table that a SELECT of plain columns names. Every row stands for itself: it is committed when
// Append returns, so that nothing counted is lost with the server.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "ado/types/Provider.h"
#include "providers/mysql/MySqlLink.h"
#include "providers/mysql/MySqlStatement.h"

namespace varnel::mysql {

class MySqlAppender : public Appender {
public:
    /// Throws Error{NotSupported} when the SELECT's columns are not plain columns of one table.
    MySqlAppender(std::shared_ptr<MySqlLink> link, const std::string& selectStatement);

    const std::vector<ColumnInfo>& Columns() const override { return columns_; }
    void Append(std::span<const Value> values, const std::vector<bool>& assigned) override;
    void Commit() override {}

private:
    MySqlStatement& InsertFor(const std::vector<bool>& assigned);
    std::string InsertText(const std::vector<bool>& assigned) const;

    std::shared_ptr<MySqlLink> link_;
    std::string table_;  // quoted, with its database
    std::vector<ColumnInfo> columns_;
    std::vector<std::string> columnNames_;  // quoted
    std::map<std::vector<bool>, MySqlStatement> inserts_;
    std::vector<const Value*> parameters_;
};

}  // namespace varnel::mysql
