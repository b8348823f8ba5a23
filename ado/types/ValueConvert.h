// Conversions between kinds of values: what happens when a value is assigned to a field or a parameter of another type.
#pragma once

#include <optional>
#include <string_view>

#include "ado/types/DataTypeEnum.h"
#include "ado/types/Value.h"

namespace varnel {

/// Sets into to from, converted to what a column of this type holds; Null stays Null.
/// adVariant and adEmpty take the value as it is. A Boolean into a number is 1 or 0, any non-zero number is True.
/// A text into a number, moment, Boolean or GUID must read as one. A number or moment into a text becomes its default
/// text, bytes into a text are read as UTF-16, low byte first. Bytes into a number and the like never convert.
/// A fraction into an integer type is refused, never rounded away: it fails like an out-of-range number ("Overflow").
/// A currency or decimal into another exact type keeps all digits or fails. from and into may not be the same object.
/// Throws Error{Conversion}: "Type mismatch", "Overflow", or what is wrong with the UTF-16; a Failure raises its text.
void ConvertValue(const Value& from, DataTypeEnum type, Value& into);

/// The number that a value is, for counts and repository fields. Booleans count 1 or 0.
/// Throw Error{Conversion}: "Invalid use of Null", "Type mismatch", "Overflow".
double ToDouble(const Value& value);
bool ToBoolean(const Value& value);
/// Rounded to the nearest whole number, ties to even.
std::int64_t ToInteger(const Value& value);

/// Reads a number as a person writes it: blanks around, sign, digits, one point, E exponent. Nothing else.
std::optional<double> ParseDouble(std::string_view text);
/// Reads a moment: "11/18/2026 4:23:05 PM", "2026-11-18", "2026-11-18 16:23:05.25", "2026-11-18T16:23:05",
/// "16:23:05", "4:23 PM" and "18-Nov-2026"; month before day, the other way round only when the first part exceeds 12.
/// Two-digit years 00 to 29 are 2000s, 30 to 99 are 1900s. A time alone is on day 0.
std::optional<DateTime> ParseDateTime(std::string_view text);

}  // namespace varnel
