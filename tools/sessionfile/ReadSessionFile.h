// Reads session files: TOML texts that define one or several load sessions (docs/session-file.md lists the keys).
#pragma once

#include <string>
#include <vector>

#include "tools/sessionfile/SessionDefinition.h"

namespace varnel::admin {

/// The sessions of all files, in order. Throws Error{Syntax} whose text is one line "file:line: fault and remedy" per
/// fault of any file (also for two sessions with one number), Error{Io} for a file that cannot be read.
std::vector<SessionDefinition> ReadSessionFiles(const std::vector<std::string>& files);

/// The sessions of one text. Throws Error{Syntax} with the first fault.
std::vector<SessionDefinition> ReadSessionText(const std::string& text);

}  // namespace varnel::admin
