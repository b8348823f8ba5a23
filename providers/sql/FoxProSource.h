// Folders of FoxPro and dBASE tables, and database containers, as a data source.
#pragma once

#include <memory>

#include "ado/types/Provider.h"
#include "providers/sql/DataSource.h"

namespace varnel::sql {

/// The source's path is a folder, a .dbc file, or a .dbf file, which stands for its folder. Of the connection string
/// count Deleted (No: rows marked as deleted are rows), Null (No: columns of new tables are NOT NULL), ANSI (No: =
/// compares texts up to the end of the shorter one) and CodePage (of tables whose head names none, and of new ones).
/// Through the Access providers statements are Jet's. Throws Error{Io} for a path that is not there, Error{Syntax} for
/// an option without such a value.
std::unique_ptr<ProviderSession> OpenFoxProSession(const DataSource& source, const ConnectionString& text);

}  // namespace varnel::sql
