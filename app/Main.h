// Start-up: from the command tail to the run of a session.
#pragma once

#include <string_view>

namespace varnel {

/// Runs the session that the command tail names, with "showoutput" behind it in a window that then stays until it is
/// closed; a tail that names none ends silently. Log-ins that the run left idle are closed. Returns the exit status:
/// 0 nothing to run or no failure, 2 ended through the error log, 3 cancelled, 1 failures in the run.
int Main(std::string_view commandTail);

}  // namespace varnel
