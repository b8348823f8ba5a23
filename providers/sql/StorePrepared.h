// A statement with ? markers on a table of a store, run once per row; commit points as CommitClock makes them.
#pragma once

#include <memory>
#include <vector>

#include "ado/types/Provider.h"
#include "providers/sql/ExpressionRules.h"
#include "providers/sql/StoreChange.h"

namespace varnel::sql {

class StorePrepared : public PreparedStatement {
public:
    /// Throws Error: syntax, unknown table and columns.
    StorePrepared(std::shared_ptr<OpenStore> store, const ExpressionRules& rules, const ParsedStatement& parsed);

    void Execute(std::span<const Value> parameters) override;
    void Commit() override { change_->Commit(); }

private:
    std::shared_ptr<std::vector<Value>> markers_;
    std::unique_ptr<StoreChange> change_;
};

}  // namespace varnel::sql
