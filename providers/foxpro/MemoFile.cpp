#include "providers/foxpro/MemoFile.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/Error.h"
#include "providers/foxpro/StoredNumbers.h"

namespace varnel::foxpro {
namespace {

constexpr std::size_t kHeadBytes = 512, kBlockHead = 8;
constexpr std::uint32_t kNewBlockBytes = 64, kTextType = 1, kObjectType = 2;
constexpr std::size_t kBufferBytes = 256 * 1024;

std::uint32_t BlocksFor(std::uint64_t bytes, std::uint32_t blockBytes) {
    return static_cast<std::uint32_t>((bytes + blockBytes - 1) / blockBytes);
}

}  // namespace

MemoFile::MemoFile(JournaledFiles& files, JournaledFiles::Number file, MemoKind kind, std::string name)
    : files_(files), file_(file), kind_(kind), name_(std::move(name)) {}

void MemoFile::Reset() {
    buffer_.clear();
    bufferBlock_ = 0;
    reader_ = OpenMemoReader(*this, kind_);
    if (kind_ != MemoKind::Fpt) return;
    std::array<std::uint8_t, 8> head{};
    files_.Read(file_, 0, head);
    blockBytes_ = static_cast<std::uint32_t>(BigNumber(std::span(head).subspan(6, 2), 2));
    if (blockBytes_ == 0) blockBytes_ = kHeadBytes;
    storedNext_ = static_cast<std::uint32_t>(BigNumber(head, 4));
    // A head that lags behind the file must not make a new memo lie upon an old one.
    const std::uint64_t used = std::max<std::uint64_t>(files_.Size(file_), kHeadBytes);
    nextBlock_ = std::max(BlocksFor(std::min(used, kMaxFileBytes), blockBytes_),
                          std::min(storedNext_, BlocksFor(kMaxFileBytes, blockBytes_)));
    bufferBlock_ = nextBlock_;
}

std::uint64_t MemoFile::Size() const {
    return buffer_.empty() ? files_.Size(file_) : BufferStart() + buffer_.size();
}

std::size_t MemoFile::Read(std::uint64_t offset, std::span<std::uint8_t> into) const {
    if (buffer_.empty()) return files_.Read(file_, offset, into);
    const std::uint64_t start = BufferStart();
    if (offset < start) {
        return files_.Read(file_, offset,
                           into.first(static_cast<std::size_t>(std::min<std::uint64_t>(into.size(), start - offset))));
    }
    if (offset - start >= buffer_.size()) return 0;
    const std::size_t at = static_cast<std::size_t>(offset - start);
    const std::size_t count = std::min(into.size(), buffer_.size() - at);
    std::copy_n(buffer_.begin() + static_cast<std::ptrdiff_t>(at), count, into.begin());
    return count;
}

std::uint32_t MemoFile::Append(std::string_view bytes, bool isText) {
    if (bytes.empty()) return 0;
    const std::uint32_t block = nextBlock_, blocks = BlocksFor(bytes.size() + kBlockHead, blockBytes_);
    if (bytes.size() > kMaxFileBytes || (std::uint64_t{block} + blocks) * blockBytes_ > kMaxFileBytes) {
        throw Error(ErrorKind::Constraint, name_, "'" + name_ + "' cannot grow beyond 2 GB");
    }
    const std::size_t at = buffer_.size();
    buffer_.resize(at + std::size_t{blocks} * blockBytes_);
    const std::span<std::uint8_t> place = std::span(buffer_).subspan(at);
    PutBig(place.first(4), isText ? kTextType : kObjectType);
    PutBig(place.subspan(4, 4), bytes.size());
    std::copy(bytes.begin(), bytes.end(), place.begin() + kBlockHead);
    nextBlock_ += blocks;
    return block;
}

void MemoFile::ReturnTo(std::uint32_t nextBlock) {
    buffer_.resize(std::size_t{nextBlock - bufferBlock_} * blockBytes_);
    nextBlock_ = nextBlock;
}

bool MemoFile::IsFull() const {
    return buffer_.size() >= kBufferBytes;
}

void MemoFile::Protect() {
    files_.Protect(file_, 0, kBlockHead);
}

void MemoFile::Flush() {
    if (!buffer_.empty()) files_.Write(file_, BufferStart(), buffer_);
    buffer_.clear();
    if (buffer_.capacity() > 2 * kBufferBytes) buffer_.shrink_to_fit();
    bufferBlock_ = nextBlock_;
    if (storedNext_ == nextBlock_) return;
    std::array<std::uint8_t, 4> next{};
    PutBig(next, nextBlock_);
    files_.Write(file_, 0, next);
    storedNext_ = nextBlock_;
}

void MemoFile::DeleteAll() {
    if (kind_ != MemoKind::Fpt) return;
    files_.Truncate(file_, kHeadBytes);
    std::array<std::uint8_t, 4> next{};
    PutBig(next, BlocksFor(kHeadBytes, blockBytes_));
    files_.Write(file_, 0, next);
    Reset();
}

std::vector<std::uint8_t> EmptyMemoFile() {
    std::vector<std::uint8_t> bytes(kHeadBytes);
    PutBig(std::span(bytes).first(4), BlocksFor(kHeadBytes, kNewBlockBytes));
    PutBig(std::span(bytes).subspan(6, 2), kNewBlockBytes);
    return bytes;
}

}  // namespace varnel::foxpro
