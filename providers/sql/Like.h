// Patterns of LIKE.
#pragma once

#include <string_view>

namespace varnel::sql {

/// What is special in a dialect's patterns beside % (any run) and _ (one character).
struct LikeSigns {
    bool sets = false;       ///< [a-f] one of a set, [!a-f] or [^a-f] none of it
    bool foldsCase = false;  ///< letters match without case
};

/// escape: the character that makes the next one an ordinary one; 0 for none.
/// Throws Error{Syntax} for a set that is not closed.
bool MatchesLike(std::string_view text, std::string_view pattern, LikeSigns signs, char32_t escape = 0);

}  // namespace varnel::sql
