#include "providers/access/ExtendedDate.h"

#include <optional>

namespace varnel::access {
namespace {

constexpr std::size_t kDigits = 19, kSecondNumberAt = 20;
constexpr std::int64_t kDayZero = 693'593;  // days from 0001-01-01 to 1899-12-30

/// 19 digits always fit.
std::optional<std::int64_t> ReadDigits(Bytes digits) {
    std::int64_t number = 0;
    for (const std::uint8_t digit : digits) {
        if (digit < '0' || digit > '9') return std::nullopt;
        if (number > (INT64_MAX - 9) / 10) return std::nullopt;
        number = number * 10 + (digit - '0');
    }
    return number;
}

}  // namespace

Fault DecodeExtendedDate(std::span<const std::uint8_t, 42> stored, Value& value) {
    const auto days = ReadDigits(stored.first<kDigits>());
    const auto ticks = ReadDigits(stored.subspan<kSecondNumberAt, kDigits>());
    if (!days || !ticks || stored[kDigits] != ':' || *ticks / 10 >= kMicrosPerDay) return "it is no date";
    if (*days > kLastDay + kDayZero || *days < kFirstDay + kDayZero) return "it is no date of the years 100 to 9999";
    if (*ticks % 10 != 0) return "its time of day has parts of a microsecond";
    value.SetDateTime({static_cast<std::int32_t>(*days - kDayZero), *ticks / 10});
    return nullptr;
}

}  // namespace varnel::access
