// An index page taken apart: whole entries in a list, for changes that lay the page out anew.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "providers/access/IndexPage.h"

namespace varnel::access {

struct IndexImage {
    IndexImage() = default;
    /// Throws Error{Corrupt} when an entry contradicts the page.
    explicit IndexImage(const IndexPage& page);

    bool leaf = true;
    std::uint8_t level = 0;
    PageNumber previous = 0, next = 0, tail = 0;
    std::vector<std::string> entries;  ///< whole; a node's with their child

    /// Entries and tail of a node.
    PageNumber Child(std::size_t k) const;
    void SetChild(std::size_t k, PageNumber child);
    /// The position of child (entries.size() when it is the tail), or one more when it is not here.
    std::size_t FindChild(PageNumber child) const;

    /// Bytes of the entries when the first prefix bytes are left out of all but the first.
    std::size_t Size(std::size_t prefix) const;
    /// Bytes that all entries begin with; 0 for nodes, and for fewer than two entries.
    std::size_t CommonPrefix() const;
    bool Fits(const IndexShape& shape) const { return Size(CommonPrefix()) <= shape.Area(); }
    /// The entry behind the first half of the bytes; at least one entry lies on each side.
    std::size_t Middle() const;
    /// Lays the page out; the entries must fit. Leaves are written without prefix while they fit so.
    void Write(std::span<std::uint8_t> bytes, const IndexShape& shape, PageNumber owner) const;
};

/// The part of a node's entry that orders it.
inline std::string_view WithoutChild(std::string_view nodeEntry) {
    return nodeEntry.substr(0, nodeEntry.size() - kChildLength);
}
std::string NodeEntry(std::string_view keyAndRow, PageNumber child);

/// Lays out the only page of an index; the entries (whole and in order) must fit.
void WriteLoneLeaf(std::span<std::uint8_t> page, PageNumber owner, std::vector<std::string> entries = {});

}  // namespace varnel::access
