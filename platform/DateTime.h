// A date and time of day as the wall clock shows it; there is no time zone anywhere.
#pragma once

#include <compare>
#include <cstdint>

namespace varnel {

inline constexpr std::int64_t kMicrosPerSecond = 1'000'000;
inline constexpr std::int64_t kMicrosPerDay = 86'400 * kMicrosPerSecond;
/// Days of 0100-01-01 and 9999-12-31, the range that an automation date can hold.
inline constexpr std::int32_t kFirstDay = -657'434;
inline constexpr std::int32_t kLastDay = 2'958'465;

/// A moment: whole days since 1899-12-30, and microseconds since that day's midnight (0 to kMicrosPerDay - 1).
/// Day 0 with a time is a pure time of day.
struct DateTime {
    std::int32_t days = 0;
    std::int64_t micros = 0;
    auto operator<=>(const DateTime&) const = default;
};

/// The calendar fields of a moment. month 1 to 12, day 1 to 31, hour 0 to 23, micros 0 to 999,999.
struct CivilTime {
    int year = 1899, month = 12, day = 30;
    int hour = 0, minute = 0, second = 0;
    int micros = 0;
};

CivilTime ToCivil(DateTime moment);
/// Throws Error{Conversion} when a field is out of its range (30 February, hour 24, year 0 or 10000).
DateTime FromCivil(const CivilTime& civil);
/// True when the fields name a real date of the years 1 to 9999 and a real time of day.
bool IsRealCivil(const CivilTime& civil);

/// Automation date: days as a double, the fraction is the time of day, counted forward also for negative days.
double ToAutomationDate(DateTime moment);
/// The reverse; the time of day is rounded to the nearest microsecond. Throws Error{Conversion} outside years 100 to
/// 9999.
DateTime FromAutomationDate(double days);

}  // namespace varnel
