#include "providers/text/RecordBuffer.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

namespace varnel::text {
namespace {

constexpr char kCtrlZ = '\x1A';
constexpr std::size_t kSearchBlock = 16 * 1024;

std::unique_ptr<char[]> NewWindow(std::size_t capacity) {
    auto bytes = std::make_unique_for_overwrite<char[]>(capacity + kScanBlock);
    std::memset(bytes.get() + capacity, 0, kScanBlock);
    return bytes;
}

}  // namespace

RecordBuffer::RecordBuffer(Utf8Stream stream, std::size_t capacity)
    : stream_(std::move(stream)), capacity_(std::max(capacity, kLeastRoom)), bytes_(NewWindow(capacity_)) {
    std::memset(bytes_.get(), 0, kScanBlock);
}

void RecordBuffer::Refill() {
    if (atEnd_) return;
    MakeRoom();
    while (!atEnd_ && capacity_ - end_ >= kLeastRoom) {
        const std::size_t count = stream_.Read({bytes_.get() + end_, capacity_ - end_});
        end_ += count;
        atEnd_ = count == 0;
    }
    if (atEnd_ && end_ > start_ && bytes_[end_ - 1] == kCtrlZ) --end_;
    std::memset(bytes_.get() + end_, 0, kScanBlock);
}

/// Moves the record at hand to the front, into a larger window when it fills this one.
void RecordBuffer::MakeRoom() {
    const std::size_t held = end_ - start_;
    if (IsFull()) {
        auto larger = NewWindow(capacity_ * 2);
        std::memcpy(larger.get(), bytes_.get() + start_, held);
        bytes_ = std::move(larger);
        capacity_ *= 2;
    } else if (start_ > 0) {
        std::memmove(bytes_.get(), bytes_.get() + start_, held);
    }
    offset_ += start_;
    start_ = 0;
    end_ = held;
}

bool QualifierCloses(std::string_view rest, Utf8Stream stream, std::string_view qualifier) {
    std::string window(rest);
    std::string block(kSearchBlock, '\0');
    for (bool atEnd = false;;) {
        std::size_t at = 0;
        for (;;) {
            const std::size_t found = window.find(qualifier, at);
            if (found == std::string::npos) {
                at = std::max(at, window.size() - std::min(window.size(), qualifier.size() - 1));
                break;
            }
            at = found;
            const std::size_t next = found + qualifier.size();
            if (window.size() - next < qualifier.size() && !atEnd) break;
            if (window.compare(next, qualifier.size(), qualifier) != 0) return true;
            at = next + qualifier.size();
        }
        if (atEnd) return false;
        window.erase(0, at);
        const std::size_t count = stream.Read(block);
        window.append(block, 0, count);
        atEnd = count == 0;
    }
}

}  // namespace varnel::text
