// Dates to a tenth of a microsecond, stored as text: 19 digits of days since 0001-01-01, ':', 19 digits of 100
// nanoseconds of the day, ':', '7', a zero byte.
#pragma once

#include "ado/types/Value.h"
#include "providers/access/StoredBytes.h"

namespace varnel::access {

/// A date that a Value cannot hold to the last digit is a fault.
Fault DecodeExtendedDate(std::span<const std::uint8_t, 42> stored, Value& value);

}  // namespace varnel::access
