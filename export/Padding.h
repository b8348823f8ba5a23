// Texts of a fixed width.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ado/types/DataTypeEnum.h"
#include "ado/types/Value.h"

namespace varnel {

/// n blanks; "" for a negative n.
std::string BlankString(std::int64_t n);

/// value as text, left-aligned in the width of a type name, padded or cut: 7 for "INTEGER" (any case) and "SMALLINT"
/// (upper case only), 17 for DOUBLE and LONG, 21 for CURRENCY and MONEY (any case); "" for any other name.
/// raw: default text instead of numeric text. A Null gives blanks.
/// Throws Error{Conversion} when raw is false and value is neither a number nor a date.
std::string PadNumberByTypeName(const Value& value, std::string_view typeName, bool raw);

/// The same, right-aligned in the width of an ADO type: 7 for 2 and 3, 17 for 5, 21 for 6; "" for any other type.
std::string PadNumberByFieldType(const Value& value, DataTypeEnum typeCode, bool raw);

/// The width of a number's cell by its type, as above; 0 for a type without one.
int NumberWidth(DataTypeEnum typeCode);

/// Appends text cut to its first width characters, or padded with blanks on the right.
void AppendCutOrPadded(std::string& out, std::string_view utf8, std::int64_t width);

}  // namespace varnel
