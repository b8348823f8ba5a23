// A way to write SQL, as far as the engines under it differ.
#pragma once

#include "providers/sql/ExpressionRules.h"
#include "providers/sql/StatementParser.h"
#include "providers/tablefile/TableFile.h"

namespace varnel::sql {

struct Dialect {
    /// Reads one statement. Throws Error{Syntax}.
    ParsedStatement (*parse)(std::string_view statement);
    const ExpressionRules* rules;
    /// Decides what the statement alone leaves open, such as where a table's name ends. Null when nothing is.
    void (*resolve)(ParsedStatement& parsed, TableStore& store);
};

inline constexpr Dialect kJetDialect{&ParseStatement, &kJetRules, nullptr};

}  // namespace varnel::sql
