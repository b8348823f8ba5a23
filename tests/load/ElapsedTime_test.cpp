#include "load/ElapsedTime.h"

#include <gtest/gtest.h>

namespace varnel {
namespace {

DateTime At(int day, int hour, int minute, int second) {
    return FromCivil({2026, 11, day, hour, minute, second, 0});
}

TEST(ElapsedTime, CountsBoundariesForHoursAndWholeMinutesOfTheSpan) {
    struct Case {
        DateTime start, end;
        const char *log, *window;
    };
    const Case cases[] = {
        {At(18, 10, 0, 0), At(18, 10, 2, 5), "0 Hrs 2 Min 5 Sec", "0 Hrs 2 Min 5 Sec"},
        {At(18, 10, 0, 0), At(18, 11, 2, 5), "1 Hrs 62 Min 5 Sec", "1 Hrs 62 Min 5 Sec"},
        {At(18, 10, 59, 50), At(18, 11, 0, 10), "1 Hrs 0 Min 20 Sec", "0 Hrs 0 Min 20 Sec"},
        {At(18, 10, 0, 59), At(18, 11, 0, 0), "1 Hrs 59 Min 1 Sec", "1 Hrs 59 Min 1 Sec"},
        {At(18, 23, 59, 59), At(19, 0, 0, 0), "1 Hrs 0 Min 1 Sec", "0 Hrs 0 Min 1 Sec"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(ElapsedForLog(c.start, c.end), c.log);
        EXPECT_EQ(ElapsedForWindow(c.start, c.end), c.window);
    }
}

}  // namespace
}  // namespace varnel
