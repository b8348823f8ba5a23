// The command that looks at everything in a database file.
#pragma once

#include <string>

namespace varnel::admin {

/// Prints what is out of order in the file, a line each, and how much was looked at. Returns true when nothing is.
/// Throws Error when the file cannot be looked at.
bool VerifyCommand(const std::string& file, const std::string& password);

}  // namespace varnel::admin
