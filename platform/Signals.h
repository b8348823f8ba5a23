// SIGINT, SIGTERM and SIGHUP as a request to cancel. The handler only notes the signal; somebody at a safe place asks.
#pragma once

namespace varnel {

/// Installs the handlers; a signal that was ignored when the program started stays ignored, SIGPIPE is ignored from
/// now on. A second signal ends the process at once (default action).
void NoteCancelSignals();
/// True once a signal was noted.
bool CancelSignalNoted();
/// Forgets a noted signal and lets the next one be the first again; for tests.
void ForgetCancelSignal();

}  // namespace varnel
