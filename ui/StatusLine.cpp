#include "ui/StatusLine.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace varnel {

namespace {

constexpr double kSecondsBeforeRates = 0.2;
constexpr int kWidestBar = 40;

/// 1234567 as "1,234,567".
std::string Grouped(std::int64_t number) {
    std::string digits = std::to_string(number);
    for (std::size_t at = digits.size(); at > 3; at -= 3) digits.insert(at - 3, ",");
    return digits;
}

std::string TwoDigits(std::int64_t number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
}

/// "0:04", "12:30", "3:05:00"
std::string Duration(double seconds) {
    const auto whole = static_cast<std::int64_t>(std::ceil(seconds));
    const std::int64_t hours = whole / 3600, minutes = whole / 60 % 60;
    const std::string head = hours > 0 ? std::to_string(hours) + ":" + TwoDigits(minutes) : std::to_string(minutes);
    return head + ":" + TwoDigits(whole % 60);
}

/// "   2% 1,250 rows/s 0:04 left", as much of it as is known.
std::string Figures(const TableProgress& progress) {
    std::string text;
    if (progress.maximum > 0) {
        const int percent = static_cast<int>(100 * progress.value / progress.maximum);
        text = (percent < 10 ? "   " : percent < 100 ? "  " : " ") + std::to_string(percent) + "%";
    }
    if (progress.seconds < kSecondsBeforeRates || progress.value <= 0) return text;
    const double rate = progress.value / progress.seconds;
    text += " " + Grouped(std::llround(rate)) + " rows/s";
    if (progress.maximum > 0) text += " " + Duration((progress.maximum - progress.value) / rate) + " left";
    return text;
}

std::string Bar(double share, int width) {
    const int full = static_cast<int>(share * width);
    return " [" + std::string(static_cast<std::size_t>(full), '#') +
           std::string(static_cast<std::size_t>(width - full), '.') + "]";
}

}  // namespace

std::string StatusLine(const TableProgress& progress, int columns) {
    constexpr int kFrame = 3, kNarrowestBar = 5;  // " [" and "]"
    const std::string figures = Figures(progress);
    std::string line = progress.counter;
    const int room = columns - static_cast<int>(line.size() + figures.size()) - kFrame;
    if (progress.maximum > 0 && room >= kNarrowestBar) {
        line += Bar(std::min(1.0, progress.value / progress.maximum), std::min(room, kWidestBar));
    }
    line += figures;
    return line.substr(0, static_cast<std::size_t>(std::max(columns, 0)));
}

}  // namespace varnel
