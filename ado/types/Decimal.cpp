#include "ado/types/Decimal.h"

#include <array>
#include <charconv>
#include <cmath>
#include <system_error>

#include "ado/types/DecimalReading.h"
#include "platform/Error.h"

namespace varnel {
namespace {

constexpr std::uint64_t kTenTo19 = 10'000'000'000'000'000'000u;

constexpr std::array<UInt128, kMaxDecimalDigits + 1> MakePowersOfTen() {
    std::array<UInt128, kMaxDecimalDigits + 1> powers{1};
    for (std::size_t k = 1; k < powers.size(); ++k) powers[k] = powers[k - 1] * 10;
    return powers;
}
constexpr auto kTenTo = MakePowersOfTen();

[[noreturn]] void ThrowOverflow() {
    throw Error(ErrorKind::Conversion, "", "Overflow");
}

/// The digits of magnitude, most significant first, at the end of block.
std::string_view Digits(UInt128 magnitude, std::array<char, 40>& block) {
    char* const end = block.data() + block.size();
    char* first = end;
    while (magnitude >= kTenTo19) {
        auto low = static_cast<std::uint64_t>(magnitude % kTenTo19);
        magnitude /= kTenTo19;
        for (int k = 0; k < 19; ++k, low /= 10) *--first = static_cast<char>('0' + low % 10);
    }
    for (auto high = static_cast<std::uint64_t>(magnitude); high != 0; high /= 10) {
        *--first = static_cast<char>('0' + high % 10);
    }
    return {first, static_cast<std::size_t>(end - first)};
}

/// The same number with the smallest scale that holds it.
Decimal Shortest(Decimal number) {
    if (number.magnitude == 0) return {};
    while (number.scale > 0 && number.magnitude % 10 == 0) {
        number.magnitude /= 10;
        --number.scale;
    }
    return number;
}

/// What a text's digits say: a magnitude that ends in no zero, times a power of ten.
struct DigitScan {
    UInt128 magnitude = 0;
    int digits = 0;      // of magnitude
    int zeros = 0;       // zeros after it that are not in it yet
    int afterPoint = 0;  // digits behind the point, those zeros included
    bool anyDigit = false;
    bool tooLong = false;

    void Take(char digit) {
        anyDigit = true;
        if (digit == '0') {
            if (digits > 0) ++zeros;
            return;
        }
        if (digits + zeros + 1 > kMaxDecimalDigits) {
            tooLong = true;
            return;
        }
        magnitude = magnitude * kTenTo[static_cast<std::size_t>(zeros) + 1] + static_cast<unsigned>(digit - '0');
        digits += zeros + 1;
        zeros = 0;
    }
};

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Reads an exponent, E and all, at the front of text; false when what is there is none.
bool TakeExponent(std::string_view& text, int& exponent) {
    if (text.empty()) return true;
    if (text.front() != 'e' && text.front() != 'E') return false;
    text.remove_prefix(1);
    const bool negative = !text.empty() && text.front() == '-';
    if (negative || (!text.empty() && text.front() == '+')) text.remove_prefix(1);
    if (text.empty()) return false;
    constexpr int kFarTooLarge = 100'000;
    while (!text.empty() && IsDigit(text.front())) {
        if (exponent < kFarTooLarge) exponent = exponent * 10 + (text.front() - '0');
        text.remove_prefix(1);
    }
    if (negative) exponent = -exponent;
    return text.empty();
}

/// magnitude times ten to the power of exponent, where 38 digits hold it.
DecimalReading Assemble(const DigitScan& scan, int exponent, bool negative, Decimal& number) {
    number = Decimal{scan.magnitude, 0, negative};
    if (exponent > 0) {
        if (scan.digits + exponent > kMaxDecimalDigits) return DecimalReading::TooLong;
        number.magnitude *= kTenTo[static_cast<std::size_t>(exponent)];
    } else {
        if (-exponent > kMaxDecimalDigits) return DecimalReading::TooLong;
        number.scale = static_cast<std::uint8_t>(-exponent);
    }
    return DecimalReading::Number;
}

template <class Float>
bool OfShortest(Float number, Decimal& decimal) {
    std::array<char, 32> text;
    const auto written = std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::scientific);
    return std::isfinite(number) && ReadDecimal({text.data(), static_cast<std::size_t>(written.ptr - text.data())},
                                                decimal) == DecimalReading::Number;
}

/// The usual case of a double without a way through its text: up to six decimal places and 15 digits. A decimal of so
/// few digits that reads back as the number is its shortest one.
bool OfFewDigits(double number, Decimal& decimal) {
    constexpr double kLeastOf16Digits = 1e15;
    double power = 1;
    for (std::uint8_t scale = 0; scale <= 6; ++scale, power *= 10) {
        const double whole = std::nearbyint(number * power);
        if (!(std::fabs(whole) < kLeastOf16Digits)) return false;
        if (whole / power != number) continue;
        decimal = Decimal{static_cast<std::uint64_t>(std::fabs(whole)), scale, whole < 0};
        return true;
    }
    return false;
}

/// The number times ten to the power of scale, rounded with ties to even; false when that passes 64 bits.
bool FitsAtScale(const Decimal& number, int scale, std::int64_t& scaled) {
    const Decimal rounded = RoundedToScale(number, scale);
    const UInt128 limit = (UInt128{1} << 63) - (rounded.negative ? 0 : 1);
    const UInt128 factor = kTenTo[static_cast<std::size_t>(scale - rounded.scale)];
    if (rounded.magnitude > limit / factor) return false;
    const auto magnitude = static_cast<std::uint64_t>(rounded.magnitude * factor);
    scaled = static_cast<std::int64_t>(rounded.negative ? std::uint64_t{0} - magnitude : magnitude);
    return true;
}

}  // namespace

