// Stored numbers out of parts whose length is already checked, and the way in which the readers of cells say what is
// wrong: a row loop must neither throw nor allocate for a damaged cell.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace varnel::access {

using Bytes = std::span<const std::uint8_t>;

/// What is wrong with stored bytes, in words that follow "… cannot be read: "; null when nothing is.
using Fault = const char*;

inline std::uint16_t Load16(std::span<const std::uint8_t, 2> b) {
    return static_cast<std::uint16_t>(b[0] | b[1] << 8);
}
inline std::uint32_t Load32(std::span<const std::uint8_t, 4> b) {
    return b[0] | std::uint32_t{b[1]} << 8 | std::uint32_t{b[2]} << 16 | std::uint32_t{b[3]} << 24;
}
inline std::uint64_t Load64(std::span<const std::uint8_t, 8> b) {
    return Load32(b.first<4>()) | std::uint64_t{Load32(b.last<4>())} << 32;
}

/// The part of N bytes at offset at; at + N must not pass the end.
template <std::size_t N>
std::span<const std::uint8_t, N> PartOf(Bytes bytes, std::size_t at) {
    return bytes.subspan(at).first<N>();
}

}  // namespace varnel::access
