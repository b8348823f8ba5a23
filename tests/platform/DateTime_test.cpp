#include "platform/DateTime.h"

#include <gtest/gtest.h>

#include <cmath>

#include "platform/Error.h"

namespace varnel {
namespace {

CivilTime Civil(int year, int month, int day, int hour = 0, int minute = 0, int second = 0, int micros = 0) {
    return {year, month, day, hour, minute, second, micros};
}

TEST(DateTimeTest, CountsDaysFromTheAutomationEpoch) {
    const struct {
        CivilTime civil;
        std::int32_t days;
    } cases[] = {{Civil(1899, 12, 30), 0},      {Civil(1899, 12, 31), 1},       {Civil(1900, 2, 28), 60},
                 {Civil(1900, 3, 1), 61},       {Civil(1970, 1, 1), 25569},     {Civil(2000, 2, 29), 36585},
                 {Civil(100, 1, 1), kFirstDay}, {Civil(9999, 12, 31), kLastDay}};
    for (const auto& [civil, days] : cases) {
        EXPECT_EQ(FromCivil(civil).days, days) << civil.year;
    }
}

TEST(DateTimeTest, EveryDayOfTenThousandYearsComesBack) {
    CivilTime earlier = Civil(1, 1, 1);
    const std::int32_t first = FromCivil(earlier).days;
    for (std::int32_t day = first + 1; day <= kLastDay; ++day) {
        const CivilTime civil = ToCivil({day, 0});
        const bool nextDay = civil.year == earlier.year && civil.month == earlier.month && civil.day == earlier.day + 1;
        const bool nextMonth = civil.day == 1 && (civil.month == earlier.month % 12 + 1);
        ASSERT_TRUE(nextDay || nextMonth) << day;
        ASSERT_EQ(FromCivil(civil).days, day);
        earlier = civil;
    }
    EXPECT_EQ(earlier.year, 9999);
}

TEST(DateTimeTest, RefusesFieldsThatAreNoMoment) {
    for (const CivilTime& civil :
         {Civil(2023, 2, 29), Civil(1900, 2, 29), Civil(2024, 4, 31), Civil(2024, 0, 1), Civil(2024, 13, 1),
          Civil(2024, 1, 0), Civil(0, 1, 1), Civil(10000, 1, 1), Civil(2024, 1, 1, 24), Civil(2024, 1, 1, 0, 60),
          Civil(2024, 1, 1, 0, 0, 60), Civil(2024, 1, 1, 0, 0, 0, 1000000), Civil(2024, 1, 1, -1)}) {
        EXPECT_FALSE(IsRealCivil(civil));
        EXPECT_THROW(FromCivil(civil), Error);
    }
    EXPECT_TRUE(IsRealCivil(Civil(2024, 2, 29, 23, 59, 59, 999999)));
}

TEST(DateTimeTest, AutomationDatesCountTheTimeForward) {
    const struct {
        double days;
        CivilTime civil;
    } cases[] = {{-1.25, Civil(1899, 12, 29, 6)}, {0.25, Civil(1899, 12, 30, 6)}, {-0.25, Civil(1899, 12, 30, 6)},
                 {1.75, Civil(1899, 12, 31, 18)}, {-657434.0, Civil(100, 1, 1)},  {2.9999999999999, Civil(1900, 1, 2)}};
    for (const auto& [days, civil] : cases) {
        EXPECT_EQ(FromAutomationDate(days), FromCivil(civil)) << days;
    }
    EXPECT_EQ(ToAutomationDate(FromCivil(Civil(1899, 12, 29, 6))), -1.25);
}

TEST(DateTimeTest, WholeSecondsSurviveTheDoubleInEveryYear) {
    for (int year = 100; year <= 9999; year += 33) {
        for (const CivilTime& civil :
             {Civil(year, 11, 18, 16, 23, 5), Civil(year, 1, 1, 23, 59, 59), Civil(year, 6, 30, 0, 0, 1)}) {
            const DateTime moment = FromCivil(civil);
            ASSERT_EQ(FromAutomationDate(ToAutomationDate(moment)), moment) << year;
        }
    }
    const DateTime withMicros = FromCivil(Civil(2026, 11, 18, 16, 23, 5, 250001));
    EXPECT_EQ(FromAutomationDate(ToAutomationDate(withMicros)), withMicros);
}

TEST(DateTimeTest, RefusesAutomationDatesOutsideTheirYears) {
    for (const double days : {-657435.0, 2958466.0, 2958465.9999999999, 1e300, std::nan(""), -HUGE_VAL}) {
        EXPECT_THROW(FromAutomationDate(days), Error) << days;
    }
}

}  // namespace
}  // namespace varnel
