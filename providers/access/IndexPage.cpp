#include "providers/access/IndexPage.h"

#include <algorithm>
#include <bit>

#include "platform/Error.h"
#include "providers/access/IndexKey.h"

namespace varnel::access {
namespace {

constexpr std::size_t kFreeAt = 2, kOwnerAt = 4;

unsigned U16At(std::span<const std::uint8_t> bytes, std::size_t at) {
    return bytes[at] | unsigned{bytes[at + 1]} << 8;
}

}  // namespace

IndexShape IndexShapeOf(const Layout& layout) {
    const bool old = layout.version == Version::Jet3;
    IndexShape shape{};
    shape.pageSize = layout.pageSize;
    shape.previousAt = old ? 8 : 12;
    shape.nextAt = shape.previousAt + 4;
    shape.tailAt = shape.nextAt + 4;
    shape.prefixAt = shape.tailAt + 4;
    shape.prefixBytes = old ? 1 : 2;
    shape.levelAt = layout.indexMaskAt - 1;
    shape.maskAt = layout.indexMaskAt;
    shape.entriesAt = layout.indexEntriesAt;
    return shape;
}

IndexPage::IndexPage(std::span<const std::uint8_t> bytes, const IndexShape& shape, const IndexPlace& place)
    : bytes_(bytes), shape_(&shape), place_(place) {
    if (bytes.size() < shape.pageSize) ThrowDamaged("it is too short");
    if ((bytes[0] != kNodeType && bytes[0] != kLeafType) || U32(kOwnerAt) != place.owner) {
        ThrowDamaged("it belongs to something else");
    }
    const std::size_t free = U16At(bytes, kFreeAt);
    if (free > shape.Area()) ThrowDamaged("its free space is impossible");
    used_ = shape.Area() - free;
    prefix_ = shape.prefixBytes == 1 ? bytes[shape.prefixAt] : U16At(bytes, shape.prefixAt);
    if (used_ > 0 && !IsBoundary(used_)) ThrowDamaged("its last entry does not end where its free space begins");
    if (prefix_ > 0 && (used_ == 0 || prefix_ >= EndOf(0))) ThrowDamaged("its prefix is as long as its first entry");
    if (IsLeaf() != (Level() == 0)) ThrowDamaged("its level contradicts its type");
}

std::uint32_t IndexPage::U32(std::size_t at) const {
    return U16At(bytes_, at) | U16At(bytes_, at + 2) << 16;
}

std::string_view IndexPage::Bytes(std::size_t start, std::size_t end) const {
    if (start > end || end > used_) ThrowDamaged("an entry lies outside");
    return {reinterpret_cast<const char*>(bytes_.data()) + shape_->entriesAt + start, end - start};
}

bool IndexPage::IsBoundary(std::size_t offset) const {
    return (bytes_[shape_->maskAt + offset / 8] >> (offset % 8) & 1) != 0;
}

std::size_t IndexPage::EndOf(std::size_t start) const {
    if (start >= used_) ThrowDamaged("an entry is missing");
    std::size_t at = (start + 1) / 8;
    unsigned byte = bytes_[shape_->maskAt + at] >> ((start + 1) % 8) << ((start + 1) % 8);
    while (byte == 0) byte = bytes_[shape_->maskAt + ++at];  // the bit at used_ stops this
    return at * 8 + static_cast<std::size_t>(std::countr_zero(byte));
}

std::size_t IndexPage::StartOf(std::size_t end) const {
    for (std::size_t at = end; at-- > 1;) {
        if (IsBoundary(at)) return at;
    }
    return 0;
}

void IndexPage::Get(std::string& entry, std::size_t start) const {
    const std::size_t end = EndOf(start);
    entry.clear();
    if (start > 0) entry.append(Bytes(0, prefix_));
    entry.append(Bytes(start, end));
    const std::size_t shortest = 1 + kRowIdLength + (IsLeaf() ? 0 : kChildLength);
    if (entry.size() < shortest) ThrowDamaged("an entry has an impossible length");
}

PageNumber IndexPage::ChildAt(std::size_t start) const {
    if (start >= used_) return Tail();
    const std::size_t end = EndOf(start);
    if (end - start < kChildLength) ThrowDamaged("an entry has an impossible length");
    PageNumber child = 0;
    for (const char c : Bytes(end - kChildLength, end)) child = child << 8 | static_cast<unsigned char>(c);
    return child;
}

int IndexPage::CompareFrom(std::string_view wantedRest, std::size_t start, std::size_t end) const {
    if (start == 0) start = prefix_;
    const std::size_t tail = IsLeaf() ? 0 : kChildLength;
    if (end - start < tail) ThrowDamaged("an entry has an impossible length");
    return wantedRest.compare(Bytes(start, end - tail));
}

std::size_t IndexPage::LowerBound(std::string_view wanted) const {
    const int prefixOrder = wanted.substr(0, prefix_).compare(Bytes(0, prefix_));
    if (prefixOrder != 0) return prefixOrder < 0 ? 0 : used_;
    const std::string_view rest = wanted.substr(prefix_);
    std::size_t low = 0, high = used_;
    while (low < high) {  // entries that end at or before low are below wanted, those from high on are not
        const std::size_t middle = low + (high - low) / 2;
        std::size_t start = IsBoundary(middle) && middle > low ? middle : StartOf(std::max(middle, low));
        start = std::max(start, low);
        const std::size_t end = EndOf(start);
        if (CompareFrom(rest, start, end) > 0) {
            low = end;
        } else {
            high = start;
        }
    }
    return low;
}

void IndexPage::ThrowDamaged(const std::string& what) const {
    throw Error(
        ErrorKind::Corrupt, *place_.storedPath,
        "Index page " + std::to_string(place_.page) + " of '" + *place_.storedPath + "' is damaged: " + what + ".");
}

}  // namespace varnel::access
