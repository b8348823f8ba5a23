// The FoxPro dialect's rules: texts compare exactly, the shorter one padded with blanks; kinds that do not belong
// together are refused; Null makes a comparison neither true nor false. A date that a table leaves empty is Null.
#pragma once

#include <optional>
#include <string_view>

#include "providers/sql/ExpressionRules.h"

namespace varnel::sql {

/// ansi: = compares whole texts; else up to the end of the shorter one, and only == compares them whole.
/// deletedShown: rows marked as deleted are delivered; which they are cannot be asked then.
const ExpressionRules& FoxProRules(bool ansi, bool deletedShown);

/// Negative, 0 or positive; nothing when one is Null. Throws Error{Conversion} "Operator/operand type mismatch."
std::optional<int> CompareFoxPro(const Value& a, const Value& b);
[[noreturn]] void ThrowOperandMismatch();
/// "Function argument value, type, or count is invalid."
[[noreturn]] void ThrowFoxProArgument();

/// The parts of the dialect's function table, one file each.
std::span<const SqlFunction> FoxProTextFunctions();
std::span<const SqlFunction> FoxProNumberFunctions();
std::span<const SqlFunction> FoxProDateFunctions();
std::span<const SqlFunction> FoxProValueFunctions();

}  // namespace varnel::sql
