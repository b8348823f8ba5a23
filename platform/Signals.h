// SIGINT, SIGTERM and SIGHUP as a request to cancel. The handler only notes the signal; somebody at a safe place asks.
#pragma once

namespace varnel {

/// Installs the handlers; a signal that was ignored when the program started stays ignored, SIGPIPE is ignored from
/// now on. A second signal ends the process at once (default action).
void NoteCancelSignals();
/// True once a signal was noted.
bool CancelSignalNoted();
/// True when the noted signal is the one that Ctrl-C sends.
bool InterruptNoted();
/// Forgets a noted signal and lets the next one be the first again.
void ForgetCancelSignal();
/// A descriptor that is readable from a noted signal on until it is forgotten, for those who wait for something else as
/// well; nobody reads from it. -1 before NoteCancelSignals.
int CancelSignalDescriptor();

}  // namespace varnel
