// One node of a compact index, decoded: keys expanded to their full length, so that a key is looked up, put in or
// taken out without regard to how the page packs it. Integers are little-endian unless "big" is said.
//
//   node      0 2 attributes (1 root, 2 leaf, 4 made by a bulk build)   2 2 keys   4 4 left brother   8 4 right brother
//   interior  12 … per key: key, record (4, big), child (4, big); key and record are the last ones below that child
//   leaf      12 2 free bytes   14 4 record mask   18 1 duplicate mask   19 1 trail mask   20 1 record bits
//             21 1 duplicate bits   22 1 trail bits   23 1 bytes per entry   24 … entries, upwards
//             511 … key bytes, downwards
//   entry     record | duplicate << record bits | trail << (record bits + duplicate bits); the key is the first
//             `duplicate` bytes of the key before it, the stored bytes, and `trail` pad bytes
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/ByteView.h"

namespace varnel::foxpro {

/// Where a page begins: bytes from the start of the file, a multiple of 512.
using CdxPage = std::uint32_t;
inline constexpr CdxPage kNoCdxPage = 0xFFFFFFFF;
inline constexpr std::size_t kCdxPageBytes = 512;
inline constexpr std::size_t kLongestKey = 240;

using CdxPageBytes = std::array<std::uint8_t, kCdxPageBytes>;
using KeyBytes = std::span<const std::uint8_t>;

/// How the keys of one tag are stored.
struct KeyShape {
    std::uint16_t length = 0;  ///< bytes, 1 to 240
    std::uint8_t pad = 0;      ///< what trails a short key: a blank for characters, else 0
    bool operator==(const KeyShape&) const = default;
};

class CdxNode {
public:
    CdxNode(KeyShape keyShape, bool isLeaf) : shape_(keyShape), leaf_(isLeaf) {}
    /// Throws Error{Corrupt} when the page contradicts itself.
    CdxNode(const ByteView& page, KeyShape keyShape);

    KeyShape Shape() const { return shape_; }
    bool IsLeaf() const { return leaf_; }
    std::size_t Count() const { return records_.size(); }
    KeyBytes Key(std::size_t at) const { return {keys_.data() + at * shape_.length, shape_.length}; }
    std::uint32_t Record(std::size_t at) const { return records_[at]; }
    /// Interior nodes only.
    CdxPage Child(std::size_t at) const { return children_[at]; }
    /// What the page said of its free bytes; a leaf made in memory says 0.
    std::size_t StatedFreeBytes() const { return statedFreeBytes_; }
    /// Of a leaf as it would be written.
    std::size_t FreeBytes() const;

    /// The first entry that is not below (key, record); Count() when all are.
    std::size_t LowerBound(KeyBytes key, std::uint32_t record) const;
    /// Puts an entry before entry at. False, and nothing done, when it does not fit the page.
    bool Insert(std::size_t at, KeyBytes key, std::uint32_t record, CdxPage child = kNoCdxPage);
    /// The entry behind it may need more bytes then: see IsOverfull.
    void Remove(std::size_t at);
    /// More than a page holds: the node has to be split before it is encoded.
    bool IsOverfull() const { return leaf_ && LeafBytes(Count(), storedBytes_, entryBytes_) > kCdxPageBytes; }
    /// Gives entry at of an interior node another last key.
    void SetLast(std::size_t at, KeyBytes key, std::uint32_t record);
    /// True when an interior node takes no further entry.
    bool IsFull() const;
    /// Moves the entries from at on, or from the first later one from which they fit, to other, an empty node of the
    /// same sort. (The first key of a page is stored in full, so that a half may need more bytes than before.)
    void MoveTail(std::size_t at, CdxNode& other);
    /// Becomes a leaf without entries.
    void BecomeEmptyLeaf();
    /// Makes the entries of a leaf wide enough for records up to this number.
    void ExpectRecords(std::uint32_t greatest);

    void Encode(CdxPageBytes& page) const;
    /// Bytes of memory, about.
    std::size_t MemoryBytes() const {
        return 256 + keys_.capacity() + 4 * (records_.capacity() + children_.capacity());
    }

    CdxPage left = kNoCdxPage, right = kNoCdxPage;
    bool isRoot = false;
    bool isBulkBuilt = false;

private:
    void ReadLeaf(const ByteView& page, std::size_t count);
    void ReadInterior(const ByteView& page, std::size_t count);
    void EncodeLeaf(CdxPageBytes& page) const;
    void EncodeInterior(CdxPageBytes& page) const;
    std::size_t StoredBytes(std::size_t at) const;
    std::size_t LeafBytes(std::size_t count, std::size_t storedBytes, unsigned entryBytes) const;

    KeyShape shape_;
    bool leaf_;
    std::vector<std::uint8_t> keys_;
    std::vector<std::uint32_t> records_;
    std::vector<CdxPage> children_;
    std::size_t storedBytes_ = 0;  // of a leaf's keys, all together
    unsigned entryBytes_ = 1;      // of a leaf
    std::size_t statedFreeBytes_ = 0;
};

/// Orders entries as an index stores them: by the bytes of the key, then by record.
int CompareEntries(KeyBytes keyA, std::uint32_t recordA, KeyBytes keyB, std::uint32_t recordB);

}  // namespace varnel::foxpro
