// Inserts rows into the table that a SELECT of plain columns names, through prepared INSERTs that write the names as
// the SELECT does.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ado/types/Provider.h"
#include "providers/odbc/NarrowTexts.h"
#include "providers/odbc/OdbcLink.h"
#include "providers/odbc/OdbcStatement.h"
#include "providers/odbc/SelectText.h"

namespace varnel::odbc {

class OdbcAppender : public Appender {
public:
    /// Throws Error{NotSupported} when the SELECT is not one of plain columns of one table, and what the driver says.
    OdbcAppender(std::shared_ptr<OdbcLink> link, const std::string& selectStatement);

    const std::vector<ColumnInfo>& Columns() const override { return columns_; }
    void Append(std::span<const Value> values, const std::vector<bool>& assigned) override;
    void Commit() override {}

    std::size_t QueueLimit() const override { return queueLimit_; }
    void Queue(std::span<const Value> values, const std::vector<bool>& assigned) override;
    void Send(const RowOutcome& outcome) override;

private:
    OdbcStatement& InsertFor(std::span<const Value> values, const std::vector<bool>& assigned);
    std::unique_ptr<OdbcStatement> MakeInsert(const std::vector<bool>& assigned);
    void Describe(const std::string& selectStatement);

    std::shared_ptr<OdbcLink> link_;
    SelectText select_;
    std::vector<OdbcColumn> targets_;
    std::vector<ColumnInfo> columns_;  ///< the same, as the data layer knows them
    std::optional<NarrowTexts> narrow_;
    std::size_t queueLimit_ = 0;
    std::map<std::vector<bool>, std::unique_ptr<OdbcStatement>> inserts_;
    OdbcStatement* queuing_ = nullptr;  ///< the statement with rows put aside
    std::vector<bool> queuingFor_;
    std::vector<const Value*> parameters_;
};

}  // namespace varnel::odbc
