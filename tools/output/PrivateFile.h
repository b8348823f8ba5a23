// Results that hold passwords, written to a file.
#pragma once

#include <string>
#include <string_view>

namespace varnel::admin {

/// Writes a file that only its owner can read (mode 0600), whole or not at all. Throws Error: Misuse with the remedy
/// when the file exists and is not to be replaced, Io.
void WritePrivateFile(const std::string& file, std::string_view text, bool replace);

}  // namespace varnel::admin
