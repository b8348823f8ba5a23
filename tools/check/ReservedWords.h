// The words that databases keep for themselves: a column or table cannot be called so without quotes.
#pragma once

#include <string>

namespace varnel::admin {

/// True when the target kind ("ORACLE", "FOXPRO" …) refuses name where the load engine writes it without quotes.
bool IsReservedWord(const std::string& kind, const std::string& name);

}  // namespace varnel::admin
