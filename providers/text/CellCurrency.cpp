#include "providers/text/CellCurrency.h"

#include <cstdint>

namespace varnel::text {
namespace {

constexpr int kDecimals = 4;

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

bool TakePrefix(std::string_view& text, std::string_view prefix) {
    if (prefix.empty() || !text.starts_with(prefix)) return false;
    text.remove_prefix(prefix.size());
    return true;
}

bool TakeSuffix(std::string_view& text, std::string_view suffix) {
    if (suffix.empty() || !text.ends_with(suffix)) return false;
    text.remove_suffix(suffix.size());
    return true;
}

/// What stands around the digits of an amount.
struct Dressing {
    int signs = 0, symbols = 0, openings = 0, closings = 0;
    bool negative = false;

    bool IsSound() const { return signs + openings <= 1 && symbols <= 1 && openings == closings; }
};

/// Takes signs, brackets, symbols and blanks off both ends.
Dressing Undress(std::string_view& text, std::string_view symbol) {
    Dressing dressing;
    for (bool more = true; more && !text.empty() && dressing.signs + dressing.symbols < 4;) {
        if (TakePrefix(text, "(")) {
            ++dressing.openings;
        } else if (TakeSuffix(text, ")")) {
            ++dressing.closings;
        } else if (TakePrefix(text, "-") || TakeSuffix(text, "-")) {
            ++dressing.signs;
            dressing.negative = true;
        } else if (TakePrefix(text, "+")) {
            ++dressing.signs;
        } else if (TakePrefix(text, symbol) || TakeSuffix(text, symbol)) {
            ++dressing.symbols;
        } else {
            more = TakePrefix(text, " ") || TakeSuffix(text, " ");
        }
    }
    dressing.negative = dressing.negative || dressing.openings > 0;
    return dressing;
}

/// Sums up scaled amounts without going beyond 64 bits.
class Amount {
public:
    explicit Amount(bool negative) : negative_(negative) {}
    bool AddDigit(char digit) {
        const std::int64_t step = digit - '0';
        return !__builtin_mul_overflow(scaled_, 10, &scaled_) &&
               !__builtin_add_overflow(scaled_, negative_ ? -step : step, &scaled_);
    }
    std::int64_t Scaled() const { return scaled_; }

private:
    bool negative_;
    std::int64_t scaled_ = 0;
};

/// The whole part, with thousands symbols only before groups of three digits.
bool TakeWhole(std::string_view& text, std::string_view thousands, Amount& amount, std::size_t& digits) {
    std::size_t group = 0;
    bool isGrouped = false;
    for (digits = 0; !text.empty();) {
        if (IsDigit(text[0])) {
            if (!amount.AddDigit(text[0])) return false;
            ++digits;
            ++group;
            text.remove_prefix(1);
        } else if (digits > 0 && (isGrouped ? group == 3 : group <= 3) && TakePrefix(text, thousands)) {
            isGrouped = true;
            group = 0;
        } else {
            break;
        }
    }
    return !isGrouped || group == 3;
}

/// The decimals, filled up to four; what follows them may only be zeros.
bool TakeDecimals(std::string_view text, Amount& amount) {
    int taken = 0;
    for (const char digit : text) {
        if (!IsDigit(digit) || (taken >= kDecimals && digit != '0')) return false;
        if (taken < kDecimals && !amount.AddDigit(digit)) return false;
        ++taken;
    }
    for (; taken < kDecimals; ++taken) {
        if (!amount.AddDigit('0')) return false;
    }
    return true;
}

}  // namespace

bool ScanCurrency(std::string_view text, const TextFormat& format, CurrencyShape& shape) {
    shape = {};
    const Dressing dressing = Undress(text, format.currencySymbol);
    if (!dressing.IsSound() || text.empty()) return false;
    Amount amount(dressing.negative);
    const std::string_view all = text;
    std::size_t digits = 0;
    if (!TakeWhole(text, format.currencyThousands, amount, digits)) return false;
    shape.isPadded = digits > 1 && all[0] == '0';
    shape.hasSymbol = dressing.symbols > 0;
    const bool hasPoint = !text.empty() && text[0] == format.currencyDecimal;
    if (!hasPoint && !text.empty()) return false;
    if (hasPoint) text.remove_prefix(1);
    if (digits + text.size() == 0 || !TakeDecimals(text, amount)) return false;
    shape.scaled = amount.Scaled();
    return true;
}

}  // namespace varnel::text
