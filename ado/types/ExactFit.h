// Digits that a column cannot hold.
#pragma once

#include "ado/types/Provider.h"

namespace varnel {

/// Servers round digits beyond a column's scale without a word; such a value is refused instead. Throws
/// Error{Conversion} naming column and value.
void RefuseRounding(const ColumnInfo& column, const Value& value);

}  // namespace varnel
