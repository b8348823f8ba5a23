// The commands that make, fill and show a repository.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/repository/OpenRepository.h"
#include "tools/sessionfile/Passwords.h"

namespace varnel::admin {

/// Makes an empty repository. Throws Error when the file exists; nothing is ever overwritten.
void NewRepository(const std::string& file, RepositoryForm form);
/// Copies every table of a repository, with every row in its order, into a new file. Throws Error: to exists; a table
/// that the form cannot hold. Nothing is left behind then.
void CopyRepository(const std::string& from, const std::string& to, RepositoryForm form);
/// Reads session files and writes their sessions into the repository: all of them or, on any fault, none. A session
/// number that exists is refused, or its rows replaced. Throws Error.
void ImportSessions(const std::vector<std::string>& sessionFiles, const std::string& repositoryFile, bool replace);
struct ExportOrder {
    std::vector<std::int16_t> sessions;
    bool all = false;                ///< every session, whatever sessions says
    std::string repository, output;  ///< output: the file to write; "" for standard output
    bool replace = false;            ///< output may exist
    Passwords passwords = Passwords::Written;
};
/// Writes sessions as one session file that makes the same rows once it is imported. What a session file cannot carry
/// is told on standard error and in comments. Throws Error, nothing written: a session that does not exist, or that no
/// session file can hold.
void ExportSessions(const ExportOrder& order);

}  // namespace varnel::admin
