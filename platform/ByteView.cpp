#include "platform/ByteView.h"

#include <string_view>
#include <utility>

#include "platform/Error.h"

namespace varnel {

ByteView::ByteView(std::span<const std::uint8_t> bytes, std::string name) : bytes_(bytes), name_(std::move(name)) {}

std::span<const std::uint8_t> ByteView::Part(std::size_t at, std::size_t count) const {
    if (at > bytes_.size() || count > bytes_.size() - at) {
        throw Error(ErrorKind::Corrupt, name_,
                    name_ + ": no " + std::to_string(count) + " bytes at offset " + std::to_string(at) + " of " +
                        std::to_string(bytes_.size()));
    }
    return bytes_.subspan(at, count);
}

std::uint8_t ByteView::U8(std::size_t at) const {
    return Part(at, 1)[0];
}

std::uint16_t ByteView::U16(std::size_t at) const {
    const auto part = Part(at, 2);
    return static_cast<std::uint16_t>(part[0] | part[1] << 8);
}

std::uint32_t ByteView::U32(std::size_t at) const {
    const auto part = Part(at, 4);
    return part[0] | std::uint32_t{part[1]} << 8 | std::uint32_t{part[2]} << 16 | std::uint32_t{part[3]} << 24;
}

std::uint64_t ByteView::U64(std::size_t at) const {
    const auto part = Part(at, 8);
    std::uint64_t number = 0;
    for (int k = 7; k >= 0; --k) number = number << 8 | part[static_cast<std::size_t>(k)];
    return number;
}

std::uint16_t ByteView::U16Big(std::size_t at) const {
    const auto part = Part(at, 2);
    return static_cast<std::uint16_t>(part[0] << 8 | part[1]);
}

std::uint32_t ByteView::U32Big(std::size_t at) const {
    const auto part = Part(at, 4);
    return std::uint32_t{part[0]} << 24 | std::uint32_t{part[1]} << 16 | std::uint32_t{part[2]} << 8 | part[3];
}

bool ByteView::StartsWithAt(std::size_t at, std::string_view text) const {
    if (at > bytes_.size() || text.size() > bytes_.size() - at) return false;
    for (std::size_t k = 0; k < text.size(); ++k) {
        if (bytes_[at + k] != static_cast<std::uint8_t>(text[k])) return false;
    }
    return true;
}

}  // namespace varnel
