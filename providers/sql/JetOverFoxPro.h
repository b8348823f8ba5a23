// FoxPro and dBASE tables as they look through the Access providers and the Access family's drivers: statements are
// Jet's, with its type words, and texts come without the blanks that fill their fields.
#pragma once

#include <memory>

#include "ado/types/ConnectionString.h"
#include "providers/sql/Dialect.h"

namespace varnel::sql {

/// True when the connection string names a provider or driver of the Access family.
bool SpeaksJet(const ConnectionString& text);

/// Jet's dialect, the columns of CREATE TABLE turned into FoxPro's types.
Dialect JetDialectOverFoxPro();

/// The same tables, fields of fixed width being texts of varying length.
std::unique_ptr<TableStore> TrimmedTexts(std::unique_ptr<TableStore> tables);

}  // namespace varnel::sql
