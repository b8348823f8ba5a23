#include "providers/sql/CalendarParts.h"

namespace varnel::sql {

int DaysInMonth(int year, int month) {
    static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month == 2 && leap ? 29 : kDays[month - 1];
}

int WeekdayOf(DateTime moment, std::int64_t first) {
    // 1899-12-30 was a Saturday.
    const std::int64_t fromSunday = ((moment.days - 1) % 7 + 7) % 7;
    return static_cast<int>((fromSunday - (first - 1) + 7) % 7) + 1;
}
int DayOfYear(DateTime moment) {
    CivilTime first;
    first.year = ToCivil(moment).year, first.month = 1, first.day = 1;
    return moment.days - FromCivil(first).days + 1;
}

}  // namespace varnel::sql
