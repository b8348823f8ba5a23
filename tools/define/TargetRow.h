// What a whole row of a target can hold.
#pragma once

#include <string_view>

#include "tools/sessionfile/SessionDefinition.h"

namespace varnel::admin {

/// Makes the widest texts of a table long ones until a row fits into what the kind of target allows for all columns
/// together, and says in comments what a table of so many columns, or of such a mixture of columns, cannot carry.
void FitRow(std::string_view kind, TableMapping& table);

}  // namespace varnel::admin
