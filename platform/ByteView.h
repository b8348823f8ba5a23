// The one way to read foreign bytes: every access is checked against the end. Offsets and counts are bytes from the
// start of the view; numbers are little-endian.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace varnel {

class ByteView {
public:
    /// bytes: must outlive the view. name: what the bytes are, for the error text ("vrrepo.mdb, page 3").
    ByteView(std::span<const std::uint8_t> bytes, std::string name);

    std::size_t Size() const { return bytes_.size(); }
    /// The count bytes at offset at. Throws Error{Corrupt} naming the view when they do not all exist.
    std::span<const std::uint8_t> Part(std::size_t at, std::size_t count) const;
    std::uint8_t U8(std::size_t at) const;
    std::uint16_t U16(std::size_t at) const;
    std::uint32_t U32(std::size_t at) const;
    std::uint64_t U64(std::size_t at) const;
    /// Big-endian numbers, for the few formats that mix both orders.
    std::uint16_t U16Big(std::size_t at) const;
    std::uint32_t U32Big(std::size_t at) const;
    /// True when the bytes at offset at equal text; false also when the view ends before.
    bool StartsWithAt(std::size_t at, std::string_view text) const;

private:
    std::span<const std::uint8_t> bytes_;
    std::string name_;
};

}  // namespace varnel
