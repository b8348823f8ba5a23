// How an expression takes a value as a number, a text, a moment or a truth. These are the generous forms, in which a
// text may stand for a number; a stricter dialect asks for the kind first.
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

/// Negative, 0 or positive, as everything that compares here.
int CompareDecimals(const Decimal& a, const Decimal& b);
/// Exact kinds exactly, everything else as doubles. Both are what NumberOf takes.
int CompareNumbers(const Value& a, const Value& b);
int CompareMoments(DateTime a, DateTime b);
/// Both are bytes.
int CompareBytes(const Value& a, const Value& b);

}  // namespace varnel::sql
