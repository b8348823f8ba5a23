#include "providers/access/StoredRows.h"

#include <array>

#include "platform/Error.h"
#include "providers/access/RowPage.h"
#include "providers/access/StoreBytes.h"

namespace varnel::access {

RowPage StoredRows::PageOf(RowPointer at) {
    return RowPage(pages_.File().Change(at.page), at.page, pages_.Owner());
}

RowPointer StoredRows::Seat(RowPointer row) {
    RowPage page = PageOf(row);
    const std::uint16_t flags = row.row < page.Slots() ? page.Flags(row.row) : kDeletedRow;
    if (flags == 0) return row;
    if (flags != kPointerRow)
        throw Error(ErrorKind::Constraint, table_.name, "Record is deleted: a row of table '" + table_.name + "'.");
    const std::span<const std::uint8_t> pointer = page.Row(row.row);
    const RowPointer seat = pointer.size() >= 4 ? UnpackRowPointer(LoadU32(pointer, 0)) : RowPointer{};
    if (seat.IsNone() || seat == row || PageOf(seat).Flags(seat.row) != kSeatOfMovedRow)
        throw Error(ErrorKind::Corrupt, table_.name,
                    "The table '" + table_.name + "' is damaged: a moved row is not where it should be.");
    return seat;
}

std::span<const std::uint8_t> StoredRows::Read(RowPointer row) {
    const RowPointer seat = Seat(row);
    const std::span<const std::uint8_t> bytes = PageOf(seat).Row(seat.row);
    copy_.assign(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    return {reinterpret_cast<const std::uint8_t*>(copy_.data()), copy_.size()};
}

void StoredRows::Replace(RowPointer row, std::span<const std::uint8_t> bytes) {
    const RowPointer seat = Seat(row);
    if (RowPage page = PageOf(seat); page.CanHold(seat.row, bytes.size()))
        return page.Replace(seat.row, bytes, page.Flags(seat.row));
    const RowPointer moved = pages_.Add(bytes, kSeatOfMovedRow);
    std::array<std::uint8_t, 4> pointer;
    StoreU32(pointer, 0, PackRowPointer(moved));
    PageOf(row).Replace(row.row, pointer, kPointerRow);
    if (seat != row) pages_.Delete(seat);
}

void StoredRows::Delete(RowPointer row) {
    const RowPointer seat = Seat(row);
    if (seat != row) pages_.Delete(seat);
    pages_.Delete(row);
}

}  // namespace varnel::access
