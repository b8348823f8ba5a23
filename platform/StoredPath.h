// Paths as they are stored in a repository or a connection string, often by Windows, and the local file they mean.
#pragma once

#include <string>
#include <string_view>

namespace varnel {

/// The folder of the path by which the program was started (symbolic links not followed), without a trailing
/// separator; the current folder until SetApplicationFolder was called.
const std::string& ApplicationFolder();
/// Called once by a program's main; by tests to move the drives and shares.
void SetApplicationFolder(std::string folder);
/// The folder part of argv0 (looked up along PATH when it holds no separator), made absolute, links not followed.
std::string FolderOfProgram(const std::string& argv0);
/// The folder that holds the running program's file, links followed: where its own parts lie. "" when unknown.
std::string FolderOfExecutable();

/// The local path that a stored path means.
/// Both separators are accepted. "C:\x" is looked up in drives/C (or drives/c) and "\\server\share\x" in
/// shares/server/share of the application folder, each a folder or a link. A component that does not exist as written
/// is taken without regard to case when exactly that way a name exists; what does not exist at all stays as written,
/// so that new files can be named. Throws Error{Io} naming the stored path and the missing drives/ or shares/ folder.
std::string LocalPath(std::string_view stored);

}  // namespace varnel
