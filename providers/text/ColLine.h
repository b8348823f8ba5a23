// One column line of Schema.ini: Col1="Order No" Long Width 8
#pragma once

#include <string_view>

#include "providers/text/TextFormat.h"

namespace varnel::text {

/// The word for a column's type, "Long"; "Text" for a type that has none.
std::string_view TypeWordOf(DataTypeEnum type);

/// Reads the value of a Col line: a name (in double quotes when it holds blanks), a type word, "Width" and a number of
/// characters; a date type may be followed by its picture. Type and width may be missing.
/// Returns false for anything else.
bool ReadColLine(std::string_view value, ColumnSpec& column);

}  // namespace varnel::text
