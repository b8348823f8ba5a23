// The Format function: date pictures, number pictures, named formats and the text signs < and >.
#pragma once

#include <string>
#include <string_view>

#include "ado/types/Value.h"

namespace varnel::sql {

/// value is not Null. Throws Error{Conversion}.
std::string FormatValue(const Value& value, std::string_view picture);

/// d dd ddd dddd m mm mmm mmmm yy yyyy h hh n nn s ss w y q AM/PM am/pm A/P a/p AMPM, \x and "…" as they stand.
/// m and mm are minutes right after h or hh.
std::string FormatMoment(DateTime moment, std::string_view picture);
/// 0 # . , % with up to four sections (positive; negative; zero), \x and "…" as they stand.
std::string FormatNumber(double number, std::string_view picture);

}  // namespace varnel::sql
