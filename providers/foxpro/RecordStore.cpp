#include "providers/foxpro/RecordStore.h"

#include <algorithm>
#include <cassert>

#include "platform/Error.h"

namespace varnel::foxpro {
namespace {

constexpr std::size_t kTailBytes = 256 * 1024;
constexpr std::size_t kChangedBytes = 1024 * 1024;
constexpr std::size_t kNodeBytes = 96;  // what a changed record costs beside its bytes, about

}  // namespace

void RecordStore::Reset(std::uint32_t headerBytes, std::uint32_t recordBytes, RecordNumber records) {
    headerBytes_ = headerBytes;
    recordBytes_ = recordBytes;
    inFile_ = records;
    tail_.clear();
    changed_.clear();
}

void RecordStore::Read(RecordNumber first, std::size_t count, std::span<std::uint8_t> into) const {
    assert(first >= 1 && into.size() >= count * recordBytes_);
    const std::size_t stored =
        first > inFile_ ? 0 : static_cast<std::size_t>(std::min<RecordNumber>(count, inFile_ - first + 1));
    const std::size_t waiting = count - stored;
    const std::uint64_t tailAt = (first + stored - inFile_ - 1) * recordBytes_;
    if (waiting > 0 && (tailAt > tail_.size() || tail_.size() - tailAt < waiting * recordBytes_)) {
        throw Error(ErrorKind::Corrupt, "", "There is no record " + std::to_string(first + count - 1));
    }
    const std::size_t bytes = static_cast<std::size_t>(stored * recordBytes_);
    if (stored > 0 && files_.Read(0, OffsetOf(first), into.first(bytes)) < bytes) {
        throw Error(ErrorKind::Corrupt, "",
                    "The file ends before record " + std::to_string(first + stored - 1) + " does");
    }
    if (waiting > 0) {
        std::copy_n(tail_.begin() + static_cast<std::ptrdiff_t>(tailAt), waiting * recordBytes_,
                    into.begin() + static_cast<std::ptrdiff_t>(bytes));
    }
    if (!changed_.empty()) Overlay(first, stored, into);
}

void RecordStore::Overlay(RecordNumber first, std::size_t count, std::span<std::uint8_t> into) const {
    for (auto it = changed_.lower_bound(first); it != changed_.end() && it->first < first + count; ++it) {
        const std::size_t at = static_cast<std::size_t>((it->first - first) * recordBytes_);
        std::copy(it->second.begin(), it->second.end(), into.begin() + static_cast<std::ptrdiff_t>(at));
    }
}

void RecordStore::Append(std::span<const std::uint8_t> record) {
    assert(record.size() == recordBytes_);
    tail_.insert(tail_.end(), record.begin(), record.end());
}

void RecordStore::Change(RecordNumber number, std::span<const std::uint8_t> record) {
    assert(record.size() == recordBytes_ && number >= 1 && number <= Records());
    if (number > inFile_) {
        const std::size_t at = static_cast<std::size_t>((number - inFile_ - 1) * recordBytes_);
        std::copy(record.begin(), record.end(), tail_.begin() + static_cast<std::ptrdiff_t>(at));
    } else {
        changed_[number].assign(record.begin(), record.end());
    }
}

bool RecordStore::IsFull() const {
    return tail_.size() >= kTailBytes || changed_.size() * (recordBytes_ + kNodeBytes) >= kChangedBytes;
}

void RecordStore::Flush() {
    if (!changed_.empty()) FlushChanged();
    if (!tail_.empty()) FlushTail();
}

/// All old bytes are announced before the first of them changes: the journal then waits for the disk once.
void RecordStore::FlushChanged() {
    for (const auto& entry : changed_) files_.Protect(0, OffsetOf(entry.first), recordBytes_);
    std::vector<std::uint8_t> run;
    for (auto it = changed_.begin(); it != changed_.end();) {
        const RecordNumber first = it->first;
        run.clear();
        for (; it != changed_.end() && it->first == first + run.size() / recordBytes_ && run.size() < kTailBytes; ++it)
            run.insert(run.end(), it->second.begin(), it->second.end());
        files_.Write(0, OffsetOf(first), run);
    }
    changed_.clear();
}

void RecordStore::FlushTail() {
    files_.Write(0, OffsetOf(inFile_ + 1), tail_);
    inFile_ += tail_.size() / recordBytes_;
    tail_.clear();
}

}  // namespace varnel::foxpro
