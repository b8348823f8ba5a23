// A table's rows as bytes: adding, replacing and deleting them, wherever they lie. A row keeps the slot at which it was
// added for as long as it lives; one that outgrows its page moves, and a pointer stays in the slot.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "providers/access/RowPages.h"
#include "providers/access/TableDefinition.h"

namespace varnel::access {

class StoredRows {
public:
    StoredRows(PageFile& file, FilePages& pages, const TableDefinition& table)
        : table_(table), pages_(file, pages, table.Id(), table.ownedMap, table.roomMap) {}

    RowPointer Add(std::span<const std::uint8_t> row) { return pages_.Add(row); }
    /// A copy of the row's bytes; valid until the next call. Throws Error{Constraint} when there is no such row any
    /// more.
    std::span<const std::uint8_t> Read(RowPointer row);
    void Replace(RowPointer row, std::span<const std::uint8_t> bytes);
    void Delete(RowPointer row);
    void Forget() { pages_.Forget(); }

private:
    /// Where the bytes of the row lie: its slot, or the one that its slot points to.
    RowPointer Seat(RowPointer row);
    RowPage PageOf(RowPointer at);

    const TableDefinition& table_;
    RowPages pages_;
    std::string copy_;
};

}  // namespace varnel::access
