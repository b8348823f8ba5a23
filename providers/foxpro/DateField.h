// Dates and moments as fields hold them.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "platform/DateTime.h"
#include "providers/foxpro/FieldReader.h"

namespace varnel::foxpro {

/// The Julian day number of a DateTime's day 0.
inline constexpr std::int64_t kJulianDayZero = 2'415'019;
/// Of 0001-01-01 and 9999-12-31, the days that fields can hold.
inline constexpr std::int64_t kFirstJulianDay = 1'721'426, kLastJulianDay = 5'373'484;

/// text: 8 characters YYYYMMDD. Sets moment, or leaves it empty for an empty date (blanks, zeros).
CellFault ReadDateField(std::string_view text, std::optional<DateTime>& moment);
/// bytes: 8, the Julian day and the milliseconds since midnight, rounded to whole seconds here.
CellFault ReadMomentField(std::span<const std::uint8_t> bytes, std::optional<DateTime>& moment);

}  // namespace varnel::foxpro
