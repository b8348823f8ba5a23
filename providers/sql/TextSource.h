// Folders of text files as a data source.
#pragma once

#include <memory>

#include "ado/types/Provider.h"
#include "providers/sql/DataSource.h"

namespace varnel::sql {

/// Throws Error{Io} "'C:\in' is not a valid path." and Error{Syntax} for an option without such a value.
std::unique_ptr<ProviderSession> OpenTextSession(const DataSource& source);

}  // namespace varnel::sql
