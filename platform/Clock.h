// The machine's clock, as local wall-clock time.
#pragma once

#include <cstdint>

#include "platform/DateTime.h"

namespace varnel {

/// The current local date and time, to the microsecond.
DateTime Now();
/// The current local date and time cut down to the whole second: what log lines and outcomes are made of.
DateTime NowToTheSecond();
/// Milliseconds of a clock that only runs forward; for time limits, never for texts.
std::int64_t SteadyMilliseconds();

}  // namespace varnel
