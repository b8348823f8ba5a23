// Moments as they stand in text files, in the usual forms.
//   11/18/2026  11-18-26  18-Nov-26  Nov-18-2026  Nov 18, 2026  2026-11-18  2026/11/18  2026-Nov-18; parted by "-", "/"
//   or "."; followed by a blank or T and a time; or a time alone: 16:23, 4:23:05 PM, 16:23:05.25
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/DateTime.h"

namespace varnel::text {

/// A moment whose day and month may still be told apart in two ways.
struct DateShape {
    int year = 1899, first = 12, second = 30;  ///< first and second: month and day
    bool isOpen = false;                       ///< first and second may as well be day and month
    std::int64_t micros = 0;                   ///< since midnight
};

/// text: trimmed. False when it is no moment in one of the forms; that the day exists is not looked at.
bool ScanDate(std::string_view text, DateShape& shape);
/// False when there is no such day.
bool MomentOf(const DateShape& shape, bool dayFirst, DateTime& moment);

/// The month with this English name, short or full, in any case; 0 when there is none.
int MonthOf(std::string_view name);
/// Two digits of a year: 00 to 29 are 2000s, 30 to 99 are 1900s.
int FullYear(int twoDigits);
/// False when the fields name no real moment of the years 100 to 9999.
bool MomentOfCivil(const CivilTime& civil, DateTime& moment);

}  // namespace varnel::text
