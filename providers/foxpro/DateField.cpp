#include "providers/foxpro/DateField.h"

#include <algorithm>

#include "providers/foxpro/StoredNumbers.h"

namespace varnel::foxpro {
namespace {

constexpr std::int64_t kMillisPerDay = 86'400'000;
constexpr std::uint64_t kBlankMoment = 0x2020'2020'2020'2020;  // as some writers leave it

/// False when a character is no digit.
bool ReadDigits(std::string_view text, int& number) {
    number = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') return false;
        number = number * 10 + (c - '0');
    }
    return true;
}

}  // namespace

CellFault ReadDateField(std::string_view text, std::optional<DateTime>& moment) {
    const auto isFill = [](char c) { return c == ' ' || c == '0' || c == '\0'; };
    moment.reset();
    if (std::all_of(text.begin(), text.end(), isFill)) return CellFault::None;
    CivilTime civil{0, 0, 0, 0, 0, 0, 0};
    const bool isWritten = text.size() == 8 && ReadDigits(text.substr(0, 4), civil.year) &&
                           ReadDigits(text.substr(4, 2), civil.month) && ReadDigits(text.substr(6, 2), civil.day);
    if (!isWritten || !IsRealCivil(civil)) return CellFault::NotADate;
    moment = FromCivil(civil);
    return CellFault::None;
}

CellFault ReadMomentField(std::span<const std::uint8_t> bytes, std::optional<DateTime>& moment) {
    moment.reset();
    const std::uint64_t stored = LittleU64(bytes);
    if (stored == 0 || stored == kBlankMoment) return CellFault::None;
    std::int64_t day = static_cast<std::int64_t>(stored & 0xFFFF'FFFF);
    const std::int64_t millis = static_cast<std::int64_t>(stored >> 32);
    if (millis > kMillisPerDay) return CellFault::NotADate;
    std::int64_t seconds = (millis + 500) / 1000;
    if (seconds == 86'400) seconds = 0, ++day;
    if (day < kFirstJulianDay || day > kLastJulianDay) return CellFault::NotADate;
    moment = DateTime{static_cast<std::int32_t>(day - kJulianDayZero), seconds * kMicrosPerSecond};
    return CellFault::None;
}

}  // namespace varnel::foxpro
