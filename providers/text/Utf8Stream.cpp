#include "providers/text/Utf8Stream.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "platform/Utf8.h"

namespace varnel::text {
namespace {

constexpr std::size_t kLongestDecodeBlock = 64 * 1024;
constexpr std::size_t kLongestCharacter = 4;  // bytes, in any of the pages

/// Whether bytes, which begin no well-formed character, are the start of one whose end is missing.
bool IsCutCharacter(std::string_view bytes) {
    if (bytes.empty() || bytes.size() >= kLongestCharacter) return false;
    const auto lead = static_cast<unsigned char>(bytes[0]);
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || bytes.size() >= length) return false;
    return std::all_of(bytes.begin() + 1, bytes.end(),
                       [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; });
}

void AppendFault(std::string& out, char byte) {
    const auto bits = static_cast<unsigned char>(byte);
    out += kFaultMark;
    out += static_cast<char>(0x80 | bits >> 4);
    out += static_cast<char>(0x80 | (bits & 0x0F));
}

}  // namespace

Utf8Stream::Utf8Stream(std::shared_ptr<const ByteSource> source, int page) : source_(std::move(source)) {
    if (page != kUnknownPage) UsePage(page);
}

void Utf8Stream::UsePage(int page) {
    page_ = page;
    decided_ = true;
    decoder_ = page == kUtf8Page ? nullptr : std::make_shared<const CodePage>(page);
}

std::size_t Utf8Stream::Read(std::span<char> into) {
    if (!started_) SkipByteOrderMark();
    if (decoder_) return ReadDecoded(into);
    return decided_ ? ReadAsIs(into) : ReadUndecided(into);
}

void Utf8Stream::SkipByteOrderMark() {
    started_ = true;
    std::array<char, 3> first{};
    const std::string_view bytes(first.data(), source_->ReadAt(0, first));
    const bool mayBeUtf16 = !decided_ || page_ == kUtf16Page || page_ == kUtf16HighFirstPage;
    if (bytes == "\xEF\xBB\xBF") {
        if (!decided_) UsePage(kUtf8Page);
        offset_ = bytes.size();
    } else if (mayBeUtf16 && (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF"))) {
        UsePage(bytes[0] == '\xFF' ? kUtf16Page : kUtf16HighFirstPage);
        offset_ = 2;
    }
}

std::size_t Utf8Stream::ReadAsIs(std::span<char> into) {
    const std::size_t count = source_->ReadAt(offset_, into);
    offset_ += count;
    return count;
}

/// Hands on what is well-formed UTF-8. At the first byte that is not, ASCII so far means that all of the text is
/// Windows-1252; anything else was taken for UTF-8 by mistake.
std::size_t Utf8Stream::ReadUndecided(std::span<char> into) {
    if (misjudged_) return 0;
    const std::string_view bytes(into.data(), source_->ReadAt(offset_, into));
    const bool isLast = bytes.size() < into.size();
    const std::size_t ascii = AsciiRun(bytes, 0);
    if (ascii == bytes.size()) return offset_ += ascii, ascii;

    const std::size_t good = ascii + WellFormedLength(bytes.substr(ascii));
    const std::string_view rest = bytes.substr(good);
    if (rest.empty() || (!isLast && IsCutCharacter(rest))) {
        if (good > ascii) page_ = kUtf8Page;
        return offset_ += good, good;
    }
    if (page_ == kUtf8Page) {
        misjudged_ = true;
        return 0;
    }
    UsePage(kAnsiPage);
    offset_ += ascii;
    return ascii > 0 ? ascii : ReadDecoded(into);
}

std::size_t Utf8Stream::ReadDecoded(std::span<char> into) {
    if (decodedAt_ == decoded_.size()) DecodeBlock(std::clamp(into.size(), kLeastRoom, kLongestDecodeBlock));
    const std::size_t count = std::min(into.size(), decoded_.size() - decodedAt_);
    std::memcpy(into.data(), decoded_.data() + decodedAt_, count);
    decodedAt_ += count;
    return count;
}

/// Refills decoded_ from so many bytes of the source; it stays empty at the end only.
void Utf8Stream::DecodeBlock(std::size_t length) {
    decoded_.clear();
    decodedAt_ = 0;
    std::string raw(length, '\0');
    raw.resize(source_->ReadAt(offset_, raw));
    const bool isLast = raw.size() < length;
    std::string_view rest = raw;
    while (!rest.empty()) {
        rest.remove_prefix(decoder_->DecodeSome(decoded_, rest));
        if (rest.empty() || (!isLast && rest.size() < kLongestCharacter)) break;
        const std::size_t unit = page_ == kUtf16Page || page_ == kUtf16HighFirstPage ? 2 : 1;
        for (std::size_t k = 0; k < std::min(unit, rest.size()); ++k) AppendFault(decoded_, rest[k]);
        rest.remove_prefix(std::min(unit, rest.size()));
    }
    offset_ += raw.size() - rest.size();
}

}  // namespace varnel::text
