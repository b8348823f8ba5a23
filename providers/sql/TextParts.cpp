#include "providers/sql/TextParts.h"

#include <algorithm>

#include "platform/CodePage.h"
#include "platform/Utf8.h"

namespace varnel::sql {
namespace {

/// Upper case of one letter of the Latin, Greek and Cyrillic alphabets.
char32_t UpperOf(char32_t c) {
    if (c < 0x80) return c >= 'a' && c <= 'z' ? c - 32 : c;
    if (c == 0xFF) return 0x178;
    if (c >= 0xE0 && c <= 0xFE) return c == 0xF7 ? c : c - 32;
    if ((c >= 0x100 && c <= 0x137) || (c >= 0x14A && c <= 0x177)) return c == 0x131 ? 'I' : c & ~char32_t{1};
    if ((c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E)) return (c & 1) != 0 ? c : c - 1;
    if (c == 0x3C2) return 0x3A3;
    if (c >= 0x3B1 && c <= 0x3CB) return c - 32;
    if (c >= 0x430 && c <= 0x44F) return c - 32;
    if (c >= 0x450 && c <= 0x45F) return c - 80;
    return c;
}

}  // namespace

std::size_t OffsetOf(std::string_view text, std::int64_t count) {
    std::size_t at = 0;
    while (count > 0 && at < text.size()) NextCodePoint(text, at), --count;
    return at;
}

std::string_view WithoutLeft(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}
std::string_view WithoutRight(std::string_view text) {
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::string WesternCharacter(char byte) {
    if (static_cast<unsigned char>(byte) < 0x80) return std::string(1, byte);
    std::string text;
    CodePage(1252).Decode(text, {&byte, 1});
    return text;
}

std::string UpperCase(std::string_view text) {
    std::string upper;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t start = at;
        const char32_t c = NextCodePoint(text, at);
        if (c == kNoCodePoint)
            upper += text[start];
        else
            AppendCodePoint(upper, UpperOf(c));
    }
    return upper;
}

}  // namespace varnel::sql
