// A loaded file of a polled folder gets a new name, so that the next run does not load it again.
#pragma once

#include <string>

namespace varnel {

/// Renames PolledName in the session's folder to its name, a dot, the session's FRename, "_On_" and a time stamp.
/// Never overwrites. A failure is written to the session log and the window; nothing is raised to the caller but a
/// failure of the log itself.
void RenameProcessedFile(const std::string& PolledName);

}  // namespace varnel
