#include "providers/text/CellNumber.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <limits>
#include <string>

namespace varnel::text {
namespace {

constexpr int kExactMantissaDigits = 19;  // a 64-bit mantissa
constexpr int kMaxTypedDigits = 15;       // that a double surely keeps
constexpr int kExactTens = 22;            // the powers of ten that a double holds exactly
constexpr int kFarExponent = 100'000;

constexpr std::array<double, kExactTens + 1> kTens = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                      1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                      1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

bool IsDigit(char c) {
    return static_cast<unsigned>(static_cast<unsigned char>(c)) - '0' < 10;
}

void TakeDigit(NumberShape& shape, char digit) {
    if (shape.digits == 0 && digit == '0') return;
    if (shape.digits++ < kExactMantissaDigits) {
        shape.mantissa = shape.mantissa * 10 + static_cast<std::uint64_t>(digit - '0');
    } else {
        ++shape.exponent;
    }
}

/// Reads the exponent's sign and digits up to the end.
bool TakeExponent(const char* at, const char* end, NumberShape& shape) {
    const bool negative = at != end && *at == '-';
    if (at != end && (*at == '-' || *at == '+')) ++at;
    if (at == end) return false;
    int number = 0;
    for (; at != end; ++at) {
        if (!IsDigit(*at)) return false;
        number = std::min(number * 10 + (*at - '0'), kFarExponent);
    }
    shape.exponent += negative ? -number : number;
    return true;
}

/// The text in the form that std::from_chars reads: no plus sign, a point.
std::string_view Plain(std::string_view text, char decimalSymbol, std::string& scratch) {
    if (text.starts_with('+')) text.remove_prefix(1);
    if (decimalSymbol == '.') return text;
    scratch = text;
    std::replace(scratch.begin(), scratch.end(), decimalSymbol, '.');
    return scratch;
}

template <class Real>
bool ReadReal(std::string_view text, char decimalSymbol, Real& number) {
    std::string scratch;
    const std::string_view plain = Plain(text, decimalSymbol, scratch);
    const auto [end, code] = std::from_chars(plain.data(), plain.data() + plain.size(), number);
    return code == std::errc() && end == plain.data() + plain.size();
}

}  // namespace

bool ScanNumber(std::string_view text, char decimalSymbol, NumberShape& shape) {
    shape = {};
    const char* at = text.data();
    const char* const end = at + text.size();
    if (at != end && (*at == '-' || *at == '+')) shape.negative = *at++ == '-';
    const char* const whole = at;
    for (; at != end && IsDigit(*at); ++at) TakeDigit(shape, *at);
    const std::ptrdiff_t wholeDigits = at - whole;
    shape.isPadded = wholeDigits > 1 && *whole == '0';
    shape.isWhole = at == end && wholeDigits > 0;
    if (at == end) return shape.isWhole;

    std::ptrdiff_t fractionDigits = 0;
    if (*at == decimalSymbol) {
        const char* const fraction = ++at;
        for (; at != end && IsDigit(*at); ++at) TakeDigit(shape, *at);
        fractionDigits = at - fraction;
        if (fractionDigits > kFarExponent) return false;
        shape.exponent -= static_cast<int>(fractionDigits);
    }
    if (wholeDigits + fractionDigits == 0) return false;
    if (at == end) return true;
    shape.hasExponent = true;
    return (*at == 'E' || *at == 'e') && TakeExponent(at + 1, end, shape);
}

bool FitsLong(const NumberShape& shape) {
    const std::uint64_t limit = shape.negative ? 2'147'483'648u : 2'147'483'647u;
    return shape.isWhole && !shape.isPadded && shape.digits <= 10 && shape.mantissa <= limit;
}

bool FitsDouble(const NumberShape& shape) {
    if (shape.isPadded || shape.digits > kMaxTypedDigits) return false;
    const int power = shape.exponent + shape.digits;  // of ten, above the number
    return shape.digits == 0 || (power <= std::numeric_limits<double>::max_exponent10 &&
                                 power > std::numeric_limits<double>::min_exponent10);
}

bool WholeOf(const NumberShape& shape, std::int64_t& number) {
    std::uint64_t magnitude = shape.mantissa;
    if (shape.digits > kExactMantissaDigits) return false;
    if (shape.exponent > 0 && magnitude > 0) {
        for (int k = 0; k < shape.exponent; ++k) {
            if (k > kExactMantissaDigits || magnitude > UINT64_MAX / 10) return false;
            magnitude *= 10;
        }
    } else if (shape.exponent < -kExactMantissaDigits) {
        magnitude = 0;  // below a half: 19 digits reach no further
    } else if (shape.exponent < 0) {
        std::uint64_t divisor = 1;
        for (int k = shape.exponent; k < 0; ++k) divisor *= 10;
        const std::uint64_t rest = magnitude % divisor, half = divisor / 2;
        magnitude /= divisor;
        if (rest > half || (rest == half && magnitude % 2 == 1)) ++magnitude;
    }
    if (magnitude > static_cast<std::uint64_t>(INT64_MAX)) return false;
    number = shape.negative ? -static_cast<std::int64_t>(magnitude) : static_cast<std::int64_t>(magnitude);
    return true;
}

bool DoubleOf(const NumberShape& shape, std::string_view text, char decimalSymbol, double& number) {
    if (shape.digits > kMaxTypedDigits || shape.exponent < -kExactTens || shape.exponent > kExactTens) {
        return ReadReal(text, decimalSymbol, number);
    }
    number = static_cast<double>(shape.mantissa);  // exact, and so is one step with an exact power of ten
    number = shape.exponent < 0 ? number / kTens[static_cast<std::size_t>(-shape.exponent)]
                                : number * kTens[static_cast<std::size_t>(shape.exponent)];
    if (shape.negative) number = -number;
    return true;
}

bool SingleOf(std::string_view text, char decimalSymbol, float& number) {
    return ReadReal(text, decimalSymbol, number);
}

}  // namespace varnel::text
