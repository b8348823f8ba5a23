// What the check needs to know about a column's type: its sort, its digits, the length of its texts.
#pragma once

#include <cstdint>
#include <string>

#include "ado/types/Column.h"

namespace varnel::admin {

enum class TypeSort : std::uint8_t { Whole, Exact, Float, Moment, Boolean, Text, Bytes, Guid, Other };

TypeSort SortOf(DataTypeEnum type);

/// Digits before and after the point that a column holds. places: -1 for as many as there are (floats).
struct DigitRange {
    int before = 0;
    int places = 0;
    bool isOpen = false;  ///< any number
};
/// pointTakesPlace: the precision is a width in characters, point and sign included, as in FoxPro tables.
DigitRange DigitsOf(const ColumnInfo& column, bool pointTakesPlace = false);

/// "-32768 to 32767" for a whole type.
std::string RangeText(DataTypeEnum type);
/// The longest default text of a value of this type that is no text; 0 when it is unknown.
std::int64_t TextLengthOf(const ColumnInfo& column);
/// "text of 40", "Integer", "Numeric(10,2)": how the check names a column's type.
std::string TypeText(const ColumnInfo& column);

}  // namespace varnel::admin
