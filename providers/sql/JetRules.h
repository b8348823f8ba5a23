// The Jet dialect's rules: texts compare without case, True is -1, a text beside a number is read as a number.
#pragma once

#include <optional>
#include <string_view>

#include "providers/sql/ExpressionRules.h"

namespace varnel::sql {

/// Texts without case. Negative, 0 or positive.
int CompareTexts(std::string_view a, std::string_view b);
/// Negative, 0 or positive; nothing when one is Null. A number against a text reads the text as a number, a moment
/// against a text as a moment.
std::optional<int> CompareValues(const Value& a, const Value& b);

/// out = a op b for + - * / \ Mod ^ &. Two texts are joined by +; a division by zero gives Null.
void Calculate(Operator op, const Value& a, const Value& b, Value& out);

}  // namespace varnel::sql
