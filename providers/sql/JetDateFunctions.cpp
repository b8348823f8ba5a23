#include <algorithm>
#include <cmath>

#include "ado/types/ConnectionString.h"
#include "platform/Clock.h"
#include "platform/Error.h"
#include "providers/sql/CalendarParts.h"
#include "providers/sql/ExpressionValues.h"
#include "providers/sql/SqlFunctionTable.h"

namespace varnel::sql {
namespace {

enum class Unit { Year, Quarter, Month, DayOfYear, Day, Weekday, Week, Hour, Minute, Second };

struct UnitWord {
    std::string_view word;
    Unit unit;
};
constexpr UnitWord kUnits[] = {{"yyyy", Unit::Year}, {"q", Unit::Quarter}, {"m", Unit::Month}, {"y", Unit::DayOfYear},
                               {"d", Unit::Day},     {"w", Unit::Weekday}, {"ww", Unit::Week}, {"h", Unit::Hour},
                               {"n", Unit::Minute},  {"s", Unit::Second}};

[[noreturn]] void ThrowBadArgument() {
    throw Error(ErrorKind::Conversion, "", "Invalid procedure call or argument");
}

Unit UnitOf(const Value& value) {
    std::string scratch;
    const std::string_view word = TextOf(value, scratch);
    const auto found =
        std::find_if(std::begin(kUnits), std::end(kUnits), [&](auto& row) { return EqualNoCase(row.word, word); });
    if (found == std::end(kUnits)) ThrowBadArgument();
    return found->unit;
}

DateTime CheckedMoment(std::int64_t days, std::int64_t micros) {
    days += micros / kMicrosPerDay;
    micros %= kMicrosPerDay;
    if (micros < 0) micros += kMicrosPerDay, --days;
    if (days < kFirstDay || days > kLastDay) ThrowBadArgument();
    return {static_cast<std::int32_t>(days), micros};
}

/// Months carried into years; years outside 100 to 9999 are refused.
CivilTime CarriedMonths(std::int64_t year, std::int64_t month) {
    std::int64_t months = year * 12 + month - 1;
    CivilTime civil;
    if (months < 100 * 12 || months >= 10'000 * 12) ThrowBadArgument();
    civil.year = static_cast<int>(months / 12);
    civil.month = static_cast<int>(months % 12) + 1;
    civil.day = 1;
    return civil;
}

DateTime AddMonths(DateTime moment, std::int64_t count) {
    const CivilTime from = ToCivil(moment);
    CivilTime to = CarriedMonths(from.year, from.month + count);
    to.day = std::min(from.day, DaysInMonth(to.year, to.month));
    return {FromCivil(to).days, moment.micros};
}

std::int64_t BoundedCount(const Value& value) {
    const std::int64_t count = static_cast<std::int64_t>(std::trunc(std::clamp(NumberOf(value), -1e12, 1e12)));
    if (std::abs(count) > 400'000'000'000) ThrowBadArgument();
    return count;
}

void DateAdd(Arguments a, Value& out) {
    const std::int64_t count = BoundedCount(*a[1]);
    const DateTime from = MomentOf(*a[2]);
    constexpr std::int64_t kHour = 3600 * kMicrosPerSecond, kMinute = 60 * kMicrosPerSecond;
    const auto later = [&](std::int64_t each) {
        if (std::abs(count) > INT64_MAX / each - 1) ThrowBadArgument();
        return CheckedMoment(from.days, from.micros + count * each);
    };
    switch (UnitOf(*a[0])) {
        case Unit::Year:
            return out.SetDateTime(AddMonths(from, count * 12));
        case Unit::Quarter:
            return out.SetDateTime(AddMonths(from, count * 3));
        case Unit::Month:
            return out.SetDateTime(AddMonths(from, count));
        case Unit::Week:
            return out.SetDateTime(CheckedMoment(from.days + count * 7, from.micros));
        case Unit::Hour:
            return out.SetDateTime(later(kHour));
        case Unit::Minute:
            return out.SetDateTime(later(kMinute));
        case Unit::Second:
            return out.SetDateTime(later(kMicrosPerSecond));
        default:
            return out.SetDateTime(CheckedMoment(from.days + count, from.micros));
    }
}

std::int64_t FloorDivide(std::int64_t a, std::int64_t b) {
    return a / b - (a % b < 0 ? 1 : 0);
}
std::int64_t FirstDayOfWeek(Arguments a, std::size_t at) {
    const std::int64_t first = a.size() > at ? WholeOf(*a[at]) : 1;
    if (first < 0 || first > 7) ThrowBadArgument();
    return first == 0 ? 1 : first;
}

void DateDiff(Arguments a, Value& out) {
    const DateTime from = MomentOf(*a[1]), to = MomentOf(*a[2]);
    const CivilTime one = ToCivil(from), two = ToCivil(to);
    const std::int64_t days = std::int64_t{to.days} - from.days;
    const auto units = [&](std::int64_t seconds) {
        const std::int64_t each = seconds * kMicrosPerSecond;
        return days * (kMicrosPerDay / each) + to.micros / each - from.micros / each;
    };
    const auto weeks = [&](std::int64_t first) {
        const auto week = [&](DateTime m) { return FloorDivide(m.days - 1 - (first - 1), 7); };
        return week(to) - week(from);
    };
    switch (UnitOf(*a[0])) {
        case Unit::Year:
            return out.SetInteger(two.year - one.year);
        case Unit::Quarter:
            return out.SetInteger((two.year - one.year) * 4 + (two.month - 1) / 3 - (one.month - 1) / 3);
        case Unit::Month:
            return out.SetInteger((two.year - one.year) * 12 + two.month - one.month);
        case Unit::Weekday:
            return out.SetInteger(days / 7);
        case Unit::Week:
            return out.SetInteger(weeks(FirstDayOfWeek(a, 3)));
        case Unit::Hour:
            return out.SetInteger(units(3600));
        case Unit::Minute:
            return out.SetInteger(units(60));
        case Unit::Second:
            return out.SetInteger(units(1));
        default:
            return out.SetInteger(days);
    }
}

void DatePart(Arguments a, Value& out) {
    const DateTime moment = MomentOf(*a[1]);
    const CivilTime civil = ToCivil(moment);
    switch (UnitOf(*a[0])) {
        case Unit::Year:
            return out.SetInteger(civil.year);
        case Unit::Quarter:
            return out.SetInteger((civil.month - 1) / 3 + 1);
        case Unit::Month:
            return out.SetInteger(civil.month);
        case Unit::DayOfYear:
            return out.SetInteger(DayOfYear(moment));
        case Unit::Day:
            return out.SetInteger(civil.day);
        case Unit::Weekday:
            return out.SetInteger(WeekdayOf(moment, FirstDayOfWeek(a, 2)));
        case Unit::Week: {
            const int ordinal = DayOfYear(moment);
            const int firstWeekday = WeekdayOf({moment.days - ordinal + 1, 0}, FirstDayOfWeek(a, 2));
            return out.SetInteger((ordinal + firstWeekday - 2) / 7 + 1);
        }
        case Unit::Hour:
            return out.SetInteger(civil.hour);
        case Unit::Minute:
            return out.SetInteger(civil.minute);
        case Unit::Second:
            return out.SetInteger(civil.second);
    }
}

template <int CivilTime::*Field>
void Part(Arguments a, Value& out) {
    out.SetInteger(ToCivil(MomentOf(*a[0])).*Field);
}

void Weekday(Arguments a, Value& out) {
    out.SetInteger(WeekdayOf(MomentOf(*a[0]), FirstDayOfWeek(a, 1)));
}

void DateSerial(Arguments a, Value& out) {
    std::int64_t year = WholeOf(*a[0]);
    if (year >= 0 && year <= 29)
        year += 2000;
    else if (year >= 30 && year <= 99)
        year += 1900;
    const std::int64_t month = WholeOf(*a[1]), day = WholeOf(*a[2]);
    if (std::abs(year) > 20'000 || std::abs(month) > 200'000 || std::abs(day) > 4'000'000) ThrowBadArgument();
    out.SetDateTime(CheckedMoment(FromCivil(CarriedMonths(year, month)).days + day - 1, 0));
}

void TimeSerial(Arguments a, Value& out) {
    std::int64_t seconds = 0;
    for (const Value* part : a) {
        const std::int64_t number = WholeOf(*part);
        if (std::abs(number) > 1'000'000) ThrowBadArgument();
        seconds = seconds * 60 + number;
    }
    out.SetDateTime(CheckedMoment(0, seconds * kMicrosPerSecond));
}

void NowFunction(Arguments, Value& out) {
    out.SetDateTime(NowToTheSecond());
}
void DateFunction(Arguments, Value& out) {
    out.SetDateTime({NowToTheSecond().days, 0});
}
void TimeFunction(Arguments, Value& out) {
    out.SetDateTime({0, NowToTheSecond().micros});
}
void CDate(Arguments a, Value& out) {
    out.SetDateTime(MomentOf(*a[0]));
}
void DateValue(Arguments a, Value& out) {
    out.SetDateTime({MomentOf(*a[0]).days, 0});
}
void TimeValue(Arguments a, Value& out) {
    out.SetDateTime({0, MomentOf(*a[0]).micros});
}

constexpr SqlFunction kFunctions[] = {
    {"year", 1, 1, adInteger, false, Part<&CivilTime::year>},
    {"month", 1, 1, adInteger, false, Part<&CivilTime::month>},
    {"day", 1, 1, adInteger, false, Part<&CivilTime::day>},
    {"hour", 1, 1, adInteger, false, Part<&CivilTime::hour>},
    {"minute", 1, 1, adInteger, false, Part<&CivilTime::minute>},
    {"second", 1, 1, adInteger, false, Part<&CivilTime::second>},
    {"weekday", 1, 2, adInteger, false, Weekday},
    {"now", 0, 0, adDate, false, NowFunction},
    {"date", 0, 0, adDate, false, DateFunction},
    {"time", 0, 0, adDate, false, TimeFunction},
    {"dateserial", 3, 3, adDate, false, DateSerial},
    {"timeserial", 3, 3, adDate, false, TimeSerial},
    {"datevalue", 1, 1, adDate, false, DateValue},
    {"timevalue", 1, 1, adDate, false, TimeValue},
    {"cdate", 1, 1, adDate, false, CDate},
    {"cvdate", 1, 1, adDate, false, CDate},
    {"dateadd", 3, 3, adDate, false, DateAdd},
    {"datediff", 3, 5, adInteger, false, DateDiff},
    {"datepart", 2, 4, adInteger, false, DatePart},
};

}  // namespace

std::span<const SqlFunction> DateFunctions() {
    return kFunctions;
}

}  // namespace varnel::sql
