// The text forms of the FoxPro dialect, and its rounding: half away from zero.
#pragma once

#include <string>

#include "ado/types/Value.h"

namespace varnel::sql {

/// out = number with so many digits behind the point (negative: tens, hundreds …). Kinds stay as they are.
void RoundFoxPro(const Value& number, int digits, Value& out);

/// STR(): right-aligned in width characters with this many decimals; with fewer when they do not fit, with asterisks
/// when the whole digits do not either.
std::string FoxProStr(const Value& number, int width, int decimals);

/// "01/31/03", and with the time "01/31/03 02:30:00 PM".
std::string FoxProDate(DateTime moment);
std::string FoxProDateTime(DateTime moment);

/// A value of any kind as TRANSFORM() shows it: .T. and .F., 01/31/03, a number without blanks.
std::string FoxProText(const Value& value);

}  // namespace varnel::sql
