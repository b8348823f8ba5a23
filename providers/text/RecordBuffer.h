// The window through which the record readers see a text: the record at hand, and what was read behind it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/ByteScan.h"
#include "providers/text/Utf8Stream.h"

namespace varnel::text {

/// Large enough to keep the system calls few, small enough to stay in the cache.
inline constexpr std::size_t kBufferBytes = 256 * 1024;

/// Pointers into the window stay good until Refill. A Ctrl-Z that ends the text is left out.
class RecordBuffer {
public:
    /// capacity: bytes to begin with; the window grows only for a record that is longer.
    RecordBuffer(Utf8Stream stream, std::size_t capacity);

    /// The first byte of the record at hand, and the end of what was read. kScanBlock bytes behind the end may be read.
    const char* Start() const { return bytes_.get() + start_; }
    const char* End() const { return bytes_.get() + end_; }
    /// True when the text ends at End().
    bool AtEnd() const { return atEnd_; }
    /// True when Refill would have to grow the window.
    bool IsFull() const { return end_ - start_ + kLeastRoom > capacity_; }

    /// The record at hand begins here now; place lies between Start() and End().
    void StartAt(const char* place) { start_ = static_cast<std::size_t>(place - bytes_.get()); }
    /// Reads on behind the record at hand, which moves to the front of the window, until the window is full: a long
    /// record is then looked at anew only when the window has doubled.
    void Refill();

    /// Bytes of the text before place.
    std::uint64_t OffsetOf(const char* place) const {
        return offset_ + static_cast<std::uint64_t>(place - bytes_.get());
    }
    const Utf8Stream& Stream() const { return stream_; }

private:
    void MakeRoom();

    Utf8Stream stream_;
    std::size_t capacity_;
    std::unique_ptr<char[]> bytes_;
    std::size_t start_ = 0, end_ = 0;
    std::uint64_t offset_ = 0;  // of bytes_[0] in the text
    bool atEnd_ = false;
};

/// Whether a qualifier that closes a field follows: one that is not doubled. rest: what is left of the window, whose
/// first bytes may be half of a doubled qualifier's pair. stream: the text behind the window, which stays untouched.
bool QualifierCloses(std::string_view rest, Utf8Stream stream, std::string_view qualifier);

}  // namespace varnel::text
