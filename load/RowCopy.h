// The loop over a table's rows that the ways of writing them one by one share. Rows may be put aside and sent together
// where the target bears it; nobody sees a difference: what was put aside is settled before anything else is reported,
// and with every yield when a window shows the progress or a cancel is noted.
#pragma once

#include <cstdint>

#include "load/TargetRows.h"
#include "load/TransferSteps.h"

namespace varnel {

class RowCopy {
public:
    /// Where the progress bar stands after a row that could not be written.
    enum class FailedRow : std::uint8_t { MovesTheBar, LeavesTheBar };

    RowCopy(Transfer& transfer, FailureTrap& trap, TargetRows& target, FailedRow failedRow)
        : transfer_(transfer), trap_(trap), target_(target), failedRow_(failedRow) {}

    /// Copies the rows of SrcRs from where it stands. Returns at the end or on a cancel, everything settled.
    void Run();
    /// Sends what was put aside and reports each row's outcome under its own number. To be called before anything else
    /// is reported.
    void Settle();

private:
    void CopyRow();
    bool PutAside();
    void Note(bool stored);
    bool YieldAndGoOn();

    Transfer& transfer_;
    FailureTrap& trap_;
    TargetRows& target_;
    FailedRow failedRow_;
    std::size_t queueLimit_ = 0;
    std::int32_t queued_ = 0;
    std::int32_t lastPutAside_ = 0;  ///< its number; those put aside before it have the numbers before
    bool moving_ = false;            ///< the source is asked for its next row
};

}  // namespace varnel
