// INSERT … VALUES, UPDATE and DELETE on a table of a store.
// The rows that a statement changes, and their new values, are all worked out before the first one is changed.
#pragma once

#include <memory>
#include <vector>

#include "providers/sql/CommitClock.h"
#include "providers/sql/ExpressionRules.h"
#include "providers/sql/OpenStore.h"
#include "providers/sql/SqlAst.h"
#include "providers/sql/StoreTable.h"

namespace varnel::sql {

class StoreChange {
public:
    explicit StoreChange(std::shared_ptr<StoreTable> table) : table_(std::move(table)), clock_(*table_->file) {}
    virtual ~StoreChange() = default;
    StoreChange(const StoreChange&) = delete;
    StoreChange& operator=(const StoreChange&) = delete;

    /// Carries the statement out with the markers' values of the moment. Throws Error: when the table refuses one of
    /// several rows, nothing is changed; or, where changes cannot be taken back, those before it are changed, and the
    /// text says how many.
    virtual void Run() = 0;
    /// A commit point. The end of the object tries the same.
    void Commit() { clock_.Commit(); }

protected:
    TableFile& Table() const { return *table_->file; }
    /// Has changeOne(rows before it) change one row after the other until it returns false.
    template <class ChangeOne>
    void ChangeRows(ChangeOne&& changeOne);
    /// What Run changes while it lives is one unit, where the table knows such.
    class UnitScope {
    public:
        UnitScope(StoreChange& change, bool wanted) : change_(change) {
            if (wanted) change_.unit_ = change_.Table().BeginUnit();
        }
        ~UnitScope() { change_.unit_.reset(); }
        UnitScope(const UnitScope&) = delete;
        UnitScope& operator=(const UnitScope&) = delete;

    private:
        StoreChange& change_;
    };

    std::shared_ptr<StoreTable> table_;
    CommitClock clock_;
    std::unique_ptr<TableUnit> unit_;  ///< of the statement that runs
};

/// markers: one value per marker, to be set before each run. Throws Error: syntax, unknown table and columns; "Only
/// INSERT, UPDATE and DELETE statements can be prepared." for others.
std::unique_ptr<StoreChange> WriteStoreChange(std::shared_ptr<OpenStore> store, const ExpressionRules& rules,
                                              const ParsedStatement& parsed,
                                              std::shared_ptr<const std::vector<Value>> markers);

}  // namespace varnel::sql
