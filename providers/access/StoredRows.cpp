#include "providers/access/StoredRows.h"

#include <array>

#include "platform/Error.h"
#include "providers/access/DataPage.h"
#include "providers/access/StoreBytes.h"

namespace varnel::access {
namespace {

/// The slot of a page of the table; a deleted one when there is none.
Slot SlotAt(PageFile& file, const TableDefinition& table, RowPointer at, PagePin& pin) {
    DataPage page;
    if (at.page == 0 || at.page >= file.PageCount()) return {};
    pin = file.Read(at.page);
    if (page.Attach({pin.get(), file.Shape().pageSize}, file.Shape()) != nullptr || page.Owner() != table.Id())
        return {};
    return at.row < page.SlotCount() ? page.At(at.row) : Slot{};
}

}  // namespace

RowPage StoredRows::PageOf(RowPointer at) {
    return RowPage(pages_.File().Change(at.page), at.page, pages_.Owner());
}

StoredRow StoredRows::Read(RowPointer row) {
    StoredRow found;
    found.seat = row;
    Slot slot = SlotAt(pages_.File(), table_, row, found.pin);
    if (slot.kind == SlotKind::Pointer) {
        found.seat = slot.bytes.size() >= 4 ? UnpackRowPointer(LoadU32(slot.bytes, 0)) : RowPointer{};
        slot = SlotAt(pages_.File(), table_, found.seat, found.pin);
        if (slot.kind != SlotKind::Moved)
            throw Error(ErrorKind::Corrupt, table_.name,
                        "The table '" + table_.name + "' is damaged: a moved row is not where it should be.");
    } else if (slot.kind != SlotKind::Row) {
        throw Error(ErrorKind::Constraint, table_.name, "Record is deleted: a row of table '" + table_.name + "'.");
    }
    found.bytes = slot.bytes;
    return found;
}

void StoredRows::Replace(RowPointer row, std::span<const std::uint8_t> bytes) {
    const RowPointer seat = Read(row).seat;
    if (RowPage page = PageOf(seat); page.CanHold(seat.row, bytes.size()))
        return page.Replace(seat.row, bytes, page.Flags(seat.row));
    const RowPointer moved = pages_.Add(bytes, kSeatOfMovedRow);
    std::array<std::uint8_t, 4> pointer;
    StoreU32(pointer, 0, PackRowPointer(moved));
    PageOf(row).Replace(row.row, pointer, kPointerRow);
    if (seat != row) pages_.Delete(seat);
}

void StoredRows::Delete(RowPointer row) {
    const RowPointer seat = Read(row).seat;
    if (seat != row) pages_.Delete(seat);
    pages_.Delete(row);
}

}  // namespace varnel::access
