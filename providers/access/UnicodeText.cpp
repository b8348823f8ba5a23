#include "providers/access/UnicodeText.h"

#include <algorithm>

#include "platform/Utf8.h"

namespace varnel::access {
namespace {

constexpr Fault kUnpaired = "its text has half a character (an unpaired surrogate)";
constexpr Fault kOdd = "its text ends in the middle of a character";

/// The low bytes of four UTF-16 units, in order.
std::uint32_t LowBytes(std::uint64_t units) {
    units = (units | units >> 8) & 0x0000FFFF0000FFFF;
    return static_cast<std::uint32_t>(units | units >> 16);
}

void Store32(char* to, std::uint32_t bytes) {
    for (int k = 0; k < 4; ++k) to[k] = static_cast<char>(bytes >> (8 * k));
}

}  // namespace

/// Bytes from the start that are characters of one byte.
std::size_t UnicodeText::TakeCompressedRun(Bytes bytes) {
    const std::uint8_t* const end = std::find(bytes.data(), bytes.data() + bytes.size(), std::uint8_t{0});
    const std::string_view run(reinterpret_cast<const char*>(bytes.data()),
                               static_cast<std::size_t>(end - bytes.data()));
    for (std::size_t at = 0; at < run.size();) {
        const std::size_t ascii = AsciiRun(run, at);
        out_.append(run.substr(at, ascii));
        at += ascii;
        if (at < run.size()) AppendCodePoint(out_, static_cast<unsigned char>(run[at++]));
    }
    return run.size();
}

/// Bytes from the start that are pairs of ASCII characters, in groups of four.
std::size_t UnicodeText::TakeAsciiPairs(Bytes bytes) {
    constexpr std::uint64_t kNotAscii = 0xFF80FF80FF80FF80;
    const std::size_t held = out_.size();
    const std::size_t groups = bytes.size() / 8;
    out_.resize(held + groups * 4);
    char* to = out_.data() + held;
    std::size_t group = 0;
    for (; group < groups; ++group, to += 4) {
        const std::uint64_t units = LoadU64(bytes, group * 8);
        if ((units & kNotAscii) != 0) break;
        Store32(to, LowBytes(units));
    }
    out_.resize(held + group * 4);
    return group * 8;
}

Fault UnicodeText::Feed(Bytes piece) {
    std::size_t at = 0;
    while (at < piece.size()) {
        if (mode_ == Mode::Compressed) at += TakeCompressedRun(piece.subspan(at));
        if (mode_ == Mode::Plain && !hasLow_ && high_ == 0) at += TakeAsciiPairs(piece.subspan(at));
        // What the runs leave, and a few more: a text in another script must not go through them for each character.
        const std::size_t most = mode_ == Mode::Start ? 2 : 16;
        for (std::size_t few = std::min(piece.size() - at, most); few > 0; --few) {
            if (const Fault fault = TakeByte(piece[at++])) return fault;
        }
    }
    return nullptr;
}

Fault UnicodeText::TakeByte(std::uint8_t byte) {
    if (mode_ == Mode::Compressed) {
        if (byte == 0) {
            mode_ = Mode::PairsInCompressed;
        } else {
            AppendCodePoint(out_, byte);
        }
        return nullptr;
    }
    if (!hasLow_) {
        if (mode_ == Mode::PairsInCompressed && byte == 0) {
            mode_ = Mode::Compressed;
            return high_ == 0 ? nullptr : kUnpaired;
        }
        low_ = byte;
        hasLow_ = true;
        return nullptr;
    }
    hasLow_ = false;
    const auto unit = static_cast<std::uint16_t>(low_ | byte << 8);
    if (mode_ == Mode::Start) {
        mode_ = unit == 0xFEFF ? Mode::Compressed : Mode::Plain;
        if (mode_ == Mode::Compressed) return nullptr;
    }
    return TakeUnit(unit);
}

Fault UnicodeText::TakeUnit(std::uint16_t unit) {
    const bool isHigh = unit >= 0xD800 && unit <= 0xDBFF, isLow = unit >= 0xDC00 && unit <= 0xDFFF;
    if (isLow != (high_ != 0)) return kUnpaired;
    if (isHigh) {
        high_ = unit;
        return nullptr;
    }
    if (isLow) {
        AppendCodePoint(out_, 0x10000 + ((char32_t{high_} - 0xD800) << 10) + (char32_t{unit} - 0xDC00));
        high_ = 0;
        return nullptr;
    }
    AppendCodePoint(out_, unit);
    return nullptr;
}

Fault UnicodeText::Finish() {
    if (hasLow_) return kOdd;
    return high_ == 0 ? nullptr : kUnpaired;
}

Fault AppendUnicodeText(Bytes stored, std::string& out) {
    UnicodeText text(out);
    if (const Fault fault = text.Feed(stored)) return fault;
    return text.Finish();
}

}  // namespace varnel::access
