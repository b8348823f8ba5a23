#include "platform/Error.h"
#include "platform/Utf8.h"
#include "providers/sql/JetValues.h"

namespace varnel::sql {
namespace {

char32_t NextFolded(std::string_view text, std::size_t& at) {
    const std::size_t start = at;
    const char32_t code = NextCodePoint(text, at);
    return code == kNoCodePoint ? static_cast<unsigned char>(text[start]) : FoldCodePoint(code);
}

/// One element of a pattern: what it accepts, and where the next one begins.
struct Element {
    bool anyRun = false, anyOne = false, isSet = false;
    char32_t letter = 0;
    std::size_t setFrom = 0, setTo = 0, next = 0;
};

Element ReadElement(std::string_view pattern, std::size_t at) {
    Element element;
    element.next = at + 1;
    switch (pattern[at]) {
        case '%':
            element.anyRun = true;
            return element;
        case '_':
            element.anyOne = true;
            return element;
        case '[':
            break;
        default:
            element.next = at;
            element.letter = NextFolded(pattern, element.next);
            return element;
    }
    element.isSet = true;
    element.setFrom = at + 1;
    element.setTo = pattern.find(']', at + 1);
    if (element.setTo == std::string_view::npos) throw Error(ErrorKind::Syntax, "", "Invalid pattern string.");
    element.next = element.setTo + 1;
    return element;
}

bool InSet(std::string_view set, char32_t letter) {
    std::size_t at = 0;
    const bool outside = set.size() > 1 && (set[0] == '!' || set[0] == '^');
    if (outside) ++at;
    bool found = false;
    while (at < set.size()) {
        const char32_t low = NextFolded(set, at);
        char32_t high = low;
        if (at + 1 < set.size() && set[at] == '-') high = NextFolded(set, ++at);
        found = found || (letter >= low && letter <= high);
    }
    return found != outside;
}

}  // namespace

bool MatchesLike(std::string_view text, std::string_view pattern) {
    std::size_t at = 0, inPattern = 0;
    // After a % the match goes on behind it; when that fails, the % takes one character more.
    std::size_t retryText = std::string_view::npos, retryPattern = 0;
    for (;;) {
        if (inPattern < pattern.size()) {
            const Element element = ReadElement(pattern, inPattern);
            if (element.anyRun) {
                retryText = at;
                retryPattern = inPattern = element.next;
                continue;
            }
            if (at < text.size()) {
                std::size_t next = at;
                const char32_t letter = NextFolded(text, next);
                const bool fits =
                    element.anyOne ||
                    (element.isSet ? InSet(pattern.substr(element.setFrom, element.setTo - element.setFrom), letter)
                                   : element.letter == letter);
                if (fits) {
                    at = next;
                    inPattern = element.next;
                    continue;
                }
            }
        } else if (at == text.size()) {
            return true;
        }
        if (retryText >= text.size()) return false;
        NextFolded(text, retryText);
        at = retryText;
        inPattern = retryPattern;
    }
}

}  // namespace varnel::sql
