// Names that the target's dialect cannot take as the load engine writes them.
#pragma once

#include <string_view>

#include "tools/check/TableFacts.h"

namespace varnel::admin {

/// True for what SQL takes without quotes: letters, digits, _, $ and #, no digit first. Letters beyond ASCII count.
bool IsBareName(std::string_view name);

/// The target's table and column names: quotes inside, blanks and reserved words where nothing is quoted, lengths,
/// the same name twice.
void CheckTargetNames(const TableFacts& facts);
/// Source names that the source's dialect cannot take.
void CheckSourceNames(const TableFacts& facts);

}  // namespace varnel::admin
