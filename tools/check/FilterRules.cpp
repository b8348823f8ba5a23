#include "tools/check/FilterRules.h"

#include <cctype>
#include <string_view>

#include "ado/types/ConnectionString.h"

namespace varnel::admin {
namespace {

bool IsWordLetter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

/// The end of the quoted text that begins at byte at; the quote doubled inside belongs to it.
std::size_t EndOfText(std::string_view text, std::size_t at) {
    const char quote = text[at];
    for (++at; at < text.size(); ++at) {
        if (text[at] != quote) continue;
        if (at + 1 >= text.size() || text[at + 1] != quote) return at;
        ++at;
    }
    return text.size();
}

/// The patterns behind the word LIKE, without their quotes.
std::vector<std::string> LikePatterns(std::string_view filter) {
    std::vector<std::string> patterns;
    bool afterLike = false;
    for (std::size_t at = 0; at < filter.size(); ++at) {
        const char c = filter[at];
        if (c == ' ' || c == '(') continue;
        if (c == '\'' || c == '"') {
            const std::size_t end = EndOfText(filter, at);
            if (afterLike) patterns.emplace_back(filter.substr(at + 1, end - at - 1));
            at = end;
            afterLike = false;
            continue;
        }
        std::size_t end = at;
        while (end < filter.size() && IsWordLetter(filter[end])) ++end;
        afterLike = EqualNoCase(filter.substr(at, end - at), "LIKE");
        if (end > at) at = end - 1;
    }
    return patterns;
}

bool HasOneOf(std::string_view text, std::string_view characters) {
    return text.find_first_of(characters) != std::string_view::npos;
}

}  // namespace

void CheckFilterText(const TableFacts& facts) {
    const std::string& kind = SessionDef.SourceDBName;
    if (kind != "ACCESS" && kind != "TEXT" && kind != "TEXTPOLL") return;
    for (const std::string& pattern : LikePatterns(facts.From().WhereCond)) {
        if (!HasOneOf(pattern, "*?#")) continue;
        facts.Found().Warning("",
                              "the filter's LIKE '" + pattern +
                                  "' takes *, ? and # literally, as always through OLE DB, and will hardly match",
                              "write % for *, _ for ? and [0-9] for #");
    }
}

}  // namespace varnel::admin
