// Numbers in the byte orders of fields and memo files. Callers have checked that the bytes are there.
#pragma once

#include <cassert>
#include <cstdint>
#include <span>

namespace varnel::foxpro {

inline std::uint64_t LittleNumber(std::span<const std::uint8_t> bytes, std::size_t count) {
    assert(bytes.size() >= count);
    std::uint64_t number = 0;
    for (std::size_t k = count; k-- > 0;) number = number << 8 | bytes[k];
    return number;
}
inline std::uint32_t LittleU32(std::span<const std::uint8_t> bytes) {
    return static_cast<std::uint32_t>(LittleNumber(bytes, 4));
}
inline std::uint64_t LittleU64(std::span<const std::uint8_t> bytes) {
    return LittleNumber(bytes, 8);
}

inline std::uint64_t BigNumber(std::span<const std::uint8_t> bytes, std::size_t count) {
    assert(bytes.size() >= count);
    std::uint64_t number = 0;
    for (std::size_t k = 0; k < count; ++k) number = number << 8 | bytes[k];
    return number;
}

inline void PutLittle(std::span<std::uint8_t> into, std::uint64_t number) {
    for (std::uint8_t& byte : into) byte = static_cast<std::uint8_t>(number), number >>= 8;
}
inline void PutBig(std::span<std::uint8_t> into, std::uint64_t number) {
    for (std::size_t k = into.size(); k-- > 0;) into[k] = static_cast<std::uint8_t>(number), number >>= 8;
}

}  // namespace varnel::foxpro
