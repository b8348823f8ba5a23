#include "providers/access/IndexImage.h"

#include <algorithm>
#include <cstring>

#include "providers/access/Layout.h"
#include "providers/access/StoreBytes.h"

namespace varnel::access {

IndexImage::IndexImage(const IndexPage& page)
    : leaf(page.IsLeaf()),
      level(static_cast<std::uint8_t>(page.Level())),
      previous(page.Previous()),
      next(page.Next()),
      tail(leaf ? 0 : page.Tail()) {
    for (std::size_t start = 0; start < page.Used(); start = page.EndOf(start)) {
        page.Get(entries.emplace_back(), start);
    }
}

PageNumber IndexImage::Child(std::size_t k) const {
    if (k == entries.size()) return tail;
    const std::string& entry = entries[k];
    PageNumber child = 0;
    for (std::size_t at = entry.size() - kChildLength; at < entry.size(); ++at) {
        child = child << 8 | static_cast<unsigned char>(entry[at]);
    }
    return child;
}

void IndexImage::SetChild(std::size_t k, PageNumber child) {
    if (k == entries.size()) {
        tail = child;
    } else {
        entries[k] = NodeEntry(WithoutChild(entries[k]), child);
    }
}

std::size_t IndexImage::FindChild(PageNumber child) const {
    std::size_t k = 0;
    while (k <= entries.size() && Child(k) != child) ++k;
    return k;
}

std::size_t IndexImage::Size(std::size_t prefix) const {
    std::size_t size = 0;
    for (const std::string& entry : entries) size += entry.size() - prefix;
    return entries.empty() ? 0 : size + prefix;
}

std::size_t IndexImage::CommonPrefix() const {
    if (!leaf || entries.size() < 2) return 0;
    const std::string &first = entries.front(), &last = entries.back();
    const auto differing = std::mismatch(first.begin(), first.end(), last.begin(), last.end()).first;
    // Every entry keeps a byte of its own.
    return std::min(static_cast<std::size_t>(differing - first.begin()), std::min(first.size(), last.size()) - 1);
}

std::size_t IndexImage::Middle() const {
    const std::size_t prefix = CommonPrefix(), half = Size(prefix) / 2;
    std::size_t k = 0, size = prefix;
    while (k < entries.size() && size < half) size += entries[k++].size() - prefix;
    return std::clamp<std::size_t>(k, 1, entries.size() - 1);
}

void IndexImage::Write(std::span<std::uint8_t> bytes, const IndexShape& shape, PageNumber owner) const {
    const std::size_t prefix = Size(0) <= shape.Area() ? 0 : CommonPrefix();
    const std::size_t size = Size(prefix), free = shape.Area() - size;
    std::fill(bytes.begin(), bytes.end(), std::uint8_t{0});
    bytes[0] = leaf ? IndexPage::kLeafType : IndexPage::kNodeType;
    bytes[1] = 1;
    StoreU16(bytes, 2, free);
    StoreU32(bytes, 4, owner);
    StoreU32(bytes, shape.previousAt, previous);
    StoreU32(bytes, shape.nextAt, next);
    StoreU32(bytes, shape.tailAt, tail);
    bytes[shape.prefixAt] = static_cast<std::uint8_t>(prefix & 0xFF);
    if (shape.prefixBytes > 1) bytes[shape.prefixAt + 1] = static_cast<std::uint8_t>(prefix >> 8);
    bytes[shape.levelAt] = level;
    std::size_t at = 0;
    for (const std::string& entry : entries) {
        const std::size_t left = at == 0 ? 0 : prefix;
        std::memcpy(bytes.data() + shape.entriesAt + at, entry.data() + left, entry.size() - left);
        at += entry.size() - left;
        bytes[shape.maskAt + at / 8] |= static_cast<std::uint8_t>(1U << (at % 8));
    }
}

void WriteLoneLeaf(std::span<std::uint8_t> page, PageNumber owner, std::vector<std::string> entries) {
    IndexImage image;
    image.entries = std::move(entries);
    image.Write(page, IndexShapeOf(kJet4Layout), owner);
}

std::string NodeEntry(std::string_view keyAndRow, PageNumber child) {
    std::string entry(keyAndRow);
    for (const unsigned shift : {24U, 16U, 8U, 0U}) entry.push_back(static_cast<char>(child >> shift & 0xFF));
    return entry;
}

}  // namespace varnel::access
