// Opens a repository file through the data layer.
#pragma once

#include <string>

#include "ado/Connection.h"

namespace varnel::admin {

/// value as it stands behind "keyword=" in a connection string, in quotes.
std::string QuotedValue(const std::string& value);
enum class RepositoryForm { Access, Sqlite };

/// What an existing file is.
RepositoryForm RepositoryFormOf(const std::string& file);
/// Makes an empty database. Throws Error{Misuse} when the file exists; nothing is ever overwritten.
Connection MakeRepositoryFile(const std::string& file, RepositoryForm form);
/// Throws Error{Io} with the remedy when the file does not exist.
Connection OpenRepository(const std::string& file);

}  // namespace varnel::admin
