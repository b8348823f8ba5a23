// Statements of the FoxPro dialect.
#pragma once

#include <string_view>

#include "providers/sql/Dialect.h"

namespace varnel::sql {

/// Reads one statement. A table that stands bare behind FROM may be a name with blanks or a name with a second one:
/// the statement then holds the name that comes first in table, all of it in wideTable, and ResolveFoxProTable decides.
/// Throws Error{Syntax}, and Error{NotSupported} for a clause that is understood but not carried out.
ParsedStatement ParseFoxPro(std::string_view statement);

/// Takes the shortest beginning of wideTable that is a table of the store while what follows it is a second name; all
/// of it when there is none. A table without a second name gets its own as FoxPro makes it.
void ResolveFoxProTable(ParsedStatement& parsed, TableStore& store);

/// As FoxProRules says.
Dialect FoxProDialect(bool ansi, bool deletedShown);

}  // namespace varnel::sql
