// Windows file patterns: * is any run of characters, ? is one character, names compare without case.
#pragma once

#include <string_view>

namespace varnel {

/// name and pattern in UTF-8; a character is a code point. "*.*" matches names without a dot too, and a ? at the end
/// of the name or of its part before a dot also matches nothing.
bool MatchesWildcard(std::string_view name, std::string_view pattern);

}  // namespace varnel
