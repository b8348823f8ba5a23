// One page of an index: entries in ascending order, and the mask that says where each ends.
//
//   Jet 4  Jet 3
//   0      0      u8 3 node, 4 leaf; u8 1
//   2      2      u16 bytes free behind the last entry
//   4      4      u32 page of the table definition
//   0C     8      u32 page before on the same level, 0 none
//   10     0C     u32 next page on the same level
//   14     10     u32 node: the child of everything above the last entry (the tail)
//   18     14     u16 (Jet 3: u8) bytes that every entry but the first leaves out, being those the first begins with
//   1A     15     u8 level, 0 for leaves
//   1B     16     entry mask: bit b, lowest first, set when an entry ends at byte b of the entries
//   1E0    F8     entries
//
// A leaf's entry is a key and a row id; a node's entry is the last entry of its child, and the child's page as u32,
// big-endian.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "providers/access/Layout.h"

namespace varnel::access {

/// Where things stand on an index page of one version; bytes from the page's start.
struct IndexShape {
    std::size_t pageSize, previousAt, nextAt, tailAt, prefixAt, prefixBytes, levelAt, maskAt, entriesAt;
    std::size_t Area() const { return pageSize - entriesAt; }
};
IndexShape IndexShapeOf(const Layout& layout);

/// Bytes of a child at the end of a node's entry.
inline constexpr std::size_t kChildLength = 4;

/// What a page has to be, for the check and the error text.
struct IndexPlace {
    const std::string* storedPath;
    PageNumber owner;  ///< page of the table definition
    PageNumber page;
};

/// Reads a page. Offsets are bytes from the start of the entries; an entry is named by its start.
class IndexPage {
public:
    /// bytes: a whole page that outlives this. Throws Error{Corrupt}, as every call does, when the page is not an index
    /// page of its owner or contradicts itself.
    IndexPage(std::span<const std::uint8_t> bytes, const IndexShape& shape, const IndexPlace& place);

    bool IsLeaf() const { return bytes_[0] == kLeafType; }
    unsigned Level() const { return bytes_[shape_->levelAt]; }
    PageNumber Previous() const { return U32(shape_->previousAt); }
    PageNumber Next() const { return U32(shape_->nextAt); }
    PageNumber Tail() const { return U32(shape_->tailAt); }
    std::size_t PrefixLength() const { return prefix_; }
    /// The end of the last entry.
    std::size_t Used() const { return used_; }
    bool Empty() const { return used_ == 0; }

    /// The end of the entry at start, which must be below Used().
    std::size_t EndOf(std::size_t start) const;
    /// The start of the entry that ends at end.
    std::size_t StartOf(std::size_t end) const;
    /// Replaces entry by the whole entry at start.
    void Get(std::string& entry, std::size_t start) const;
    /// A node's child: of the entry at start, or the tail when start is Used().
    PageNumber ChildAt(std::size_t start) const;
    /// The first entry whose key and row id are not below wanted, or Used().
    std::size_t LowerBound(std::string_view wanted) const;
    [[noreturn]] void ThrowDamaged(const std::string& what) const;

    static constexpr std::uint8_t kNodeType = 3, kLeafType = 4;

private:
    std::uint32_t U32(std::size_t at) const;
    std::string_view Bytes(std::size_t start, std::size_t end) const;
    bool IsBoundary(std::size_t offset) const;
    /// Compares wanted, from the prefix on, with the entry from start to end.
    int CompareFrom(std::string_view wantedRest, std::size_t start, std::size_t end) const;

    std::span<const std::uint8_t> bytes_;
    const IndexShape* shape_;
    IndexPlace place_;
    std::size_t used_ = 0, prefix_ = 0;
};

}  // namespace varnel::access
