// The sizes and places in which the versions of the Access file differ, and the two small things that every part of the
// format names: pages and rows on pages.
#pragma once

#include <cstddef>
#include <cstdint>

namespace varnel::access {

/// Page n starts at byte n * pageSize of the file; page 0 is the file header and never holds anything else.
using PageNumber = std::uint32_t;

/// A row slot on a page. Page 0 stands for "none".
struct RowPointer {
    PageNumber page = 0;
    std::uint8_t row = 0;
    bool IsNone() const { return page == 0; }
    bool operator==(const RowPointer&) const = default;
};

/// As 4 stored bytes: u8 row, u24 page, little-endian.
constexpr RowPointer UnpackRowPointer(std::uint32_t stored) {
    return {stored >> 8, static_cast<std::uint8_t>(stored & 0xFF)};
}
constexpr std::uint32_t PackRowPointer(RowPointer at) {
    return (at.page << 8) | at.row;
}

enum class Version : std::uint8_t {
    Jet3,  ///< Access 97; read only
    Jet4,  ///< Access 2000 to 2003; read and written
    Ace    ///< .accdb of 2007 and later; read only
};

/// Offsets are bytes from the start of the page.
struct Layout {
    Version version = Version::Jet4;
    std::size_t pageSize = 4096;
    std::size_t slotCountAt = 12;    ///< data page: u16 number of row slots
    std::size_t slotsAt = 14;        ///< data page: the first u16 slot; also the bytes before the rows of an empty page
    std::size_t indexMaskAt = 0x1B;  ///< index page: the entry mask
    std::size_t indexEntriesAt = 0x1E0;  ///< index page: the first entry
};

inline constexpr Layout kJet4Layout{};
inline constexpr Layout kJet3Layout{Version::Jet3, 2048, 8, 10, 22, 0xF8};
inline constexpr Layout kAceLayout{Version::Ace, 4096, 12, 14, 0x1B, 0x1E0};

}  // namespace varnel::access
