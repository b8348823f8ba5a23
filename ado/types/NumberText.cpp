#include "ado/types/NumberText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

#include "ado/types/Decimal.h"

namespace varnel {
namespace {

constexpr int kFirstPlainExponent = -5;
constexpr int kFirstLargeExponent = 15;

/// The significant digits of a positive number; the first stands before the point of digits times ten to exponent.
struct ShortestDigits {
    std::array<char, 20> digits;
    std::size_t count = 0;
    int exponent = 0;

    std::string_view From(std::size_t first) const { return {digits.data() + first, count - first}; }
};

template <class Float>
ShortestDigits DigitsOf(Float positive) {
    std::array<char, 32> text;
    const auto written = std::to_chars(text.data(), text.data() + text.size(), positive, std::chars_format::scientific);
    ShortestDigits result;
    const char* at = text.data();
    for (; *at != 'e'; ++at) {
        if (*at != '.') result.digits[result.count++] = *at;
    }
    const bool negative = at[1] == '-';
    std::from_chars(at + 2, written.ptr, result.exponent);
    if (negative) result.exponent = -result.exponent;
    return result;
}

void AppendPlain(std::string& out, const ShortestDigits& number) {
    if (number.exponent < 0) {
        out += "0.";
        out.append(static_cast<std::size_t>(-number.exponent - 1), '0');
        out.append(number.From(0));
        return;
    }
    const std::size_t before = static_cast<std::size_t>(number.exponent) + 1;
    if (number.count <= before) {
        out.append(number.From(0));
        out.append(before - number.count, '0');
    } else {
        out.append(number.digits.data(), before);
        out += '.';
        out.append(number.From(before));
    }
}

void AppendScientific(std::string& out, const ShortestDigits& number) {
    out += number.digits[0];
    if (number.count > 1) {
        out += '.';
        out.append(number.From(1));
    }
    out += number.exponent < 0 ? "E-" : "E+";
    const int magnitude = std::abs(number.exponent);
    if (magnitude < 10) out += '0';
    AppendIntegerText(out, magnitude);
}

template <class Float>
void AppendFloatText(std::string& out, Float number) {
    constexpr Float kWholeLimit = static_cast<Float>(std::int64_t{1} << std::numeric_limits<Float>::digits);
    if (std::isnan(number)) {
        out += "-1.#IND";
    } else if (std::isinf(number)) {
        out += number < 0 ? "-1.#INF" : "1.#INF";
    } else if (std::fabs(number) < kWholeLimit && std::fabs(number) < Float(1e15) && std::trunc(number) == number) {
        AppendIntegerText(out, static_cast<std::int64_t>(number));
    } else {
        if (number < 0) out += '-';
        const ShortestDigits digits = DigitsOf(std::fabs(number));
        const bool plain = digits.exponent >= kFirstPlainExponent && digits.exponent < kFirstLargeExponent;
        plain ? AppendPlain(out, digits) : AppendScientific(out, digits);
    }
}

}  // namespace

void AppendIntegerText(std::string& out, std::int64_t number) {
    std::array<char, 24> text;
    const auto written = std::to_chars(text.data(), text.data() + text.size(), number);
    out.append(text.data(), written.ptr);
}

void AppendCurrencyText(std::string& out, std::int64_t scaled) {
    std::int64_t fraction = scaled % kCurrencyScale;
    const std::int64_t whole = scaled / kCurrencyScale;
    if (scaled < 0 && whole == 0) out += '-';
    AppendIntegerText(out, whole);
    if (fraction == 0) return;
    if (fraction < 0) fraction = -fraction;
    out += '.';
    for (std::int64_t unit = kCurrencyScale / 10; fraction != 0; unit /= 10) {
        out += static_cast<char>('0' + fraction / unit);
        fraction %= unit;
    }
}

void AppendDoubleText(std::string& out, double number) {
    AppendFloatText(out, number);
}
void AppendSingleText(std::string& out, float number) {
    AppendFloatText(out, number);
}

}  // namespace varnel
