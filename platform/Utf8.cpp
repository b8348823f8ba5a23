#include "platform/Utf8.h"

#include <locale.h>
#include <wctype.h>
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <utility>
#include <vector>

#include "platform/CodePage.h"

namespace varnel {
namespace {

constexpr char32_t kDirectlyFolded = 0x600;  // Latin, Greek, Cyrillic, Armenian, Hebrew
constexpr char32_t kLastCased = 0x1E943;     // the last script with capital letters

/// Lower-case forms: a direct table for the usual scripts, the pairs that differ for the others.
struct CaseTable {
    char32_t direct[kDirectlyFolded];
    std::vector<std::pair<char32_t, char32_t>> others;  // sorted

    CaseTable() {
        for (char32_t c = 0; c < kDirectlyFolded; ++c) direct[c] = c >= 'A' && c <= 'Z' ? c + 32 : c;
        const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        if (locale == nullptr) return;
        for (char32_t c = 0x80; c <= kLastCased; ++c) {
            const char32_t lower = towlower_l(static_cast<wint_t>(c), locale);
            if (c < kDirectlyFolded) {
                direct[c] = lower;
            } else if (lower != c) {
                others.emplace_back(c, lower);
            }
        }
        freelocale(locale);
    }
};

/// Length that a lead byte announces; 0 for a byte that leads nothing.
int AnnouncedLength(unsigned char lead) {
    if (lead < 0x80) return 1;
    if (lead < 0xC2) return 0;
    if (lead < 0xE0) return 2;
    if (lead < 0xF0) return 3;
    return lead < 0xF5 ? 4 : 0;
}

}  // namespace

char32_t NextCodePoint(std::string_view utf8, std::size_t& at) {
    const auto lead = static_cast<unsigned char>(utf8[at]);
    const auto length = static_cast<std::size_t>(AnnouncedLength(lead));
    const std::size_t start = at++;
    if (length == 1) return lead;
    if (length == 0 || length > utf8.size() - start) return kNoCodePoint;
    char32_t code = lead & (0x7Fu >> length);
    for (std::size_t k = 1; k < length; ++k) {
        const auto next = static_cast<unsigned char>(utf8[start + k]);
        if ((next & 0xC0) != 0x80) return kNoCodePoint;
        code = code << 6 | (next & 0x3Fu);
    }
    const bool overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
    if (overlong || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return kNoCodePoint;
    at = start + length;
    return code;
}

void AppendCodePoint(std::string& out, char32_t c) {
    const auto continuation = [](char32_t bits) { return static_cast<char>(0x80 | (bits & 0x3F)); };
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | c >> 6);
        out += continuation(c);
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | c >> 12);
        out += continuation(c >> 6);
        out += continuation(c);
    } else {
        out += static_cast<char>(0xF0 | c >> 18);
        out += continuation(c >> 12);
        out += continuation(c >> 6);
        out += continuation(c);
    }
}

std::size_t AsciiRun(std::string_view bytes, std::size_t at) {
    constexpr std::uint64_t kHighBits = 0x8080808080808080;
    std::size_t end = at;
    for (std::uint64_t word = 0; bytes.size() - end >= sizeof word; end += sizeof word) {
        std::memcpy(&word, bytes.data() + end, sizeof word);
        if ((word & kHighBits) != 0) break;
    }
    while (end < bytes.size() && static_cast<unsigned char>(bytes[end]) < 0x80) ++end;
    return end - at;
}

std::string CodePointName(char32_t codePoint) {
    char name[16];
    std::snprintf(name, sizeof name, "U+%04X", static_cast<unsigned>(codePoint));
    return name;
}

char32_t FoldCodePoint(char32_t codePoint) {
    if (codePoint < 0x80) return codePoint >= 'A' && codePoint <= 'Z' ? codePoint + 32 : codePoint;
    static const CaseTable table;
    if (codePoint < kDirectlyFolded) return table.direct[codePoint];
    const auto found = std::lower_bound(table.others.begin(), table.others.end(), std::pair(codePoint, char32_t{0}));
    return found != table.others.end() && found->first == codePoint ? found->second : codePoint;
}

std::size_t WellFormedLength(std::string_view bytes) {
    std::size_t at = 0;
    while ((at += AsciiRun(bytes, at)) < bytes.size()) {
        const std::size_t start = at;
        if (NextCodePoint(bytes, at) == kNoCodePoint) return start;
    }
    return bytes.size();
}

bool IsUtf8(std::string_view bytes) {
    return WellFormedLength(bytes) == bytes.size();
}

std::size_t CharacterCount(std::string_view utf8) {
    const auto continues = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; };
    return utf8.size() - static_cast<std::size_t>(std::count_if(utf8.begin(), utf8.end(), continues));
}

void AppendFoldedCase(std::string& out, std::string_view utf8) {
    for (std::size_t at = 0; at < utf8.size();) {
        const std::size_t start = at;
        const char32_t code = NextCodePoint(utf8, at);
        if (code == kNoCodePoint) {
            out += utf8[start];  // what is no character equals only itself
        } else {
            AppendCodePoint(out, FoldCodePoint(code));
        }
    }
}

std::string FoldCase(std::string_view utf8) {
    std::string folded;
    folded.reserve(utf8.size());
    AppendFoldedCase(folded, utf8);
    return folded;
}

}  // namespace varnel
