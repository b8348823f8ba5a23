// The commands that make, fill and show a repository.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/OpenRepository.h"

namespace varnel::admin {

/// Makes an empty repository. Throws Error when the file exists; nothing is ever overwritten.
void NewRepository(const std::string& file, RepositoryForm form);
/// Copies every table of a repository, with every row in its order, into a new file. Throws Error: to exists; a table
/// that the form cannot hold. Nothing is left behind then.
void CopyRepository(const std::string& from, const std::string& to, RepositoryForm form);
/// Reads session files and writes their sessions into the repository: all of them or, on any fault, none. A session
/// number that exists is refused, or its rows replaced. Throws Error.
void ImportSessions(const std::vector<std::string>& sessionFiles, const std::string& repositoryFile, bool replace);
/// Prints one line per session.
void ListSessions(const std::string& repositoryFile);
/// Prints a session as a session file, passwords as ***. Throws Error{Misuse} when the session does not exist.
void ShowSession(std::int16_t id, const std::string& repositoryFile);

}  // namespace varnel::admin
