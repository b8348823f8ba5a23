#include <algorithm>
#include <cmath>
#include <cstdio>

#include "ado/types/ValueConvert.h"
#include "platform/Clock.h"
#include "providers/sql/CalendarParts.h"
#include "providers/sql/ExpressionValues.h"
#include "providers/sql/FoxProForms.h"
#include "providers/sql/FoxProMoment.h"
#include "providers/sql/FoxProRules.h"
#include "providers/sql/SqlFunctionTable.h"

namespace varnel::sql {
namespace {

constexpr const char* kMonths[] = {"January", "February", "March",     "April",   "May",      "June",
                                   "July",    "August",   "September", "October", "November", "December"};
constexpr const char* kWeekdays[] = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};

DateTime MomentArgument(const Value& value) {
    if (value.Kind() != ValueKind::DateTime) ThrowFoxProArgument();
    return value.AsDateTime();
}
std::int64_t WholeArgument(const Value& value) {
    if (!IsNumber(value) || value.Kind() == ValueKind::Boolean) ThrowFoxProArgument();
    return static_cast<std::int64_t>(std::trunc(std::clamp(NumberOf(value), -1e12, 1e12)));
}

/// A part of the date; of an empty date, which is Null, it is 0.
template <int CivilTime::*Field>
void Part(Arguments a, Value& out) {
    out.SetInteger(a[0]->IsNull() ? 0 : ToCivil(MomentArgument(*a[0])).*Field);
}
void Dow(Arguments a, Value& out) {
    if (a[0]->IsNull()) return out.SetInteger(0);
    const std::int64_t first = a.size() > 1 ? WholeArgument(*a[1]) : 1;
    if (first < 0 || first > 7) ThrowFoxProArgument();
    out.SetInteger(WeekdayOf(MomentArgument(*a[0]), first == 0 ? 1 : first));
}
void Quarter(Arguments a, Value& out) {
    out.SetInteger(a[0]->IsNull() ? 0 : (ToCivil(MomentArgument(*a[0])).month - 1) / 3 + 1);
}
void CDow(Arguments a, Value& out) {
    out.SetText(a[0]->IsNull() ? "" : kWeekdays[WeekdayOf(MomentArgument(*a[0]), 1) - 1]);
}
void CMonth(Arguments a, Value& out) {
    out.SetText(a[0]->IsNull() ? "" : kMonths[ToCivil(MomentArgument(*a[0])).month - 1]);
}
/// The week that holds the first of January is the first one; weeks begin on Sundays.
void Week(Arguments a, Value& out) {
    if (a[0]->IsNull()) return out.SetInteger(0);
    const DateTime moment = MomentArgument(*a[0]);
    const int day = DayOfYear(moment);
    const int firstWeekday = WeekdayOf({moment.days - day + 1, 0}, 1);
    out.SetInteger((day + firstWeekday - 2) / 7 + 1);
}

DateTime MomentOfParts(Arguments a) {
    CivilTime civil;
    int* const parts[] = {&civil.year, &civil.month, &civil.day, &civil.hour, &civil.minute, &civil.second};
    for (std::size_t i = 0; i < a.size(); ++i)
        *parts[i] = static_cast<int>(std::clamp<std::int64_t>(WholeArgument(*a[i]), -1, 10'000));
    if (civil.year < 100 || !IsRealCivil(civil)) ThrowFoxProArgument();
    return FromCivil(civil);
}
void Date(Arguments a, Value& out) {
    if (a.empty()) return out.SetDateTime({NowToTheSecond().days, 0});
    if (a.size() < 3) ThrowFoxProArgument();
    out.SetDateTime(MomentOfParts(a));
}
void DateTimeFunction(Arguments a, Value& out) {
    if (a.empty()) return out.SetDateTime(NowToTheSecond());
    if (a.size() < 3) ThrowFoxProArgument();
    out.SetDateTime(MomentOfParts(a));
}

template <class... Numbers>
void SetPrinted(Value& out, const char* form, Numbers... numbers) {
    char text[64];
    std::snprintf(text, sizeof text, form, numbers...);
    out.SetText(text);
}

void Time(Arguments, Value& out) {
    const CivilTime now = ToCivil(NowToTheSecond());
    SetPrinted(out, "%02d:%02d:%02d", now.hour, now.minute, now.second);
}

/// A text that names no date is an empty date, which is Null.
void ToMoment(Arguments a, Value& out, bool withTime) {
    if (a[0]->Kind() != ValueKind::Text) ThrowFoxProArgument();
    const std::optional<WrittenMoment> moment = ReadFoxProMoment(a[0]->AsText());
    if (!moment) return out.SetNull();
    out.SetDateTime({moment->moment.days, withTime ? moment->moment.micros : 0});
}
void CToD(Arguments a, Value& out) {
    ToMoment(a, out, false);
}
void CToT(Arguments a, Value& out) {
    ToMoment(a, out, true);
}

bool AsDigits(Arguments a) {
    return a.size() > 1 && WholeArgument(*a[1]) == 1;
}
void DToS(Arguments a, Value& out) {
    if (a[0]->IsNull()) return out.SetText("        ");
    const CivilTime civil = ToCivil(MomentArgument(*a[0]));
    SetPrinted(out, "%04d%02d%02d", civil.year, civil.month, civil.day);
}
void DToC(Arguments a, Value& out) {
    if (AsDigits(a)) return DToS(a, out);
    if (a[0]->IsNull()) return out.SetText("  /  /  ");
    out.SetText(FoxProDate(MomentArgument(*a[0])));
}
void TToC(Arguments a, Value& out) {
    if (a[0]->IsNull()) return out.SetText(AsDigits(a) ? "              " : "  /  /     :  :   AM");
    const DateTime moment = MomentArgument(*a[0]);
    if (!AsDigits(a)) return out.SetText(FoxProDateTime(moment));
    const CivilTime civil = ToCivil(moment);
    SetPrinted(out, "%04d%02d%02d%02d%02d%02d", civil.year, civil.month, civil.day, civil.hour, civil.minute,
               civil.second);
}
void TToD(Arguments a, Value& out) {
    out.SetDateTime({MomentArgument(*a[0]).days, 0});
}
void DToT(Arguments a, Value& out) {
    out.SetDateTime({MomentArgument(*a[0]).days, 0});
}

/// The same day so many months later, or the last one of a shorter month.
void GoMonth(Arguments a, Value& out) {
    const DateTime from = MomentArgument(*a[0]);
    CivilTime civil = ToCivil(from);
    const std::int64_t months = std::int64_t{civil.year} * 12 + civil.month - 1 + WholeArgument(*a[1]);
    if (months < 100 * 12 || months >= 10'000 * 12) return out.SetNull();
    civil.year = static_cast<int>(months / 12);
    civil.month = static_cast<int>(months % 12) + 1;
    civil.day = std::min(civil.day, DaysInMonth(civil.year, civil.month));
    out.SetDateTime({FromCivil(civil).days, from.micros});
}

constexpr SqlFunction kFunctions[] = {
    {"year", 1, 1, adInteger, true, Part<&CivilTime::year>},
    {"month", 1, 1, adInteger, true, Part<&CivilTime::month>},
    {"day", 1, 1, adInteger, true, Part<&CivilTime::day>},
    {"hour", 1, 1, adInteger, true, Part<&CivilTime::hour>},
    {"minute", 1, 1, adInteger, true, Part<&CivilTime::minute>},
    {"sec", 1, 1, adInteger, true, Part<&CivilTime::second>},
    {"dow", 1, 2, adInteger, true, Dow},
    {"quarter", 1, 1, adInteger, true, Quarter},
    {"cdow", 1, 1, adVarWChar, true, CDow},
    {"cmonth", 1, 1, adVarWChar, true, CMonth},
    {"week", 1, 1, adInteger, true, Week},
    {"date", 0, 3, adDate, false, Date},
    {"datetime", 0, 6, adDBTimeStamp, false, DateTimeFunction},
    {"time", 0, 0, adVarWChar, false, Time},
    {"ctod", 1, 1, adDate, false, CToD},
    {"ctot", 1, 1, adDBTimeStamp, false, CToT},
    {"dtoc", 1, 2, adVarWChar, true, DToC},
    {"dtos", 1, 1, adVarWChar, true, DToS},
    {"ttoc", 1, 2, adVarWChar, true, TToC},
    {"ttod", 1, 1, adDate, false, TToD},
    {"dtot", 1, 1, adDBTimeStamp, false, DToT},
    {"gomonth", 2, 2, adDate, false, GoMonth},
};

}  // namespace

std::span<const SqlFunction> FoxProDateFunctions() {
    return kFunctions;
}

}  // namespace varnel::sql
