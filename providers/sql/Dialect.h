// A way to write SQL, as far as the engines under it differ.
#pragma once

#include "providers/sql/SqlParser.h"

namespace varnel::sql {

struct Dialect {
    /// Reads one statement. Throws Error{Syntax}.
    ParsedStatement (*parse)(std::string_view statement);
};

inline constexpr Dialect kJetDialect{&ParseStatement};

}  // namespace varnel::sql
