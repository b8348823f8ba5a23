// A page of rows: a table's rows, pieces of long values, usage maps.
//
//   offset (Access 97)  size
//    0                  2     01 01
//    4                  4     owner: the table's id, "LVAL" on a page of long values, 0 on one of usage maps
//   12 (8)              2     number of row slots
//   14 (10)             2 each: bits 0-12 where the row begins, 0x4000 and 0x8000 what it is
//
// Rows lie from the page's end downwards in slot order: a row ends where the one before it begins.
#pragma once

#include <cstddef>
#include <cstdint>

#include "providers/access/Layout.h"
#include "providers/access/StoredBytes.h"

namespace varnel::access {

inline constexpr std::uint32_t kLongValueOwner = 0x4C41564C;  ///< "LVAL"
inline constexpr std::uint32_t kUsageMapOwner = 0;

enum class SlotKind : std::uint8_t {
    Row,
    Pointer,  ///< the row has moved; its first 4 bytes are a row pointer
    Moved,    ///< the row that such a pointer leads to; no row of its own
    Deleted
};

/// Row and Moved have bytes to be read as a row, Pointer at least as many as its writer left.
struct Slot {
    SlotKind kind = SlotKind::Deleted;
    Bytes bytes;
};

class DataPage {
public:
    /// Takes a page's bytes, which must outlive this, and checks its slots: all of them inside the page, none beginning
    /// after the one before it.
    Fault Attach(Bytes page, const Layout& shape);

    std::uint32_t Owner() const { return LoadU32(page_, 4); }
    std::size_t SlotCount() const { return count_; }
    /// number must be below SlotCount().
    Slot At(std::size_t number) const {
        const std::uint16_t stored = Stored(number);
        const std::size_t begin = stored & kOffsetBits;
        const std::size_t end = number == 0 ? page_.size() : Stored(number - 1) & kOffsetBits;
        return {KindOf(stored), page_.subspan(begin, end - begin)};
    }

    static constexpr std::uint16_t kOffsetBits = 0x1FFF, kPointerBit = 0x4000, kMovedBit = 0x8000;

private:
    static SlotKind KindOf(std::uint16_t stored) {
        const bool pointer = (stored & kPointerBit) != 0, moved = (stored & kMovedBit) != 0;
        if (pointer) return moved ? SlotKind::Deleted : SlotKind::Pointer;
        return moved ? SlotKind::Moved : SlotKind::Row;
    }
    std::uint16_t Stored(std::size_t number) const { return LoadU16(page_, slotsAt_ + 2 * number); }

    Bytes page_;
    std::size_t slotsAt_ = 0, count_ = 0;
};

}  // namespace varnel::access
