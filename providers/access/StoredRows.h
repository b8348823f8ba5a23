// A table's rows as bytes: adding, replacing and deleting them, wherever they lie. A row keeps the slot at which it was
// added for as long as it lives; one that outgrows its page moves, and a pointer stays in the slot.
#pragma once

#include <cstdint>
#include <span>

#include "providers/access/RowPage.h"
#include "providers/access/RowPages.h"
#include "providers/access/StoredBytes.h"
#include "providers/access/TableDefinition.h"

namespace varnel::access {

/// A row as it was when it was read, whatever is changed afterwards.
struct StoredRow {
    PagePin pin;
    Bytes bytes;
    RowPointer seat;  ///< where the bytes lie: its slot, or the one that its slot points to
};

class StoredRows {
public:
    /// All of these outlive the object.
    StoredRows(PageFile& file, FilePages& pages, const TableDefinition& table)
        : table_(table), pages_(file, pages, table.Id(), table.ownedMap, table.roomMap) {}

    RowPointer Add(std::span<const std::uint8_t> row) { return pages_.Add(row); }
    /// Throws Error{Constraint} when there is no such row any more.
    StoredRow Read(RowPointer row);
    void Replace(RowPointer row, std::span<const std::uint8_t> bytes);
    void Delete(RowPointer row);
    void Forget() { pages_.Forget(); }

private:
    RowPage PageOf(RowPointer at);

    const TableDefinition& table_;
    RowPages pages_;
};

}  // namespace varnel::access
