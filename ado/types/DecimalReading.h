// Steps of decimal conversions for callers to whom a failure is no exception.
#pragma once

#include <string_view>

#include "ado/types/Decimal.h"

namespace varnel {

enum class DecimalReading : std::uint8_t {
    Number,   ///< read, every digit kept
    TooLong,  ///< a number, but one that 38 digits cannot hold
    NoNumber  ///< not a number at all
};

/// Reads what ParseDecimal reads, without throwing. number is set only for DecimalReading::Number.
DecimalReading ReadDecimal(std::string_view text, Decimal& number);
/// The number times 10,000, rounded with ties to even; false when that passes 64 bits.
bool FitsCurrency(const Decimal& number, std::int64_t& scaled);
/// The number rounded to a whole one, ties to even; false when that passes 64 bits.
bool FitsInt64(const Decimal& number, std::int64_t& whole);
/// The decimal of the shortest digits that read back as the same float; false when 38 digits cannot hold them.
bool DecimalOfShortest(double number, Decimal& decimal);
bool DecimalOfShortest(float number, Decimal& decimal);

}  // namespace varnel
