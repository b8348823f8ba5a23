// Numbers as they stand in text files.
#pragma once

#include <cstdint>
#include <string_view>

namespace varnel::text {

/// What a number's text consists of. Its worth is mantissa times ten to the power of exponent.
struct NumberShape {
    std::uint64_t mantissa = 0;  ///< exact up to 19 significant digits
    int digits = 0;              ///< significant ones: from the first that is not zero to the last written
    int exponent = 0;
    bool negative = false;
    bool isWhole = false;  ///< sign and digits only
    bool hasExponent = false;
    bool isPadded = false;  ///< a zero before further digits of the whole part: 007, 00.5
};

/// Optional sign, digits with an optional decimal symbol, optional exponent; at least one digit. text: trimmed.
bool ScanNumber(std::string_view text, char decimalSymbol, NumberShape& shape);

/// What the values of a column must be so that the column is of this type.
bool FitsLong(const NumberShape& shape);
bool FitsDouble(const NumberShape& shape);

/// The whole number, or the one nearest to it, ties to even. False beyond 64 bits.
bool WholeOf(const NumberShape& shape, std::int64_t& number);
/// text: what shape was scanned from. False for a number too large or too small for a double (or a float).
bool DoubleOf(const NumberShape& shape, std::string_view text, char decimalSymbol, double& number);
bool SingleOf(std::string_view text, char decimalSymbol, float& number);

}  // namespace varnel::text
