// How long a table or a session took, as the log and the window say it.
#pragma once

#include <string>

#include "platform/DateTime.h"

namespace varnel {

/// "0 Hrs 2 Min 5 Sec" for the log: hours are the clock-hour boundaries between the two moments (whole seconds),
/// minutes all whole minutes of the span, hours included.
std::string ElapsedForLog(DateTime start, DateTime end);
/// The same for the window, where hours are the minute boundaries divided by 60, rounded down.
std::string ElapsedForWindow(DateTime start, DateTime end);

}  // namespace varnel
