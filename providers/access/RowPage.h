// A page of rows that is being changed: data pages, shared long value pages and usage-map pages alike (Jet 4).
//
//   OFFSET SIZE
//   0      2    01 01
//   2      2    free bytes: lowest row start - 14 - 2 * slots
//   4      4    owner
//   12     2    slots
//   14     2*n  slot: bits 0-12 the row's offset, 0x8000 a moved row's new seat, 0x4000 a pointer to one, both deleted
// Rows are stacked from the page's end downwards in the order of their slots; row i ends where row i-1 begins.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "providers/access/Layout.h"

namespace varnel::access {

inline constexpr std::uint16_t kSeatOfMovedRow = 0x8000;
inline constexpr std::uint16_t kPointerRow = 0x4000;
inline constexpr std::uint16_t kDeletedRow = 0xC000;
inline constexpr std::size_t kMostRowsOnPage = 255;

class RowPage {
public:
    static constexpr std::uint32_t kLongValueOwner = 0x4C41564C;  ///< "LVAL"

    /// Makes a page of zeros a page of rows without any.
    static void Format(std::span<std::uint8_t> page, std::uint32_t owner);

    /// page: the whole page, which outlives this object. owner: whose page it must be. Throws Error{Corrupt} when it is
    /// not, or when its slots lie wrongly.
    RowPage(std::span<std::uint8_t> page, PageNumber number, std::uint32_t owner);

    std::size_t Slots() const { return slots_; }
    /// Bytes that are neither rows nor slots.
    std::size_t Free() const { return lowest_ - SlotAt(slots_); }
    /// True when a row of this many bytes can be added with a slot of its own.
    bool Takes(std::size_t bytes) const { return slots_ < kMostRowsOnPage && bytes + 2 <= Free(); }
    /// True when no slot holds anything.
    bool IsEmpty() const;

    /// Throws Error{Corrupt} when there is no such slot.
    std::uint16_t Flags(std::size_t slot) const;
    std::span<std::uint8_t> Row(std::size_t slot);
    std::size_t Length(std::size_t slot) const { return End(slot) - Start(slot); }

    /// Needs Takes(row.size()). Returns the new slot.
    std::uint8_t Add(std::span<const std::uint8_t> row, std::uint16_t flags = 0);
    /// Room for a row of so many bytes, for the caller to fill; as Add.
    std::span<std::uint8_t> AddSpace(std::size_t bytes, std::uint16_t flags = 0);
    /// True when the slot's row can become this long where it is.
    bool CanHold(std::size_t slot, std::size_t bytes) const { return bytes <= Length(slot) + Free(); }
    /// The row becomes these bytes; the rows below it slide. Needs CanHold.
    void Replace(std::size_t slot, std::span<const std::uint8_t> row, std::uint16_t flags);
    /// The row's length changes and its first bytes stay; what is new is zero. Needs CanHold.
    std::span<std::uint8_t> Resize(std::size_t slot, std::size_t bytes);
    void Delete(std::size_t slot) { Replace(slot, {}, kDeletedRow); }

private:
    static std::size_t SlotAt(std::size_t slot) { return kJet4Layout.slotsAt + 2 * slot; }
    std::size_t Start(std::size_t slot) const;
    std::size_t End(std::size_t slot) const { return slot == 0 ? page_.size() : Start(slot - 1); }
    void CheckSlots() const;
    void StoreFree();
    [[noreturn]] void ThrowDamaged(std::string_view what) const;

    std::span<std::uint8_t> page_;
    PageNumber number_;
    std::size_t slots_ = 0, lowest_ = 0;
};

}  // namespace varnel::access
