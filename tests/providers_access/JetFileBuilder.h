// The bytes of small Access files: a header page, and pages that are each filled with one letter.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <string>
#include <string_view>

namespace varnel::access {

class JetFileBuilder {
public:
    explicit JetFileBuilder(std::uint8_t version = 1) {
        const std::string_view text = version > 1 ? "Standard ACE DB" : "Standard Jet DB";
        bytes_.resize(version == 0 ? 2048 : 4096);
        bytes_[1] = 1;
        bytes_.replace(4, text.size(), text);
        bytes_[0x14] = static_cast<char>(version);
        Put(0x18, 0x100, 4);
        Put(0x1C, 0x101, 4);
        Put(0x20, 2, 4);
        Put(0x3C, 1252, 2);
        if (version > 0) Put(0x6E, 0x0409, 4);
        SetDate(42329.25);
    }
    /// The unmasked value of size bytes at an offset of the header.
    JetFileBuilder& Put(std::size_t at, std::uint64_t value, std::size_t size) {
        for (std::size_t k = 0; k < size; ++k) bytes_[at + k] = static_cast<char>(value >> (8 * k));
        return *this;
    }
    JetFileBuilder& Password(std::string_view ascii) {
        const bool jet3 = bytes_[0x14] == 0;
        for (std::size_t k = 0; k < ascii.size(); ++k) {
            const std::size_t at = 0x42 + k * (jet3 ? 1 : 2);
            bytes_[at] = static_cast<char>(bytes_[at] ^ ascii[k]);
        }
        return *this;
    }
    /// A whole file of pages pages; page n > 0 holds letters 'A' + n % 26.
    std::string Build(int pages) const {
        std::string file = bytes_;
        const std::size_t masked = bytes_[0x14] == 0 ? 126 : 128;
        for (std::size_t k = 0; k < masked; ++k) file[0x18 + k] = static_cast<char>(file[0x18 + k] ^ kMask[k]);
        for (int n = 1; n < pages; ++n) file.append(bytes_.size(), static_cast<char>('A' + n % 26));
        return file;
    }

private:
    void SetDate(double date) {
        if (bytes_[0x14] == 0) return;
        Put(0x72, std::bit_cast<std::uint64_t>(date), 8);
        for (std::size_t k = 0; k < 40; k += 4) Put(0x42 + k, static_cast<std::uint64_t>(date), 4);
    }

    static constexpr std::array<std::uint8_t, 128> kMask{
        0xB5, 0x6F, 0x03, 0x62, 0x61, 0x08, 0xC2, 0x55, 0xEB, 0xA9, 0x67, 0x72, 0x43, 0x3F, 0x00, 0x9C,
        0x7A, 0x9F, 0x90, 0xFF, 0x80, 0x9A, 0x31, 0xC5, 0x79, 0xBA, 0xED, 0x30, 0xBC, 0xDF, 0xCC, 0x9D,
        0x63, 0xD9, 0xE4, 0xC3, 0x7B, 0x42, 0xFB, 0x8A, 0xBC, 0x4E, 0x86, 0xFB, 0xEC, 0x37, 0x5D, 0x44,
        0x9C, 0xFA, 0xC6, 0x5E, 0x28, 0xE6, 0x13, 0xB6, 0x8A, 0x60, 0x54, 0x94, 0x7B, 0x36, 0xF5, 0x72,
        0xDF, 0xB1, 0x77, 0xF4, 0x13, 0x43, 0xCF, 0xAF, 0xB1, 0x33, 0x34, 0x61, 0x79, 0x5B, 0x92, 0xB5,
        0x7C, 0x2A, 0x05, 0xF1, 0x7C, 0x99, 0x01, 0x1B, 0x98, 0xFD, 0x12, 0x4F, 0x4A, 0x94, 0x6C, 0x3E,
        0x60, 0x26, 0x5F, 0x95, 0xF8, 0xD0, 0x89, 0x24, 0x85, 0x67, 0xC6, 0x1F, 0x27, 0x44, 0xD2, 0xEE,
        0xCF, 0x65, 0xED, 0xFF, 0x07, 0xC7, 0x46, 0xA1, 0x78, 0x16, 0x0C, 0xED, 0xE9, 0x2D, 0x62, 0xD4};

    std::string bytes_;
};

}  // namespace varnel::access
