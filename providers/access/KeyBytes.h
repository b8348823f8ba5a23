// Single values as the bytes of index keys.
#pragma once

#include <string>

#include "providers/access/TableDefinition.h"

namespace varnel::access {

/// True when columns of the type can stand in an index.
bool HasKeys(ColumnType type);
void AppendBooleanKey(std::string& key, bool value, bool ascending);

}  // namespace varnel::access
