#include "load/ElapsedTime.h"

#include <cstdint>

namespace varnel {

namespace {

std::int64_t WholeUnits(DateTime moment, std::int64_t secondsPerUnit) {
    const std::int64_t seconds = std::int64_t{moment.days} * 86'400 + moment.micros / kMicrosPerSecond;
    return seconds >= 0 ? seconds / secondsPerUnit : (seconds - secondsPerUnit + 1) / secondsPerUnit;
}

std::int64_t Boundaries(DateTime start, DateTime end, std::int64_t secondsPerUnit) {
    return WholeUnits(end, secondsPerUnit) - WholeUnits(start, secondsPerUnit);
}

std::string Figures(std::int64_t hours, DateTime start, DateTime end) {
    const std::int64_t seconds = Boundaries(start, end, 1);
    return std::to_string(hours) + " Hrs " + std::to_string(seconds / 60) + " Min " + std::to_string(seconds % 60) +
           " Sec";
}

}  // namespace

std::string ElapsedForLog(DateTime start, DateTime end) {
    return Figures(Boundaries(start, end, 3600), start, end);
}

std::string ElapsedForWindow(DateTime start, DateTime end) {
    return Figures(Boundaries(start, end, 60) / 60, start, end);
}

}  // namespace varnel
