#include "providers/foxpro/CdxFile.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/Error.h"
#include "providers/foxpro/CdxTree.h"

namespace varnel::foxpro {
namespace {

constexpr std::size_t kRootAt = 0, kCounterAt = 8, kPoolAt = 512;
constexpr std::size_t kMostTags = 1024;
/// Of nodes kept between changes.
constexpr std::size_t kMostKeptBytes = std::size_t{8} << 20;
constexpr std::size_t kPagesAtOnce = 64;
constexpr std::uint32_t kMostPages = 0x7FFF'FFFF / kCdxPageBytes;

std::array<std::uint8_t, 4> Little(std::uint32_t number) {
    return {static_cast<std::uint8_t>(number), static_cast<std::uint8_t>(number >> 8),
            static_cast<std::uint8_t>(number >> 16), static_cast<std::uint8_t>(number >> 24)};
}

std::array<std::uint8_t, 4> Big(std::uint32_t number) {
    const auto low = Little(number);
    return {low[3], low[2], low[1], low[0]};
}

/// The text in the length bytes at offset at of a head, up to a zero.
std::string HeadText(const ByteView& head, std::size_t at, std::size_t length) {
    const auto bytes = head.Part(at, length);
    const auto end = std::find(bytes.begin(), bytes.end(), 0);
    return {bytes.begin(), end};
}

std::string WithoutBlanks(KeyBytes name) {
    std::string text(name.begin(), name.end());
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

}  // namespace

CdxFile::CdxFile(JournaledFiles& files, JournaledFiles::Number number, std::string name)
    : files_(files), number_(number), name_(std::move(name)) {
    Forget();
}

void CdxFile::Forget() {
    kept_.clear();
    lookAgainAt_ = 0;
    released_.clear();
    tags_.clear();
    changed_ = false;
    pages_ = static_cast<std::uint32_t>(std::min<std::uint64_t>(files_.Size(number_) / kCdxPageBytes, kMostPages));
    ReadTags();
}

ByteView CdxFile::ReadPart(CdxPage at, std::span<std::uint8_t> into) const {
    const std::size_t count = files_.Read(number_, at, into);
    return {into.first(count), name_ + ", byte " + std::to_string(at)};
}

void CdxFile::ReadTags() {
    std::array<std::uint8_t, kCdxHeadBytes> bytes;
    const ByteView head = ReadPart(0, bytes);
    updateCounter_ = head.U32Big(kCounterAt);
    if (head.U16(12) != kDirectoryShape.length || (head.U8(14) & kTagDirectory) == 0) {
        throw Error(ErrorKind::Corrupt, name_, "'" + name_ + "' is no compound index: it has no directory of tags.");
    }
    CdxWalk directory(*this, head.U32(kRootAt), kDirectoryShape);
    while (directory.Next()) {
        if (tags_.size() == kMostTags) throw Error(ErrorKind::Corrupt, name_, "'" + name_ + "' has too many tags.");
        tags_.push_back(ReadTag(directory.Record(), WithoutBlanks(directory.Key())));
    }
}

CdxTag CdxFile::ReadTag(CdxPage head, std::string tagName) const {
    std::array<std::uint8_t, kCdxHeadBytes> bytes;
    const ByteView view = ReadPart(head, bytes);
    CdxTag tag;
    tag.name = std::move(tagName);
    tag.head = head;
    tag.root = view.U32(kRootAt);
    tag.keyLength = view.U16(12);
    tag.options = view.U8(14);
    tag.signature = view.U8(15);
    tag.collation = HeadText(view, 494, 8);
    tag.descending = view.U16(502) != 0;
    tag.filterText = HeadText(view, std::size_t{kPoolAt} + view.U16(504), view.U16(506));
    tag.keyText = HeadText(view, std::size_t{kPoolAt} + view.U16(508), view.U16(510));
    if (tag.keyLength == 0 || tag.keyLength > kLongestKey + 1) {
        throw Error(ErrorKind::Corrupt, name_,
                    "Tag " + tag.name + " of '" + name_ + "' has keys of " + std::to_string(tag.keyLength) + " bytes.");
    }
    return tag;
}

CdxNode CdxFile::Read(CdxPage page, KeyShape shape) const {
    if (page % kCdxPageBytes != 0 || page < kCdxPageBytes || page / kCdxPageBytes >= pages_) {
        throw Error(ErrorKind::Corrupt, name_,
                    "'" + name_ + "' is damaged: it has no page at byte " + std::to_string(page) + ".");
    }
    const auto found = kept_.find(page);
    if (found != kept_.end() && found->second.node.Shape() == shape) return found->second.node;
    CdxPageBytes bytes;
    return {ReadPart(page, bytes), shape};
}

CdxFile::Kept& CdxFile::Keep(CdxPage page, KeyShape shape) {
    const auto found = kept_.find(page);
    if (found == kept_.end()) return kept_.emplace(page, Kept{Read(page, shape), false}).first->second;
    if (found->second.node.Shape() != shape) {
        throw Error(ErrorKind::Corrupt, name_, "'" + name_ + "' is damaged: two tags share a page.");
    }
    return found->second;
}

CdxNode& CdxFile::Load(CdxPage page, KeyShape shape) {
    return Keep(page, shape).node;
}

CdxNode& CdxFile::Change(CdxPage page, KeyShape shape) {
    Kept& kept = Keep(page, shape);
    kept.changed = changed_ = true;
    return kept.node;
}

void CdxFile::RequireRoom(std::uint32_t pages) const {
    if (pages <= kMostPages - pages_) return;
    throw Error(ErrorKind::Constraint, name_, "'" + name_ + "' would pass 2 GB.");
}

CdxPage CdxFile::Append(KeyShape shape, bool isLeaf) {
    CdxPage page = 0;
    if (!released_.empty()) {
        page = released_.back();
        released_.pop_back();
    } else {
        page = pages_++ * static_cast<std::uint32_t>(kCdxPageBytes);
    }
    kept_.insert_or_assign(page, Kept{CdxNode(shape, isLeaf), true});
    changed_ = true;
    return page;
}

void CdxFile::Release(CdxPage page) {
    kept_.erase(page);
    released_.push_back(page);
}

void CdxFile::SetRoot(std::size_t tag, CdxPage root) {
    tags_[tag].root = root;
    changed_ = true;
}

void CdxFile::Flush() {
    if (!changed_) return;
    files_.Protect(number_, 0, kCdxHeadBytes);
    for (const CdxTag& tag : tags_) files_.Protect(number_, tag.head, 4);
    std::vector<CdxPage> changed;
    for (const auto& [page, kept] : kept_) {
        if (kept.changed) changed.push_back(page);
    }
    std::sort(changed.begin(), changed.end());
    for (const CdxPage page : changed) files_.Protect(number_, page, kCdxPageBytes);
    WriteNodes(changed);
    WriteHeads();
    for (const CdxPage page : changed) kept_.at(page).changed = false;
    changed_ = false;
}

/// pages: ascending; those that follow one another are written together.
void CdxFile::WriteNodes(const std::vector<CdxPage>& pages) {
    std::vector<std::uint8_t> bytes;
    CdxPageBytes page;
    for (std::size_t k = 0; k < pages.size(); ++k) {
        kept_.at(pages[k]).node.Encode(page);
        bytes.insert(bytes.end(), page.begin(), page.end());
        const bool goesOn = k + 1 < pages.size() && pages[k + 1] == pages[k] + kCdxPageBytes;
        if (goesOn && bytes.size() < kPagesAtOnce * kCdxPageBytes) continue;
        files_.Write(number_, pages[k] + kCdxPageBytes - bytes.size(), bytes);
        bytes.clear();
    }
}

void CdxFile::WriteHeads() {
    for (const CdxTag& tag : tags_) files_.Write(number_, tag.head + kRootAt, Little(tag.root));
    files_.Write(number_, kCounterAt, Big(updateCounter_ + 1));
    ++updateCounter_;
}

std::size_t CdxFile::KeptBytes() const {
    std::size_t bytes = 0;
    for (const auto& [page, kept] : kept_) bytes += kept.node.MemoryBytes();
    return bytes;
}

void CdxFile::Trim() {
    if (kept_.size() <= lookAgainAt_) return;
    if (KeptBytes() > kMostKeptBytes) {
        Flush();
        kept_.clear();
    }
    lookAgainAt_ = kept_.size() + 100;
}

std::vector<std::uint8_t> EncodeCdxHead(const CdxTag& tag, std::uint32_t updateCounter) {
    std::vector<std::uint8_t> head(kCdxHeadBytes);
    const auto put = [&](std::size_t at, std::size_t number) {
        head[at] = static_cast<std::uint8_t>(number);
        head[at + 1] = static_cast<std::uint8_t>(number >> 8);
    };
    const auto putText = [&](std::size_t at, const std::string& text) {
        std::copy(text.begin(), text.end(), head.begin() + static_cast<std::ptrdiff_t>(at));
    };
    const auto root = Little(tag.root);
    std::copy(root.begin(), root.end(), head.begin());
    const auto counter = Big(updateCounter);
    std::copy(counter.begin(), counter.end(), head.begin() + kCounterAt);
    put(12, tag.keyLength);
    head[14] = tag.options;
    head[15] = tag.signature;
    putText(494, tag.collation);
    put(502, tag.descending ? 1 : 0);
    put(504, tag.keyText.size() + 1);
    put(506, tag.filterText.size() + 1);
    put(508, 0);
    put(510, tag.keyText.size() + 1);
    putText(kPoolAt, tag.keyText);
    putText(kPoolAt + tag.keyText.size() + 1, tag.filterText);
    return head;
}

}  // namespace varnel::foxpro
