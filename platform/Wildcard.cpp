#include "platform/Wildcard.h"

#include <string>
#include <vector>

#include "platform/Utf8.h"

namespace varnel {
namespace {

/// Folded code points; a byte that is no character counts as one of its own.
std::u32string FoldedCodePoints(std::string_view utf8) {
    std::u32string codes;
    codes.reserve(utf8.size());
    for (std::size_t at = 0; at < utf8.size();) {
        const std::size_t start = at;
        const char32_t code = NextCodePoint(utf8, at);
        codes += code == kNoCodePoint ? 0x110000 + static_cast<unsigned char>(utf8[start]) : FoldCodePoint(code);
    }
    return codes;
}

/// Adds the positions of the pattern that are reached without a character. next: the name's next character, 0 at its
/// end. A * always matches nothing; a ? does so before a dot and at the end, and so does there the dot of ".*".
void AddEmptyMatches(const std::u32string& pattern, char32_t next, std::vector<bool>& reached) {
    for (std::size_t k = 0; k < pattern.size(); ++k) {
        if (!reached[k]) continue;
        const bool dotBeforeWild =
            pattern[k] == '.' && k + 1 < pattern.size() && (pattern[k + 1] == '*' || pattern[k + 1] == '?');
        if (pattern[k] == '*' || (pattern[k] == '?' && (next == 0 || next == '.')) || (dotBeforeWild && next == 0)) {
            reached[k + 1] = true;
        }
    }
}

}  // namespace

bool MatchesWildcard(std::string_view name, std::string_view pattern) {
    const std::u32string wanted = FoldedCodePoints(pattern);
    const std::u32string codes = FoldedCodePoints(name);
    std::vector<bool> reached(wanted.size() + 1), after(wanted.size() + 1);  // positions of the pattern
    reached[0] = true;
    for (std::size_t at = 0; at < codes.size(); ++at) {
        AddEmptyMatches(wanted, codes[at], reached);
        after.assign(wanted.size() + 1, false);
        for (std::size_t k = 0; k < wanted.size(); ++k) {
            if (!reached[k]) continue;
            if (wanted[k] == '*') after[k] = true;
            if (wanted[k] == '?' || wanted[k] == codes[at]) after[k + 1] = true;
        }
        reached.swap(after);
    }
    AddEmptyMatches(wanted, 0, reached);
    return reached[wanted.size()];
}

}  // namespace varnel
