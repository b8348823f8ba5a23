// The words of a statement in the FoxPro dialect.
#pragma once

#include <string_view>
#include <vector>

#include "providers/sql/SqlTokens.h"

namespace varnel::sql {

/// 'text', "text" and [text] are texts in an expression; a text runs to its own closing sign, which is doubled inside.
/// .AND., .OR. and .NOT. come as the bare words, .T., .F., .Y., .N. and .NULL. as symbols in lower case, {…} as a Date
/// with its inside, $12.34 as a Number with its sign. && begins a comment, a semicolon at the end of a line joins it
/// with the next.
/// Behind FROM, INTO, TABLE, DBF and a leading UPDATE stands a table: in "…", '…', […] or `…` a Name, bare a TablePath
/// with everything up to the next clause, because paths and names with blanks come without quotes as well.
/// Throws Error{Syntax}.
std::vector<Token> TokenizeFoxPro(std::string_view statement);

}  // namespace varnel::sql
