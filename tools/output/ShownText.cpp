#include "tools/output/ShownText.h"

#include <algorithm>
#include <iterator>

namespace varnel::admin {
namespace {

bool IsControl(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

struct CodePoints {
    char32_t first, last;
};
// What terminals show two columns wide (East Asian letters, pictures), and what they show on top of the letter before.
constexpr CodePoints kWide[] = {{0x1100, 0x115F},   {0x2E80, 0x303E},   {0x3041, 0xA4CF},  {0xAC00, 0xD7A3},
                                {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},  {0xFFE0, 0xFFE6},
                                {0x1F300, 0x1F64F}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};
constexpr CodePoints kNoWidth[] = {{0x0300, 0x036F}, {0x200B, 0x200F}, {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}};

std::size_t ColumnsOf(char32_t codePoint) {
    const auto holds = [&](const CodePoints& range) { return codePoint >= range.first && codePoint <= range.last; };
    if (codePoint < kNoWidth[0].first) return 1;
    if (std::any_of(std::begin(kNoWidth), std::end(kNoWidth), holds)) return 0;
    return std::any_of(std::begin(kWide), std::end(kWide), holds) ? 2 : 1;
}

}  // namespace

std::string EscapedLine(std::string_view text) {
    if (std::none_of(text.begin(), text.end(), IsControl)) return std::string(text);
    constexpr std::string_view kHex = "0123456789ABCDEF";
    std::string shown;
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        if (c == '\n')
            shown += "\\n";
        else if (c == '\r')
            shown += "\\r";
        else if (c == '\t')
            shown += "\\t";
        else if (IsControl(c))
            shown.append("\\x").append(1, kHex[code >> 4]).append(1, kHex[code & 15]);
        else
            shown += c;
    }
    return shown;
}

std::size_t ShownWidth(std::string_view utf8) {
    std::size_t width = 0;
    for (std::size_t at = 0; at < utf8.size();) {
        const auto lead = static_cast<unsigned char>(utf8[at++]);
        char32_t codePoint = lead < 0xC0 ? lead : lead < 0xE0 ? lead & 0x1F : lead < 0xF0 ? lead & 0x0F : lead & 0x07;
        for (; at < utf8.size() && (utf8[at] & 0xC0) == 0x80; ++at) codePoint = codePoint << 6 | (utf8[at] & 0x3F);
        width += ColumnsOf(codePoint);
    }
    return width;
}

}  // namespace varnel::admin
