// The session's definition, read as a run reads it, without touching anything.
#pragma once

#include <cstdint>
#include <string>

#include "tools/check/Finding.h"

namespace varnel::admin {

/// Fills the session model. What a run cannot read is a fault. Returns whether there is something to look at.
/// Throws Error: no such repository, no such session.
bool ReadDefinition(std::int16_t id, const std::string& repositoryFile, Findings& found);

}  // namespace varnel::admin
