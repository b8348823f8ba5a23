// Numbers put into pages and definitions, low byte first. Offsets are bytes from the start of the target, which must
// have room for the number.
#pragma once

#include <cassert>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace varnel::access {

template <std::unsigned_integral Number>
void StoreNumber(std::span<std::uint8_t> target, std::size_t at, Number number) {
    assert(at + sizeof(Number) <= target.size());
    for (std::size_t i = 0; i < sizeof(Number); ++i) target[at + i] = static_cast<std::uint8_t>(number >> (8 * i));
}
inline void StoreU16(std::span<std::uint8_t> target, std::size_t at, std::size_t number) {
    StoreNumber(target, at, static_cast<std::uint16_t>(number));
}
inline void StoreU32(std::span<std::uint8_t> target, std::size_t at, std::uint32_t number) {
    StoreNumber(target, at, number);
}
inline void StoreU64(std::span<std::uint8_t> target, std::size_t at, std::uint64_t number) {
    StoreNumber(target, at, number);
}

/// The same at the end of a growing string of bytes.
inline void AppendU8(std::string& bytes, std::uint8_t number) {
    bytes.push_back(static_cast<char>(number));
}
inline void AppendU16(std::string& bytes, std::size_t number) {
    AppendU8(bytes, static_cast<std::uint8_t>(number));
    AppendU8(bytes, static_cast<std::uint8_t>(number >> 8));
}
inline void AppendU32(std::string& bytes, std::uint32_t number) {
    AppendU16(bytes, number & 0xFFFF);
    AppendU16(bytes, number >> 16);
}

}  // namespace varnel::access
