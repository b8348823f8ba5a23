// The commit points of rows that are written one by one: at least once a second, and when the writer ends.
#pragma once

#include <cstdint>

#include "providers/tablefile/TableFile.h"

namespace varnel::sql {

class CommitClock {
public:
    /// table: outlives the clock.
    explicit CommitClock(TableFile& table) : table_(table) {}
    /// Tries to commit; cannot report a failure.
    ~CommitClock();
    CommitClock(const CommitClock&) = delete;
    CommitClock& operator=(const CommitClock&) = delete;

    /// A row was written. Commits when the oldest one without a commit is a second old; throws what that throws.
    void RowWritten();
    /// Throws Error; the rows stay pending then.
    void Commit();

private:
    TableFile& table_;
    bool pending_ = false;
    std::int64_t since_ = 0;  ///< SteadyMilliseconds of the oldest pending row
};

}  // namespace varnel::sql
