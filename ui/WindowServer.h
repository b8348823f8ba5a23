// The window's side of the link between a run and its window: what is said is done, what is clicked is told.
#pragma once

#include "platform/ProcessLink.h"
#include "ui/FormMessages.h"
#include "ui/ProgressForm.h"

namespace varnel {

/// Says a word to the run; one that is gone is not missed.
void TellRun(ProcessLink& link, WindowWord word);

/// Does on face what the run says on link and lets face handle its events in between. Returns when the
/// run is gone or face was told to stay until it is closed, and is.
void ServeWindow(ProcessLink& link, ProgressForm& face);

}  // namespace varnel
