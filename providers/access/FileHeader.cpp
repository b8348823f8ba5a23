#include "providers/access/FileHeader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <numeric>
#include <string_view>
#include <utility>

#include "platform/ByteView.h"
#include "platform/CodePage.h"
#include "platform/Error.h"

namespace varnel::access {
namespace {

constexpr std::size_t kVersionAt = 0x14, kMaskedAt = 0x18, kMaskedSize = 128, kMaskedSizeJet3 = 126;
constexpr std::size_t kPasswordAt = 0x42, kPasswordSize = 40, kPasswordSizeJet3 = 20, kDateAt = 0x72;
constexpr std::uint64_t kFewestPages = 3;

using HeaderBytes = std::array<std::uint8_t, kFileHeaderSize>;

/// The stream of the RC4 cipher for a fixed key, which every file is masked with.
std::array<std::uint8_t, kMaskedSize> MaskStream() {
    constexpr std::array<std::uint8_t, 4> kKey{0xC7, 0xDA, 0x39, 0x6B};
    std::array<std::uint8_t, 256> state{};
    std::iota(state.begin(), state.end(), std::uint8_t{0});
    std::uint8_t j = 0;
    for (std::size_t i = 0; i < state.size(); ++i) {
        j = static_cast<std::uint8_t>(j + state[i] + kKey[i % kKey.size()]);
        std::swap(state[i], state[j]);
    }
    std::array<std::uint8_t, kMaskedSize> stream{};
    std::uint8_t i = 0;
    j = 0;
    for (std::uint8_t& byte : stream) {
        i = static_cast<std::uint8_t>(i + 1);
        j = static_cast<std::uint8_t>(j + state[i]);
        std::swap(state[i], state[j]);
        byte = state[static_cast<std::uint8_t>(state[i] + state[j])];
    }
    return stream;
}

void Unmask(HeaderBytes& bytes, std::size_t count) {
    static const std::array<std::uint8_t, kMaskedSize> stream = MaskStream();
    for (std::size_t k = 0; k < count; ++k) bytes[kMaskedAt + k] ^= stream[k];
}

bool StartsWith(std::span<const std::uint8_t> bytes, std::size_t at, std::string_view text) {
    return bytes.size() >= at + text.size() &&
           std::equal(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
}

const Layout& LayoutOf(std::uint8_t version, const std::string& storedPath) {
    if (version == 0) return kJet3Layout;
    if (version == 1) return kJet4Layout;
    if (version <= 6) return kAceLayout;
    throw Error(ErrorKind::NotSupported, storedPath,
                "'" + storedPath + "' is an Access file of the unknown version " + std::to_string(version));
}

/// Zeros end the password.
std::string DecodePassword(HeaderBytes bytes, const Layout& layout, int codePage) {
    const ByteView view(bytes, "file header");
    const auto password =
        std::span(bytes).subspan(kPasswordAt, layout.version == Version::Jet3 ? kPasswordSizeJet3 : kPasswordSize);
    std::string text;
    if (layout.version == Version::Jet3) {
        const auto end = std::find(password.begin(), password.end(), 0);
        CodePage(codePage).Decode(text, std::string(password.begin(), end));
        return text;
    }
    const double date = std::bit_cast<double>(view.U64(kDateAt));
    const auto day = static_cast<std::uint32_t>(std::abs(date) < 2e9 ? static_cast<std::int32_t>(date) : 0);
    for (std::size_t k = 0; k < password.size(); ++k) {
        password[k] ^= static_cast<std::uint8_t>(day >> (8 * (k % 4)));
    }
    std::size_t size = 0;
    while (size + 2 <= password.size() && (password[size] != 0 || password[size + 1] != 0)) size += 2;
    AppendUtf8FromUtf16(text, password.first(size));
    return text;
}

}  // namespace

bool LooksLikeAccessFile(std::span<const std::uint8_t> start) {
    return StartsWith(start, 0, std::string_view("\0\1\0\0", 4)) &&
           (StartsWith(start, 4, std::string_view("Standard Jet DB\0", 16)) ||
            StartsWith(start, 4, std::string_view("Standard ACE DB\0", 16)) ||
            StartsWith(start, 4, std::string_view("Jet System DB\0", 14)));
}

FileHeader ParseFileHeader(std::span<const std::uint8_t> start, std::uint64_t fileSize, const std::string& storedPath) {
    if (start.size() < kFileHeaderSize || !LooksLikeAccessFile(start)) {
        throw Error(ErrorKind::Corrupt, storedPath, "Unrecognized database format '" + storedPath + "'");
    }
    HeaderBytes bytes{};
    std::copy_n(start.begin(), bytes.size(), bytes.begin());
    FileHeader header;
    header.storedVersion = bytes[kVersionAt];
    header.layout = &LayoutOf(header.storedVersion, storedPath);
    if (fileSize / header.layout->pageSize < kFewestPages) {
        throw Error(ErrorKind::Corrupt, storedPath, "'" + storedPath + "' is an Access file that was cut off");
    }
    const bool jet3 = header.layout->version == Version::Jet3;
    Unmask(bytes, jet3 ? kMaskedSizeJet3 : kMaskedSize);
    const ByteView view(bytes, storedPath + ", file header");
    header.freePages = UnpackRowPointer(view.U32(0x18));
    header.releasedPages = UnpackRowPointer(view.U32(0x1C));
    header.catalog = view.U32(0x20);
    header.codePage = view.U16(0x3C);
    header.encrypted = view.U32(0x3E) != 0;
    if (jet3) {
        header.sortOrder.language = view.U16(0x3A);
    } else {
        header.sortOrder = {view.U16(0x6E), view.U8(0x70), view.U8(0x71)};
    }
    if (!header.encrypted) header.password = DecodePassword(bytes, *header.layout, header.codePage);
    return header;
}

FileHeader ReadFileHeader(PageFile& file) {
    const PagePin pin = file.Read(0);
    const std::size_t pageSize = file.Shape().pageSize;
    return ParseFileHeader({pin.get(), pageSize}, std::uint64_t{file.PageCount()} * pageSize, file.StoredPath());
}

void CheckPassword(const FileHeader& header, const std::string& given, const std::string& storedPath) {
    if (header.password == given) return;
    throw Error(ErrorKind::Connection, storedPath, "Not a valid password.");
}

}  // namespace varnel::access
