// Values as numbers of which no digit is lost, and the refusal of those that would lose one.
#pragma once

#include <cstdint>

#include "ado/types/DataTypeEnum.h"
#include "ado/types/Decimal.h"
#include "ado/types/Value.h"

namespace varnel {

/// Throw Error{Conversion} "Type mismatch: 'abc' does not convert to Integer", the value cut to 40 characters.
[[noreturn]] void RefuseMismatch(const Value& from, DataTypeEnum type);
[[noreturn]] void RefuseOverflow(const Value& from, DataTypeEnum type);

/// The number that from is, exactly; from is neither Null nor a Failure. type is the one that a refusal names.
/// Floats count with the digits of their default text, a moment as its automation date.
Decimal ExactDecimal(const Value& from, DataTypeEnum type);
std::int64_t ExactWhole(const Value& from, DataTypeEnum type);
/// The value times 10,000.
std::int64_t ExactCurrency(const Value& from, DataTypeEnum type);
/// A whole number of 0 to 2^64 - 1.
Decimal ExactUnsigned64(const Value& from, DataTypeEnum type);
/// A text of up to 17 digits is taken as printed from a double; any other number must be held without loss.
double ExactDouble(const Value& from, DataTypeEnum type);
/// A double is held when it equals the single or has the same default text.
float ExactSingle(const Value& from, DataTypeEnum type);

}  // namespace varnel
