// What SQLite cannot do by itself, registered with a connection: varnel_value runs an expression of a dialect,
// varnel_fold gives the form of a value by which texts are grouped and ordered without case.
#pragma once

#include <sqlite3.h>

namespace varnel::sql {

/// The type name of the pointer that varnel_value and the aggregates take as their first argument.
inline constexpr const char* kProgramPointer = "varnel program";

/// Throws Error when SQLite refuses, which it does only without memory.
void RegisterFunctions(sqlite3* database);

}  // namespace varnel::sql
