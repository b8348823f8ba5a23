// Usage maps while they are changed (Jet 4). A map is a row on a usage-map page (page 1 for the file's own two):
//
//   inline:     u8 0, u32 first page, bits (lowest first); grows by 4 bytes at a time while its page has room
//   reference:  u8 1, 17 times u32 page of bits, 0 while none of its pages is set
//
// A page of bits begins with 05 01 00 00; the bits of 32,736 pages follow.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "providers/access/PageFile.h"

namespace varnel::access {

inline constexpr std::size_t kNewMapBytes = 69;
inline constexpr std::size_t kReferences = 17;
inline constexpr PageNumber kPagesPerReference = 32'736;
/// Owner of the pages on which usage maps lie; that of page 1 is 1.
inline constexpr std::uint32_t kUsageMapPages = 0;

class UsageMapWriter {
public:
    /// takePage: gives a page of zeros that belongs to nobody, for bits.
    UsageMapWriter(PageFile& file, std::function<PageNumber()> takePage)
        : file_(file), takePage_(std::move(takePage)) {}

    bool Has(RowPointer map, PageNumber page);
    void Add(RowPointer map, PageNumber page) { Set(map, page, true, false); }
    /// The same for a map that need not name every page, as those of pages with room: an empty one begins anew there.
    void AddHint(RowPointer map, PageNumber page) { Set(map, page, true, true); }
    void Remove(RowPointer map, PageNumber page) { Set(map, page, false, false); }
    std::optional<PageNumber> First(RowPointer map);
    std::optional<PageNumber> Last(RowPointer map);
    /// Makes the map an empty one of the usual size. Returns the pages of bits that it no longer needs.
    std::vector<PageNumber> Reset(RowPointer map);
    void AddRange(RowPointer map, PageNumber from, PageNumber to);

private:
    /// A piece of a map: byte k, bit b stands for page first + 8 * k + b.
    struct Bits {
        PageNumber first = 0;
        std::span<const std::uint8_t> bytes;
    };
    void Set(RowPointer map, PageNumber page, bool value, bool mayMove);
    void SetReferenced(RowPointer map, PageNumber page, bool value);
    bool GrowInline(RowPointer map, PageNumber page, bool mayMove);
    void BecomeReference(RowPointer map);
    /// The map's pieces in the order of their pages, each handed to look until that returns true.
    void ForEachPiece(RowPointer map, bool backwards, const std::function<bool(const Bits&)>& look);
    std::uint32_t OwnerOf(RowPointer map) const { return map.page == 1 ? 1 : kUsageMapPages; }

    PageFile& file_;
    std::function<PageNumber()> takePage_;
};

}  // namespace varnel::access
