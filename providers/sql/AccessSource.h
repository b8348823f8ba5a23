// Access databases as a data source.
#pragma once

#include <memory>

#include "ado/types/Provider.h"
#include "providers/sql/DataSource.h"

namespace varnel::sql {

/// Makes an empty Jet 4 database first when the file is missing and the source asks for that. Throws Error{Connection}
/// "Not a valid password.", Error{NotSupported} for an encrypted file, Error{Corrupt}, Error{Io}.
std::unique_ptr<ProviderSession> OpenAccessSession(const DataSource& source);

}  // namespace varnel::sql
