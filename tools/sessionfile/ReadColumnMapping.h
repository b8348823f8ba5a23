// Reads one element of a table's columns list, in its one-line or its long form.
#pragma once

#include <toml++/toml.h>

#include "tools/sessionfile/KeyReader.h"
#include "tools/sessionfile/SessionDefinition.h"

namespace varnel::admin {

/// needsTargetType: the target table is made from this definition, so every column must say its target type.
ColumnMapping ReadColumnMapping(const toml::node& node, bool needsTargetType, Faults& faults);

}  // namespace varnel::admin
