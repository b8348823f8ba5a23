// The text of one cell for people and programs.
#pragma once

#include <string>

#include "ado/types/Value.h"

namespace varnel::admin {

/// Moments as ISO dates ("2026-11-18 16:23:05", without the time at midnight), which sort and keep the fraction of a
/// second; all else as default text. Not for Null.
void AppendCell(std::string& out, const Value& value);

}  // namespace varnel::admin
