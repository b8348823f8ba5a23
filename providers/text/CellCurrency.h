// Amounts of money as they stand in text files.
#pragma once

#include <cstdint>
#include <string_view>

#include "providers/text/TextFormat.h"

namespace varnel::text {

struct CurrencyShape {
    std::int64_t scaled = 0;  ///< the amount times 10,000
    bool hasSymbol = false;
    bool isPadded = false;  ///< a zero before further digits of the whole part
};

/// An amount in any of the sixteen forms: a minus sign or brackets, the currency symbol, before or behind the digits,
/// with blanks between them; thousands symbols before groups of three; at most four decimals that are not zero.
/// text: trimmed. False for anything else, and beyond the range of currency.
bool ScanCurrency(std::string_view text, const TextFormat& format, CurrencyShape& shape);

}  // namespace varnel::text
