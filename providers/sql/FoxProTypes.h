// The type words of the FoxPro dialect.
#pragma once

#include <string_view>

#include "providers/sql/TokenCursor.h"

namespace varnel::sql {

struct FoxProType {
    char letter = 'C';
    int width = -1;     ///< -1: not written
    int decimals = -1;  ///< -1: not written
};

/// Reads "C(10)", "NUMERIC(10,2)", "DateTime": letters, short and long words, without case.
/// Throws Error{Syntax} for another word, for a width or decimals out of range, and for a character type without width.
FoxProType TakeFoxProType(TokenCursor& tokens);

}  // namespace varnel::sql
