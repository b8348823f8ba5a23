#include "platform/DateTime.h"

#include <cmath>
#include <cstdlib>
#include <string>

#include "platform/Error.h"

namespace varnel {
namespace {

// Calendar arithmetic counts in years that begin on 1 March, so that the leap day is the last of its year, and in
// eras of 400 years, which all have the same number of days.
constexpr std::int64_t kDaysPerEra = 146'097;
/// Days from 0000-03-01 to 1899-12-30.
constexpr std::int64_t kEpochFromMarchOfYear0 = 693'899;

constexpr std::int64_t DayNumber(int year, int month, int day) {
    const std::int64_t marchYear = month <= 2 ? year - 1 : year;
    const std::int64_t era = (marchYear >= 0 ? marchYear : marchYear - 399) / 400;
    const std::int64_t yearOfEra = marchYear - era * 400;
    const std::int64_t dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
    const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * kDaysPerEra + dayOfEra - kEpochFromMarchOfYear0;
}
static_assert(DayNumber(1899, 12, 30) == 0);
static_assert(DayNumber(100, 1, 1) == kFirstDay);
static_assert(DayNumber(9999, 12, 31) == kLastDay);

constexpr bool IsLeapYear(int year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

constexpr int DaysInMonth(int year, int month) {
    if (month == 2) return IsLeapYear(year) ? 29 : 28;
    return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

constexpr bool IsBetween(int number, int low, int high) {
    return number >= low && number <= high;
}

[[noreturn]] void ThrowNoDate(const std::string& what) {
    throw Error(ErrorKind::Conversion, "", "Overflow: " + what + " is no date of the years 100 to 9999");
}

/// Of the moments that the double may mean, the one with the fewest digits of a second: far from day 0 a double steps
/// by more than a microsecond, and a whole second must come back whole.
DateTime Roundest(DateTime moment, double days) {
    constexpr std::int64_t kCoarsestStep = 50;  // microseconds that a double may be off at the ends of the range
    for (const std::int64_t unit : {kMicrosPerSecond, std::int64_t{1000}}) {
        const std::int64_t rounded = (moment.micros + unit / 2) / unit * unit;
        const DateTime candidate{moment.days, rounded};
        if (std::llabs(rounded - moment.micros) <= kCoarsestStep && rounded < kMicrosPerDay &&
            ToAutomationDate(candidate) == days) {
            return candidate;
        }
    }
    return moment;
}

}  // namespace

CivilTime ToCivil(DateTime moment) {
    const std::int64_t fromMarch = moment.days + kEpochFromMarchOfYear0;
    const std::int64_t era = (fromMarch >= 0 ? fromMarch : fromMarch - (kDaysPerEra - 1)) / kDaysPerEra;
    const std::int64_t dayOfEra = fromMarch - era * kDaysPerEra;
    const std::int64_t yearOfEra =
        (dayOfEra - dayOfEra / 1'460 + dayOfEra / 36'524 - dayOfEra / (kDaysPerEra - 1)) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t marchMonth = (5 * dayOfYear + 2) / 153;
    CivilTime civil;
    civil.day = static_cast<int>(dayOfYear - (153 * marchMonth + 2) / 5 + 1);
    civil.month = static_cast<int>(marchMonth < 10 ? marchMonth + 3 : marchMonth - 9);
    civil.year = static_cast<int>(yearOfEra + era * 400 + (civil.month <= 2 ? 1 : 0));
    const int seconds = static_cast<int>(moment.micros / kMicrosPerSecond);
    civil.micros = static_cast<int>(moment.micros % kMicrosPerSecond);
    civil.hour = seconds / 3600;
    civil.minute = seconds / 60 % 60;
    civil.second = seconds % 60;
    return civil;
}

bool IsRealCivil(const CivilTime& civil) {
    return IsBetween(civil.year, 1, 9999) && IsBetween(civil.month, 1, 12) &&
           IsBetween(civil.day, 1, DaysInMonth(civil.year, civil.month)) && IsBetween(civil.hour, 0, 23) &&
           IsBetween(civil.minute, 0, 59) && IsBetween(civil.second, 0, 59) && IsBetween(civil.micros, 0, 999'999);
}

DateTime FromCivil(const CivilTime& civil) {
    if (!IsRealCivil(civil)) {
        throw Error(ErrorKind::Conversion, "",
                    "There is no moment " + std::to_string(civil.year) + "-" + std::to_string(civil.month) + "-" +
                        std::to_string(civil.day) + " " + std::to_string(civil.hour) + ":" +
                        std::to_string(civil.minute) + ":" + std::to_string(civil.second) + " and " +
                        std::to_string(civil.micros) + " microseconds");
    }
    const std::int64_t seconds = civil.hour * 3600 + civil.minute * 60 + civil.second;
    return {static_cast<std::int32_t>(DayNumber(civil.year, civil.month, civil.day)),
            seconds * kMicrosPerSecond + civil.micros};
}

double ToAutomationDate(DateTime moment) {
    const double timeOfDay = static_cast<double>(moment.micros) / static_cast<double>(kMicrosPerDay);
    return moment.days < 0 ? moment.days - timeOfDay : moment.days + timeOfDay;
}

DateTime FromAutomationDate(double days) {
    const double wholeDays = std::trunc(days);
    if (!(wholeDays >= kFirstDay && wholeDays <= kLastDay)) ThrowNoDate("day " + std::to_string(days));
    const double timeOfDay = std::fabs(days - wholeDays);
    DateTime moment{static_cast<std::int32_t>(wholeDays), std::llround(timeOfDay * static_cast<double>(kMicrosPerDay))};
    if (moment.micros == kMicrosPerDay) moment = {moment.days + 1, 0};
    if (moment.days > kLastDay) ThrowNoDate("day " + std::to_string(days));
    return Roundest(moment, days);
}

}  // namespace varnel
