#include "app/shared/Yield.h"

#include "app/flags/SharedFlags.h"
#include "platform/Signals.h"
#include "ui/ProgressForm.h"

namespace varnel {

void TakeCancelSignal() {
    if (!CancelRequested && CancelSignalNoted()) CancelRequested = Form14().ConfirmCancel();
}

void YieldToUserInterface() {
    TakeCancelSignal();
    if (ShowOutput) Form14().DoEvents();
}

}  // namespace varnel
