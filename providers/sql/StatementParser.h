// Statements of the Jet dialect, read into SqlAst.h.
#pragma once

#include <string_view>

#include "providers/sql/SqlAst.h"

namespace varnel::sql {

/// Reads one statement; a trailing semicolon is allowed, anything after it is not.
/// Throws Error{Syntax} "Syntax error in … clause." with the word at which reading stopped.
ParsedStatement ParseStatement(std::string_view statement);

}  // namespace varnel::sql
