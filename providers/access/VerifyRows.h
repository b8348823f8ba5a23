// The rows of one table and the pages they lie on.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "providers/access/CellDecoder.h"
#include "providers/access/VerifyLongValues.h"

namespace varnel::access {

class VerifyRows {
public:
    /// Enters the table's maps and pages, and those of its long values, into the ledger and checks them. table must
    /// outlive this.
    VerifyRows(VerifyContext& context, const TableDefinition& table);

    /// Looks at every row once, cell by cell.
    void Run();
    /// Calls with every readable row: where an index names it, and its cells.
    void ForEach(const std::function<void(RowPointer, RowView&)>& onRow);
    std::size_t Count() const { return count_; }
    /// The bytes of a memo or OLE object of a row, valid until the next call; throws Error{Corrupt} when they cannot be
    /// read. position: of the column.
    Bytes LongValue(std::size_t position, RowView& row);

private:
    void CheckPage(PageNumber page);
    void ForEachSlot(const std::function<void(RowPointer, const Slot&)>& onSlot);
    /// The row at a slot, or where its pointer leads; empty, and reported, when there is none.
    Bytes RowAt(RowPointer where, const Slot& slot, bool report);
    void CheckRow(RowPointer where, Bytes row);
    void CheckRoom();
    void ReportOrphans();

    VerifyContext& context_;
    const TableDefinition& table_;
    std::unique_ptr<PageFile::Snapshot> pages_;
    PageSet owned_, room_;
    PageSet readable_;                     ///< of owned_
    VerifiedPage movedPage_;               ///< of the last row that had moved
    std::map<std::uint32_t, bool> moved_;  ///< by packed row pointer of a row that moved: true when a slot points at it
    std::vector<CellPlan> plans_;
    std::map<std::size_t, VerifyLongValues> longValues_;  ///< by position of the column
    CellDecoder decoder_;
    LongValueReader reader_;
    std::vector<std::uint8_t> longValue_;
    RowView row_;
    Value value_;
    std::size_t count_ = 0;
};

}  // namespace varnel::access
