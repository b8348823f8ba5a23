// Days of weeks, months and years: what the date functions of the dialects share.
#pragma once

#include <cstdint>

#include "platform/DateTime.h"

namespace varnel::sql {

/// month: 1 to 12.
int DaysInMonth(int year, int month);
/// 1 to 7, 1 being the day of the week that first names: 1 for Sunday to 7 for Saturday.
int WeekdayOf(DateTime moment, std::int64_t first);
/// From 1.
int DayOfYear(DateTime moment);

}  // namespace varnel::sql
