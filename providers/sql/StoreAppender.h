// New rows for a table of a store; commit points as CommitClock makes them.
#pragma once

#include <memory>
#include <vector>

#include "ado/types/Provider.h"
#include "providers/sql/CommitClock.h"
#include "providers/sql/ExpressionRules.h"
#include "providers/sql/OpenStore.h"
#include "providers/sql/SqlAst.h"
#include "providers/sql/StoreTable.h"

namespace varnel::sql {

class StoreAppender : public Appender {
public:
    /// select: plain columns of one table, each once. Throws Error.
    StoreAppender(std::shared_ptr<OpenStore> store, const ExpressionRules& rules, const SelectStatement& select);

    const std::vector<ColumnInfo>& Columns() const override { return described_; }
    void Append(std::span<const Value> values, const std::vector<bool>& assigned) override;
    void Commit() override { clock_.Commit(); }

private:
    std::shared_ptr<StoreTable> table_;
    std::vector<std::size_t> columns_;  ///< positions in the table, in the SELECT's order
    std::vector<ColumnInfo> described_;
    bool wholeRows_;                 ///< the SELECT names all columns in order: rows pass as they are
    std::vector<Value> row_;         ///< one per column of the table
    std::vector<bool> rowAssigned_;  ///< the same
    CommitClock clock_;
};

}  // namespace varnel::sql
