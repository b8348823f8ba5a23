// Finds any of four bytes in blocks of 64, for readers that walk through large texts.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace varnel {

/// Bytes that one look of a ByteScan covers; its block must be readable in full.
inline constexpr std::size_t kScanBlock = 64;

class ByteScan {
public:
    /// The bytes to be found; the same one may be given twice.
    explicit ByteScan(const std::array<char, 4>& bytes) {
        for (std::size_t k = 0; k < bytes.size(); ++k) patterns_[k] = Pattern(bytes[k]);
    }

    /// One bit for each byte of the block, the lowest for the first: set where one of the four bytes stands.
    std::uint64_t Find(const char* block) const {
        std::uint64_t found = 0;
        for (std::size_t at = 0; at < kScanBlock; at += kLaneBytes) {
            found |= static_cast<std::uint64_t>(FindInLane(block + at)) << at;
        }
        return found;
    }

private:
#if defined(__SSE2__)
    using Lane = __m128i;
    static constexpr std::size_t kLaneBytes = 16;
    static Lane Pattern(char byte) {
        return _mm_set1_epi8(byte);
    }

    std::uint32_t FindInLane(const char* bytes) const {
        const Lane lane = _mm_loadu_si128(reinterpret_cast<const Lane*>(bytes));
        const Lane first = _mm_or_si128(_mm_cmpeq_epi8(lane, patterns_[0]), _mm_cmpeq_epi8(lane, patterns_[1]));
        const Lane second = _mm_or_si128(_mm_cmpeq_epi8(lane, patterns_[2]), _mm_cmpeq_epi8(lane, patterns_[3]));
        return static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_or_si128(first, second)));
    }
#else
    using Lane = std::uint64_t;
    static constexpr std::size_t kLaneBytes = 8;
    static constexpr std::uint64_t kLowBits = 0x7F7F7F7F7F7F7F7F;
    static Lane Pattern(char byte) {
        return 0x0101010101010101 * static_cast<unsigned char>(byte);
    }

    /// The highest bit of every byte that is zero; exact, no borrow runs from one byte into the next.
    static std::uint64_t ZeroBytes(std::uint64_t word) {
        return ~(((word & kLowBits) + kLowBits) | word | kLowBits);
    }

    std::uint32_t FindInLane(const char* bytes) const {
        Lane lane;
        std::memcpy(&lane, bytes, sizeof lane);
        std::uint64_t hits = 0;
        for (const Lane pattern : patterns_) hits |= ZeroBytes(lane ^ pattern);
        if constexpr (std::endian::native == std::endian::big) hits = __builtin_bswap64(hits);
        return static_cast<std::uint32_t>((hits >> 7) * 0x0102040810204080 >> 56);
    }
#endif
    Lane patterns_[4];
};

}  // namespace varnel
