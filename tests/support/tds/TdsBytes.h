// Little-endian bytes of the Tabular Data Stream protocol, written and read. A test double: broken messages end the
// connection by an exception.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace varnel::tds {

class Writer {
public:
    void U8(unsigned value) { bytes_ += static_cast<char>(value); }
    void U16(unsigned value) { Number(value, 2); }
    void U32(std::uint64_t value) { Number(value, 4); }
    void U64(std::uint64_t value) { Number(value, 8); }
    void Number(std::uint64_t value, int count) {
        for (int k = 0; k < count; ++k) U8(static_cast<unsigned>(value >> (8 * k)) & 0xFF);
    }
    void Raw(std::string_view bytes) { bytes_ += bytes; }
    /// UTF-16 with its length in characters before it, in 1 or 2 bytes.
    void Text(std::string_view utf8, int lengthBytes);
    std::size_t Size() const { return bytes_.size(); }
    const std::string& Bytes() const { return bytes_; }
    std::string Take() { return std::move(bytes_); }

private:
    std::string bytes_;
};

class Reader {
public:
    explicit Reader(std::string_view bytes) : bytes_(bytes) {}
    bool AtEnd() const { return at_ >= bytes_.size(); }
    unsigned U8() { return static_cast<unsigned>(Number(1)); }
    unsigned U16() { return static_cast<unsigned>(Number(2)); }
    std::uint32_t U32() { return static_cast<std::uint32_t>(Number(4)); }
    std::uint64_t U64() { return Number(8); }
    std::uint64_t Number(int count) {
        const std::string_view part = Raw(static_cast<std::size_t>(count));
        std::uint64_t value = 0;
        for (int k = 0; k < count; ++k)
            value |= std::uint64_t{static_cast<unsigned char>(part[static_cast<std::size_t>(k)])} << (8 * k);
        return value;
    }
    std::string_view Raw(std::size_t count) {
        if (count > bytes_.size() - at_) throw std::runtime_error("a message ends early");
        at_ += count;
        return bytes_.substr(at_ - count, count);
    }
    std::string Text(std::size_t characters);
    unsigned Peek() const { return AtEnd() ? 0x100U : static_cast<unsigned char>(bytes_[at_]); }
    void Skip(std::size_t count) { Raw(count); }

private:
    std::string_view bytes_;
    std::size_t at_ = 0;
};

std::string ToUtf16(std::string_view utf8);
std::string FromUtf16(std::string_view utf16);

}  // namespace varnel::tds
