#include "app/flags/SharedFlags.h"

namespace varnel {

bool ShowOutput = false;
bool RepoOk = false;
bool SessionError = false;
bool CancelRequested = false;

void ResetSharedFlags() {
    ShowOutput = RepoOk = SessionError = CancelRequested = false;
}

}  // namespace varnel
