#include "platform/Clock.h"

#include <chrono>
#include <ctime>

namespace varnel {

DateTime Now() {
    timespec moment{};
    clock_gettime(CLOCK_REALTIME, &moment);
    tm local{};
    localtime_r(&moment.tv_sec, &local);
    CivilTime civil;
    civil.year = local.tm_year + 1900;
    civil.month = local.tm_mon + 1;
    civil.day = local.tm_mday;
    civil.hour = local.tm_hour;
    civil.minute = local.tm_min;
    civil.second = local.tm_sec < 60 ? local.tm_sec : 59;  // a leap second repeats the last one
    civil.micros = static_cast<int>(moment.tv_nsec / 1000);
    return FromCivil(civil);
}

DateTime NowToTheSecond() {
    DateTime now = Now();
    now.micros -= now.micros % kMicrosPerSecond;
    return now;
}

std::int64_t SteadyMilliseconds() {
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count();
}

}  // namespace varnel
