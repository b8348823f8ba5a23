// Exact decimal numbers of up to 38 digits.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace varnel {

__extension__ using UInt128 = unsigned __int128;

inline constexpr int kMaxDecimalDigits = 38;
/// Currency is a 64-bit integer, the value times this.
inline constexpr std::int64_t kCurrencyScale = 10'000;

/// magnitude divided by ten to the power of scale, negated when negative. scale 0 to 38; zero is never negative.
struct Decimal {
    UInt128 magnitude = 0;
    std::uint8_t scale = 0;
    bool negative = false;
};

/// True when both are the same number, whatever their scales (1.50 equals 1.5).
bool operator==(const Decimal& a, const Decimal& b);

/// Reads optional sign, digits, optional point and digits, optional exponent; blanks around are allowed.
/// Returns false when text is not such a number; throws Error{Conversion} "Overflow" beyond 38 significant digits.
bool ParseDecimal(std::string_view text, Decimal& number);
/// All digits, no exponent, no trailing zeros after the point ("1.5", "-0.05", "1500").
void AppendDecimalText(std::string& out, const Decimal& number);
double ToDouble(const Decimal& number);
/// The shortest decimal that reads back as the same double. Throws Error{Conversion} for what 38 digits cannot hold.
Decimal DecimalFromDouble(double number);
Decimal DecimalFromInt64(std::int64_t number);
Decimal DecimalFromCurrency(std::int64_t scaled);
/// Rounded to four places, ties to even. Throws Error{Conversion} "Overflow".
std::int64_t CurrencyFromDecimal(const Decimal& number);
/// Rounded to scale places, ties to even; a smaller scale than asked for stays as it is.
Decimal RoundedToScale(const Decimal& number, int scale);
/// Digits before the point (0 for numbers below 1).
int IntegerDigits(const Decimal& number);

}  // namespace varnel
