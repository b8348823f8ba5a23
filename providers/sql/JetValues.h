// How the Jet dialect takes a value as a number, a text, a moment or a truth, and how it compares two of them.
// Everything throws Error{Conversion}: "Type mismatch in expression.", "Overflow".
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "ado/types/Value.h"

namespace varnel::sql {

[[noreturn]] void ThrowTypeMismatch();

/// True is -1, a moment its day number, a text the number it reads as. value must not be Null.
double NumberOf(const Value& value);
/// The same, rounded to the nearest whole number, ties to even.
std::int64_t WholeOf(const Value& value);
/// A number is a day number, a text what it reads as. value must not be Null.
DateTime MomentOf(const Value& value);
/// Default text; True is "-1". Null is "". The result lies in value or in scratch.
std::string_view TextOf(const Value& value, std::string& scratch);
/// Nothing for Null; a number that is not zero is true.
std::optional<bool> TruthOf(const Value& value);
/// A number that must be exact: Boolean, integer, currency, decimal.
bool IsExact(const Value& value);
/// Any kind that is a number, Booleans among them.
bool IsNumber(const Value& value);
Decimal ExactOf(const Value& value);

/// Texts without case. Negative, 0 or positive.
int CompareTexts(std::string_view a, std::string_view b);
int CompareDecimals(const Decimal& a, const Decimal& b);
/// Negative, 0 or positive; nothing when one is Null. A number against a text reads the text as a number, a moment
/// against a text as a moment.
std::optional<int> CompareValues(const Value& a, const Value& b);

/// % any run, _ one character, [a-f] one of a set, [!a-f] or [^a-f] none of it; without case; nothing else is special.
bool MatchesLike(std::string_view text, std::string_view pattern);

}  // namespace varnel::sql