bool operator==(const Decimal& a, const Decimal& b) {
    const Decimal left = Shortest(a), right = Shortest(b);
    return left.magnitude == right.magnitude && left.scale == right.scale && left.negative == right.negative;
}

DecimalReading ReadDecimal(std::string_view text, Decimal& number) {
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    const bool negative = !text.empty() && text.front() == '-';
    if (negative || (!text.empty() && text.front() == '+')) text.remove_prefix(1);
    DigitScan scan;
    bool behindPoint = false;
    for (; !text.empty() && (IsDigit(text.front()) || (text.front() == '.' && !behindPoint)); text.remove_prefix(1)) {
        if (text.front() == '.') {
            behindPoint = true;
        } else {
            scan.Take(text.front());
            if (behindPoint) ++scan.afterPoint;
        }
    }
    int exponent = 0;
    if (!scan.anyDigit || !TakeExponent(text, exponent)) return DecimalReading::NoNumber;
    if (scan.tooLong) return DecimalReading::TooLong;
    if (scan.magnitude == 0) {
        number = {};
        return DecimalReading::Number;
    }
    return Assemble(scan, exponent + scan.zeros - scan.afterPoint, negative, number);
}

bool ParseDecimal(std::string_view text, Decimal& number) {
    const DecimalReading reading = ReadDecimal(text, number);
    if (reading == DecimalReading::TooLong) ThrowOverflow();
    return reading == DecimalReading::Number;
}

void AppendDecimalText(std::string& out, const Decimal& number) {
    const Decimal shortest = Shortest(number);
    std::array<char, 40> block;
    const std::string_view digits = Digits(shortest.magnitude, block);
    const std::size_t places = shortest.scale;
    if (shortest.negative) out += '-';
    if (digits.size() <= places) {
        out += '0';
    } else {
        out.append(digits.substr(0, digits.size() - places));
    }
    if (places == 0) return;
    out += '.';
    if (digits.size() < places) out.append(places - digits.size(), '0');
    out.append(digits.substr(digits.size() > places ? digits.size() - places : 0));
}

double ToDouble(const Decimal& number) {
    constexpr UInt128 kExactlyHeld = UInt128{1} << 53;
    constexpr int kExactPowers = 22;  // ten to this power is exact as a double
    if (number.magnitude <= kExactlyHeld && number.scale <= kExactPowers) {
        const double exact = static_cast<double>(number.magnitude) / static_cast<double>(kTenTo[number.scale]);
        return number.negative && number.magnitude != 0 ? -exact : exact;
    }
    std::array<char, 40> block;
    const std::string_view digits = Digits(number.magnitude, block);
    std::array<char, 64> text;
    char* end = text.data();
    if (number.negative) *end++ = '-';
    end += digits.copy(end, digits.size());
    *end++ = 'e';
    end = std::to_chars(end, text.data() + text.size(), -static_cast<int>(number.scale)).ptr;
    double result = 0;
    std::from_chars(text.data(), end, result);
    return result;
}

bool DecimalOfShortest(double number, Decimal& decimal) {
    return OfFewDigits(number, decimal) || OfShortest(number, decimal);
}
bool DecimalOfShortest(float number, Decimal& decimal) {
    return OfShortest(number, decimal);
}

Decimal DecimalFromDouble(double number) {
    Decimal result;
    if (!DecimalOfShortest(number, result)) ThrowOverflow();
    return result;
}

Decimal DecimalFromInt64(std::int64_t number) {
    const auto bits = static_cast<std::uint64_t>(number);
    return {number < 0 ? std::uint64_t{0} - bits : bits, 0, number < 0};
}

Decimal DecimalFromCurrency(std::int64_t scaled) {
    Decimal number = DecimalFromInt64(scaled);
    number.scale = 4;
    return number;
}

std::int64_t CurrencyFromDecimal(const Decimal& number) {
    std::int64_t scaled = 0;
    if (!FitsCurrency(number, scaled)) ThrowOverflow();
    return scaled;
}

bool FitsCurrency(const Decimal& number, std::int64_t& scaled) {
    return FitsAtScale(number, 4, scaled);
}
bool FitsInt64(const Decimal& number, std::int64_t& whole) {
    return FitsAtScale(number, 0, whole);
}

Decimal RoundedToScale(const Decimal& number, int scale) {
    if (number.scale <= scale) return number;
    const int kept = scale < 0 ? 0 : scale;
    const UInt128 divisor = kTenTo[static_cast<std::size_t>(number.scale - kept)];
    Decimal rounded{number.magnitude / divisor, static_cast<std::uint8_t>(kept), number.negative};
    const UInt128 twice = number.magnitude % divisor * 2;
    if (twice > divisor || (twice == divisor && rounded.magnitude % 2 != 0)) ++rounded.magnitude;
    if (rounded.magnitude == 0) rounded.negative = false;
    return rounded;
}

int IntegerDigits(const Decimal& number) {
    std::array<char, 40> block;
    return static_cast<int>(Digits(number.magnitude / kTenTo[number.scale], block).size());
}

}  // namespace varnel
