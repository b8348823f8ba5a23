// Numbers written as digits in a field.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "ado/types/Decimal.h"
#include "providers/foxpro/FieldReader.h"

namespace varnel::foxpro {

/// Reads a number as fields hold it: blanks and NULs around, sign, digits, point, exponent; blanks inside only when it
/// is a number without them. A blank field is 0. All digits are kept. Stars are an overflow.
CellFault ReadNumberField(std::string_view text, Decimal& number);

/// Writes a number right-aligned with the field's decimals. into: as long as the field. Throws Error{Constraint} when
/// the field is too narrow for it or would lose decimals.
void PutNumber(const DbfField& field, std::span<std::uint8_t> into, const Decimal& number);

}  // namespace varnel::foxpro
