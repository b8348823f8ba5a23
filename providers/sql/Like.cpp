#include "providers/sql/Like.h"

#include "platform/Error.h"
#include "platform/Utf8.h"

namespace varnel::sql {
namespace {

/// One element of a pattern: what it accepts, and where the next one begins.
struct Element {
    bool anyRun = false, anyOne = false, isSet = false;
    char32_t letter = 0;
    std::size_t setFrom = 0, setTo = 0, next = 0;
};

class Matcher {
public:
    Matcher(std::string_view pattern, LikeSigns signs, char32_t escape)
        : pattern_(pattern), signs_(signs), escape_(escape) {}

    bool Matches(std::string_view text) const {
        std::size_t at = 0, inPattern = 0;
        // After a % the match goes on behind it; when that fails, the % takes one character more.
        std::size_t retryText = std::string_view::npos, retryPattern = 0;
        for (;;) {
            if (inPattern < pattern_.size()) {
                const Element element = Read(inPattern);
                if (element.anyRun) {
                    retryText = at;
                    retryPattern = inPattern = element.next;
                    continue;
                }
                if (at < text.size() && Accepts(element, text, at)) {
                    inPattern = element.next;
                    continue;
                }
            } else if (at == text.size()) {
                return true;
            }
            if (retryText >= text.size()) return false;
            Next(text, retryText);
            at = retryText;
            inPattern = retryPattern;
        }
    }

private:
    char32_t Next(std::string_view text, std::size_t& at) const {
        const std::size_t start = at;
        const char32_t code = NextCodePoint(text, at);
        if (code == kNoCodePoint) return static_cast<unsigned char>(text[start]);
        return signs_.foldsCase ? FoldCodePoint(code) : code;
    }

    Element Read(std::size_t at) const {
        Element element;
        element.next = at;
        element.letter = Next(pattern_, element.next);
        if (escape_ != 0 && element.letter == escape_ && element.next < pattern_.size()) {
            element.letter = Next(pattern_, element.next);
            return element;
        }
        element.anyRun = element.letter == '%';
        element.anyOne = element.letter == '_';
        element.isSet = signs_.sets && element.letter == '[';
        if (!element.isSet) return element;
        element.setFrom = at + 1;
        element.setTo = pattern_.find(']', at + 1);
        if (element.setTo == std::string_view::npos) throw Error(ErrorKind::Syntax, "", "Invalid pattern string.");
        element.next = element.setTo + 1;
        return element;
    }

    /// True, and at behind the character there, when the element accepts it.
    bool Accepts(const Element& element, std::string_view text, std::size_t& at) const {
        std::size_t next = at;
        const char32_t letter = Next(text, next);
        const bool fits = element.anyOne || (element.isSet ? InSet(element, letter) : element.letter == letter);
        if (fits) at = next;
        return fits;
    }

    bool InSet(const Element& element, char32_t letter) const {
        const std::string_view set = pattern_.substr(element.setFrom, element.setTo - element.setFrom);
        std::size_t at = 0;
        const bool outside = set.size() > 1 && (set[0] == '!' || set[0] == '^');
        if (outside) ++at;
        bool found = false;
        while (at < set.size()) {
            const char32_t low = Next(set, at);
            char32_t high = low;
            if (at + 1 < set.size() && set[at] == '-') high = Next(set, ++at);
            found = found || (letter >= low && letter <= high);
        }
        return found != outside;
    }

    std::string_view pattern_;
    LikeSigns signs_;
    char32_t escape_;
};

}  // namespace

bool MatchesLike(std::string_view text, std::string_view pattern, LikeSigns signs, char32_t escape) {
    return Matcher(pattern, signs, escape).Matches(text);
}

}  // namespace varnel::sql
