#include "app/shared/Yield.h"

#include "app/flags/SharedFlags.h"
#include "platform/Signals.h"
#include "ui/ProgressForm.h"

namespace varnel {

void TakeCancelSignal() {
    if (CancelSignalNoted()) CancelRequested = true;
}

void YieldToUserInterface() {
    TakeCancelSignal();
    if (ShowOutput) Form14().DoEvents();
}

}  // namespace varnel
