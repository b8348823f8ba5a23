// Stored numbers out of parts whose length is already checked, and the way in which the readers of cells say what is
// wrong: a row loop must neither throw nor allocate for a damaged cell.
#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <span>

namespace varnel::access {

using Bytes = std::span<const std::uint8_t>;

/// What is wrong with stored bytes, in words that follow "… cannot be read: "; null when nothing is.
using Fault = const char*;

/// The number at offset at, low byte first; the caller has checked that it ends inside.
inline std::uint16_t LoadU16(Bytes bytes, std::size_t at) {
    assert(at + 2 <= bytes.size());
    return static_cast<std::uint16_t>(bytes[at] | bytes[at + 1] << 8);
}
inline std::uint32_t LoadU32(Bytes bytes, std::size_t at) {
    return LoadU16(bytes, at) | static_cast<std::uint32_t>(LoadU16(bytes, at + 2)) << 16;
}
inline std::uint64_t LoadU64(Bytes bytes, std::size_t at) {
    return LoadU32(bytes, at) | static_cast<std::uint64_t>(LoadU32(bytes, at + 4)) << 32;
}

}  // namespace varnel::access
