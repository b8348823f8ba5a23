#include "providers/foxpro/CdxNode.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstring>
#include <string>
#include <utility>

#include "platform/Error.h"

namespace varnel::foxpro {
namespace {

constexpr unsigned kRoot = 1, kLeaf = 2, kBulkBuilt = 4;
constexpr std::size_t kLeafHead = 24, kInteriorHead = 12;

void PutU16(CdxPageBytes& page, std::size_t at, std::size_t number) {
    page[at] = static_cast<std::uint8_t>(number);
    page[at + 1] = static_cast<std::uint8_t>(number >> 8);
}

void PutU32(CdxPageBytes& page, std::size_t at, std::uint32_t number) {
    PutU16(page, at, number & 0xFFFF);
    PutU16(page, at + 2, number >> 16);
}

void PutU32Big(CdxPageBytes& page, std::size_t at, std::uint32_t number) {
    for (std::size_t k = 0; k < 4; ++k) page[at + k] = static_cast<std::uint8_t>(number >> (24 - 8 * k));
}

/// Bits of the duplicate count and of the trail count.
unsigned CountBits(std::size_t keyLength) {
    return static_cast<unsigned>(std::bit_width(keyLength));
}

/// Bits that a leaf's entries of so many bytes leave for the record number.
unsigned RecordBits(unsigned entryBytes, std::size_t keyLength) {
    const unsigned taken = 2 * CountBits(keyLength);
    return 8 * entryBytes <= taken ? 0 : std::min(8 * entryBytes - taken, 32U);
}

unsigned EntryBytesFor(std::uint32_t record, std::size_t keyLength) {
    unsigned bytes = 1;
    while (RecordBits(bytes, keyLength) < std::max(1U, static_cast<unsigned>(std::bit_width(record)))) ++bytes;
    return bytes;
}

std::uint32_t Mask(unsigned bits) {
    return bits >= 32 ? 0xFFFFFFFF : (std::uint32_t{1} << bits) - 1;
}

std::size_t TrailOf(KeyBytes key, std::uint8_t pad) {
    std::size_t trail = 0;
    while (trail < key.size() && key[key.size() - 1 - trail] == pad) ++trail;
    return trail;
}

/// Bytes that key shares with the key before it, without its pad bytes.
std::size_t DuplicateOf(KeyBytes before, KeyBytes key, std::size_t trail) {
    const std::size_t most = key.size() - trail;
    return static_cast<std::size_t>(
        std::mismatch(key.begin(), key.begin() + static_cast<std::ptrdiff_t>(most), before.begin()).first -
        key.begin());
}

std::size_t StoredBytesOf(KeyBytes before, KeyBytes key, std::uint8_t pad) {
    const std::size_t trail = TrailOf(key, pad);
    return key.size() - trail - (before.empty() ? 0 : DuplicateOf(before, key, trail));
}

[[noreturn]] void Broken(const std::string& what) {
    throw Error(ErrorKind::Corrupt, "", "The index is damaged: " + what + ".");
}

}  // namespace

int CompareEntries(KeyBytes keyA, std::uint32_t recordA, KeyBytes keyB, std::uint32_t recordB) {
    const int order = std::memcmp(keyA.data(), keyB.data(), std::min(keyA.size(), keyB.size()));
    if (order != 0) return order;
    return recordA < recordB ? -1 : recordA > recordB ? 1 : 0;
}

CdxNode::CdxNode(const ByteView& page, KeyShape keyShape) : shape_(keyShape), leaf_((page.U16(0) & kLeaf) != 0) {
    const unsigned attributes = page.U16(0);
    isRoot = (attributes & kRoot) != 0;
    isBulkBuilt = (attributes & kBulkBuilt) != 0;
    left = page.U32(4);
    right = page.U32(8);
    leaf_ ? ReadLeaf(page, page.U16(2)) : ReadInterior(page, page.U16(2));
}

void CdxNode::ReadLeaf(const ByteView& page, std::size_t count) {
    const unsigned recordBits = page.U8(20), duplicateBits = page.U8(21), trailBits = page.U8(22);
    const unsigned entryBytes = page.U8(23);
    if (entryBytes > 8 || recordBits > 32 || duplicateBits > 8 || trailBits > 8 ||
        recordBits + duplicateBits + trailBits > 8 * entryBytes) {
        Broken("a leaf's entries have impossible widths");
    }
    if (kLeafHead + count * entryBytes > kCdxPageBytes) Broken("a leaf promises more keys than it holds");
    statedFreeBytes_ = page.U16(12);
    keys_.resize(count * shape_.length);
    records_.resize(count);
    std::size_t end = kCdxPageBytes;
    for (std::size_t k = 0; k < count; ++k) {
        std::uint64_t entry = 0;
        for (unsigned b = entryBytes; b-- > 0;) entry = entry << 8 | page.U8(kLeafHead + k * entryBytes + b);
        records_[k] = static_cast<std::uint32_t>(entry) & Mask(recordBits);
        const std::size_t duplicate = (entry >> recordBits) & Mask(duplicateBits);
        const std::size_t trail = (entry >> (recordBits + duplicateBits)) & Mask(trailBits);
        if (duplicate + trail > shape_.length || (k == 0 && duplicate > 0)) Broken("a key has impossible lengths");
        const std::size_t stored = shape_.length - duplicate - trail;
        if (stored > end || end - stored < kLeafHead + count * entryBytes) Broken("a key lies outside its page");
        end -= stored;
        std::uint8_t* key = keys_.data() + k * shape_.length;
        if (duplicate > 0) std::memcpy(key, key - shape_.length, duplicate);
        const auto bytes = page.Part(end, stored);
        std::copy(bytes.begin(), bytes.end(), key + duplicate);
        std::memset(key + duplicate + stored, shape_.pad, trail);
        storedBytes_ += StoredBytes(k);
    }
    const unsigned kept = RecordBits(entryBytes, shape_.length) >= recordBits ? entryBytes : entryBytes + 1;
    entryBytes_ = std::max(1U, kept);
    for (const std::uint32_t record : records_)
        entryBytes_ = std::max(entryBytes_, EntryBytesFor(record, shape_.length));
    if (IsOverfull()) Broken("a leaf is packed in a way that cannot be kept");
}

void CdxNode::ReadInterior(const ByteView& page, std::size_t count) {
    const std::size_t entryBytes = shape_.length + std::size_t{8};
    if (count == 0) Broken("a node above the leaves is empty");
    if (kInteriorHead + count * entryBytes > kCdxPageBytes) Broken("a node promises more keys than it holds");
    for (std::size_t k = 0; k < count; ++k) {
        const std::size_t at = kInteriorHead + k * entryBytes;
        const auto key = page.Part(at, shape_.length);
        keys_.insert(keys_.end(), key.begin(), key.end());
        records_.push_back(page.U32Big(at + shape_.length));
        children_.push_back(page.U32Big(at + shape_.length + 4));
    }
}

std::size_t CdxNode::StoredBytes(std::size_t at) const {
    return StoredBytesOf(at > 0 ? Key(at - 1) : KeyBytes(), Key(at), shape_.pad);
}

std::size_t CdxNode::LeafBytes(std::size_t count, std::size_t storedBytes, unsigned entryBytes) const {
    return kLeafHead + count * entryBytes + storedBytes;
}

std::size_t CdxNode::FreeBytes() const {
    const std::size_t used = LeafBytes(Count(), storedBytes_, entryBytes_);
    return used < kCdxPageBytes ? kCdxPageBytes - used : 0;
}

std::size_t CdxNode::LowerBound(KeyBytes key, std::uint32_t record) const {
    std::size_t low = 0, high = Count();
    while (low < high) {
        const std::size_t middle = (low + high) / 2;
        if (CompareEntries(Key(middle), records_[middle], key, record) < 0) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    return low;
}

bool CdxNode::Insert(std::size_t at, KeyBytes key, std::uint32_t record, CdxPage child) {
    assert(key.size() == shape_.length && at <= Count());
    statedFreeBytes_ = 0;
    if (leaf_) {
        std::size_t stored = storedBytes_ + StoredBytesOf(at > 0 ? Key(at - 1) : KeyBytes(), key, shape_.pad);
        if (at < Count()) stored = stored - StoredBytes(at) + StoredBytesOf(key, Key(at), shape_.pad);
        const unsigned entryBytes = std::max(entryBytes_, EntryBytesFor(record, shape_.length));
        if (LeafBytes(Count() + 1, stored, entryBytes) > kCdxPageBytes) return false;
        storedBytes_ = stored;
        entryBytes_ = entryBytes;
    } else {
        if (IsFull()) return false;
        children_.insert(children_.begin() + static_cast<std::ptrdiff_t>(at), child);
    }
    keys_.insert(keys_.begin() + static_cast<std::ptrdiff_t>(at * shape_.length), key.begin(), key.end());
    records_.insert(records_.begin() + static_cast<std::ptrdiff_t>(at), record);
    return true;
}

void CdxNode::Remove(std::size_t at) {
    statedFreeBytes_ = 0;
    if (leaf_) {
        storedBytes_ -= StoredBytes(at);
        if (at + 1 < Count()) {
            storedBytes_ -= StoredBytes(at + 1);
            storedBytes_ += StoredBytesOf(at > 0 ? Key(at - 1) : KeyBytes(), Key(at + 1), shape_.pad);
        }
    } else {
        children_.erase(children_.begin() + static_cast<std::ptrdiff_t>(at));
    }
    const auto key = keys_.begin() + static_cast<std::ptrdiff_t>(at * shape_.length);
    keys_.erase(key, key + shape_.length);
    records_.erase(records_.begin() + static_cast<std::ptrdiff_t>(at));
}

void CdxNode::SetLast(std::size_t at, KeyBytes key, std::uint32_t record) {
    assert(!leaf_);
    std::copy(key.begin(), key.end(), keys_.begin() + static_cast<std::ptrdiff_t>(at * shape_.length));
    records_[at] = record;
}

bool CdxNode::IsFull() const {
    return !leaf_ && kInteriorHead + (Count() + 1) * (shape_.length + std::size_t{8}) > kCdxPageBytes;
}

void CdxNode::MoveTail(std::size_t at, CdxNode& other) {
    for (bool fits = false; !fits; at += fits ? 0 : 1) {
        CdxNode tail(shape_, leaf_);
        fits = true;
        for (std::size_t k = at; fits && k < Count(); ++k) {
            fits = tail.Insert(k - at, Key(k), records_[k], leaf_ ? kNoCdxPage : children_[k]);
        }
        if (!fits) continue;
        other.keys_ = std::move(tail.keys_);
        other.records_ = std::move(tail.records_);
        other.children_ = std::move(tail.children_);
        other.storedBytes_ = tail.storedBytes_;
        other.entryBytes_ = tail.entryBytes_;
    }
    for (std::size_t k = at; leaf_ && k < Count(); ++k) storedBytes_ -= StoredBytes(k);
    keys_.resize(at * shape_.length);
    records_.resize(at);
    if (!leaf_) children_.resize(at);
}

void CdxNode::BecomeEmptyLeaf() {
    leaf_ = true;
    keys_.clear();
    records_.clear();
    children_.clear();
    storedBytes_ = 0;
    entryBytes_ = 1;
}

void CdxNode::ExpectRecords(std::uint32_t greatest) {
    entryBytes_ = std::max(entryBytes_, EntryBytesFor(greatest, shape_.length));
}

void CdxNode::Encode(CdxPageBytes& page) const {
    assert(!IsOverfull());
    page.fill(0);
    PutU16(page, 0, (isRoot ? kRoot : 0) | (leaf_ ? kLeaf : 0) | (isBulkBuilt ? kBulkBuilt : 0));
    PutU16(page, 2, Count());
    PutU32(page, 4, left);
    PutU32(page, 8, right);
    leaf_ ? EncodeLeaf(page) : EncodeInterior(page);
}

void CdxNode::EncodeLeaf(CdxPageBytes& page) const {
    const unsigned countBits = CountBits(shape_.length), recordBits = RecordBits(entryBytes_, shape_.length);
    PutU16(page, 12, FreeBytes());
    PutU32(page, 14, Mask(recordBits));
    page[18] = page[19] = static_cast<std::uint8_t>(Mask(countBits));
    page[20] = static_cast<std::uint8_t>(recordBits);
    page[21] = page[22] = static_cast<std::uint8_t>(countBits);
    page[23] = static_cast<std::uint8_t>(entryBytes_);
    std::size_t end = kCdxPageBytes;
    for (std::size_t k = 0; k < Count(); ++k) {
        const KeyBytes key = Key(k);
        const std::size_t trail = TrailOf(key, shape_.pad);
        const std::size_t duplicate = k > 0 ? DuplicateOf(Key(k - 1), key, trail) : 0;
        std::uint64_t entry =
            records_[k] | std::uint64_t{duplicate} << recordBits | std::uint64_t{trail} << (recordBits + countBits);
        for (unsigned b = 0; b < entryBytes_; ++b, entry >>= 8) {
            page[kLeafHead + k * entryBytes_ + b] = static_cast<std::uint8_t>(entry);
        }
        const std::size_t stored = key.size() - trail - duplicate;
        end -= stored;
        std::copy_n(key.begin() + static_cast<std::ptrdiff_t>(duplicate), stored,
                    page.begin() + static_cast<std::ptrdiff_t>(end));
    }
}

void CdxNode::EncodeInterior(CdxPageBytes& page) const {
    std::size_t at = kInteriorHead;
    for (std::size_t k = 0; k < Count(); ++k, at += shape_.length + std::size_t{8}) {
        const KeyBytes key = Key(k);
        std::copy(key.begin(), key.end(), page.begin() + static_cast<std::ptrdiff_t>(at));
        PutU32Big(page, at + shape_.length, records_[k]);
        PutU32Big(page, at + shape_.length + 4, children_[k]);
    }
}

}  // namespace varnel::foxpro
