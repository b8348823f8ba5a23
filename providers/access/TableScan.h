// The rows of a table, one after the other as they are stored: pages in ascending order, slots in order. A row that has
// moved stands where its pointer is.
#pragma once

#include <memory>
#include <string>

#include "providers/access/DataPage.h"
#include "providers/access/PageFile.h"
#include "providers/access/TableDefinition.h"

namespace varnel::access {

/// Reads the pages as they are now, and as long as it lives, whatever is changed meanwhile. Needs a hold.
class TableScan {
public:
    /// alsoFrozen: pages beside the table's own that must not change under the reader. Throws Error{Corrupt} when the
    /// table's map of pages cannot be read. file must outlive this.
    TableScan(PageFile& file, const TableDefinition& table, PageSet alsoFrozen);

    /// False after the last row. Throws Error{Corrupt} for a page that is not a sound one of the table.
    bool Next();
    /// Goes to one row of the table, from where Next goes on with the row after it. False when there is none.
    bool Seek(RowPointer at);

    /// Where the row, or the pointer to it, stands: an index names it so.
    RowPointer Where() const { return {page_, static_cast<std::uint8_t>(slot_)}; }
    /// Valid until the next call. Empty when fault is not null: then only this row cannot be read.
    Bytes Row() const { return row_; }
    Fault RowFault() const { return fault_; }

    PageFile::Snapshot& Pages() { return *snapshot_; }

private:
    void OpenPage(PageNumber page);
    bool TakeSlot();
    Fault FollowPointer(Bytes pointer);

    PageFile& file_;
    std::string tableName_;
    PageNumber table_;
    PageSet pages_;
    std::unique_ptr<PageFile::Snapshot> snapshot_;
    PageNumber page_ = 0;   ///< 0: none yet
    std::size_t next_ = 0;  ///< slot on it
    std::size_t slot_ = 0;
    PagePin pin_, movedPin_;
    DataPage slots_;
    Bytes row_;
    Fault fault_ = nullptr;
};

/// Rows of a table: every slot is looked at, no row is read. Needs a hold. Throws Error{Corrupt}.
std::int64_t CountTableRows(PageFile& file, const TableDefinition& table);

}  // namespace varnel::access
