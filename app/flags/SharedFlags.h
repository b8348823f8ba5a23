// The four flags that the whole program shares.
#pragma once

namespace varnel {

extern bool ShowOutput;  ///< the window is shown. Start-up writes it, everybody who reports progress reads it.
extern bool RepoOk;      ///< the session's definition is complete. The runner and the readers write, the runner reads.
extern bool SessionError;  ///< the run had errors. The load driver and the table preparation write, the runner reads.
extern bool CancelRequested;  ///< a cancel was confirmed. The window and the yield write, the load driver clears, the
                              ///< workers read.

/// All four back to False; for tests.
void ResetSharedFlags();

}  // namespace varnel
