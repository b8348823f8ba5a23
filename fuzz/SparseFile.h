// Files of pages out of few bytes, so that a fuzzer's changes hit what is read and not the zeros between.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace varnel {

/// bytes: records of u8 page, u16 offset, u8 count - 1 and count bytes; what no record names is zero. The file ends
/// with the last page that is named. A record that passes the end of its page or of bytes is cut.
std::vector<std::uint8_t> ExpandSparseFile(std::span<const std::uint8_t> bytes, std::size_t pageSize);

}  // namespace varnel
