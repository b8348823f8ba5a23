// Index keys of texts: bytes that sort as Access sorts the texts (without regard to case and width).
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "providers/access/TableDefinition.h"

namespace varnel::access {

/// A key looks at this many UTF-16 units of a text.
inline constexpr std::size_t kTextKeyUnits = 255;

/// Appends the key of a text that is not null, its leading 7F or 80 included. utf8: well-formed.
void AppendTextKey(std::string& key, std::string_view utf8, bool ascending);
/// The same of UTF-16 units.
void AppendTextKey(std::string& key, std::span<const char16_t> units, bool ascending);

/// True when the keys that this program can build are the ones that the sort order wants.
bool CanBuildTextKeys(const SortOrder& order);
/// "1045, version 1" for error texts.
std::string SortOrderName(const SortOrder& order);

}  // namespace varnel::access
