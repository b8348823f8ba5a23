#include "providers/foxpro/NumberField.h"

#include <algorithm>
#include <string>

#include "ado/types/DecimalReading.h"
#include "platform/Error.h"

namespace varnel::foxpro {
namespace {

constexpr int kFastDigits = 19;  // of any 64-bit number
constexpr UInt128 kMostDigits = ~UInt128{0};

bool IsFill(char c) {
    return c == ' ' || c == '\0';
}

std::string_view Trimmed(std::string_view text) {
    while (!text.empty() && IsFill(text.front())) text.remove_prefix(1);
    while (!text.empty() && IsFill(text.back())) text.remove_suffix(1);
    return text;
}

/// Sign, up to 19 digits, one point. False when there is anything else.
bool ReadPlain(std::string_view text, Decimal& number) {
    std::size_t at = 0;
    const bool negative = text[0] == '-';
    if (negative || text[0] == '+') ++at;
    std::uint64_t magnitude = 0;
    int digits = 0, scale = -1;
    for (; at < text.size(); ++at) {
        const unsigned digit = static_cast<unsigned char>(text[at]) - unsigned{'0'};
        if (digit <= 9) {
            magnitude = magnitude * 10 + digit;
            ++digits;
            if (scale >= 0) ++scale;
        } else if (text[at] == '.' && scale < 0) {
            scale = 0;
        } else {
            return false;
        }
    }
    if (digits == 0 || digits > kFastDigits) return false;
    number.magnitude = magnitude;
    number.scale = static_cast<std::uint8_t>(std::max(scale, 0));
    number.negative = negative && magnitude != 0;
    return true;
}

CellFault ReadOdd(std::string_view text, Decimal& number) {
    if (text.find_first_not_of('*') == std::string_view::npos) return CellFault::Overflow;
    std::string digits(text);
    std::erase_if(digits, IsFill);
    switch (ReadDecimal(digits, number)) {
        case DecimalReading::Number:
            return CellFault::None;
        case DecimalReading::TooLong:
            return CellFault::Overflow;
        default:
            return CellFault::NotANumber;
    }
}

/// Removes the last digit.
template <typename Number>
char TakeDigit(Number& digits) {
    const Number rest = digits / 10;
    const auto digit = static_cast<int>(digits - rest * 10);
    digits = rest;
    return static_cast<char>('0' + digit);
}

/// The number's digits at the scale of the field; false when it has decimals beyond that.
bool ScaleTo(const Decimal& number, int scale, UInt128& digits, bool& overflows) {
    digits = number.magnitude;
    overflows = false;
    for (int k = number.scale; k > scale; --k) {
        if (TakeDigit(digits) != '0') return false;
    }
    for (int k = number.scale; k < scale; ++k) {
        overflows |= digits > kMostDigits / 10;
        digits *= 10;
    }
    return true;
}

/// A place that is filled from its end on.
struct Backwards {
    std::span<std::uint8_t> into;
    std::size_t at = into.size();
    bool fits = true;

    void Put(char c) {
        fits = fits && at > 0;
        if (at > 0) into[--at] = static_cast<std::uint8_t>(c);
    }
};

template <typename Number>
void PutDigits(Backwards& place, Number digits, int decimals) {
    for (int left = decimals; left > 0; --left) place.Put(TakeDigit(digits));
    if (decimals > 0) place.Put('.');
    while (digits != 0 && place.fits) place.Put(TakeDigit(digits));
}

}  // namespace

void PutNumber(const DbfField& field, std::span<std::uint8_t> into, const Decimal& number) {
    UInt128 digits = 0;
    bool overflows = false;
    if (!ScaleTo(number, field.decimals, digits, overflows)) {
        throw Error(ErrorKind::Constraint, "",
                    "the number has more than " + std::to_string(field.decimals) + " decimals");
    }
    Backwards place{into};
    place.fits = !overflows;
    if (digits <= UINT64_MAX) {  // most numbers need no 128-bit division
        PutDigits(place, static_cast<std::uint64_t>(digits), field.decimals);
    } else {
        PutDigits(place, digits, field.decimals);
    }
    // The zero before the point, where there is room for it.
    const bool isFraction = place.at == into.size() - (field.decimals > 0 ? field.decimals + 1u : 0u);
    if (isFraction && (field.decimals == 0 || place.at > (number.negative ? 1u : 0u))) place.Put('0');
    if (number.negative) place.Put('-');
    if (!place.fits) {
        throw Error(ErrorKind::Constraint, "",
                    "Numeric overflow. The number is too wide for " + std::to_string(field.length) + " characters");
    }
    std::fill_n(into.begin(), place.at, std::uint8_t{' '});
}

CellFault ReadNumberField(std::string_view text, Decimal& number) {
    const std::string_view trimmed = Trimmed(text);
    if (trimmed.empty()) {
        number = Decimal();
        return CellFault::None;
    }
    return ReadPlain(trimmed, number) ? CellFault::None : ReadOdd(trimmed, number);
}

}  // namespace varnel::foxpro
