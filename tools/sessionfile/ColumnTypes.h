// The type names that a column of a session file may have, and the sizes that go without saying.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace varnel::admin {

/// The name as repositories store it ("VarWchar"), from one written in any case; nothing for an unknown name.
std::optional<std::string> StoredTypeName(std::string_view written);
/// All names, separated by commas, for error texts.
std::string AllTypeNames();
/// True for texts, bytes and exact numbers whose size cannot be guessed.
bool NeedsWidth(std::string_view storedName);
/// Digits of numbers, bytes of everything else; 0 where a size has no meaning. For types that do not need a width.
std::int32_t UsualWidth(std::string_view storedName);

}  // namespace varnel::admin
