// The load of a session into database tables. Prepares every target table and copies its rows.
// Start here. Needs the session model filled; writes SessionError, CreatedTables, the session log and the window.
#pragma once

#include <string>

namespace varnel {

/// LogFile: the session's log path; empty means no log, and counts as an error of the session.
/// Failures inside a table are reported and survived; a failure of the log itself is raised as an Error.
void LoadSessionTables(const std::string& LogFile);

}  // namespace varnel
