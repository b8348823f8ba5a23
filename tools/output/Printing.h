// Standard output, every failure of which is told.
#pragma once

#include <string_view>

namespace varnel::admin {

/// Writes to standard output. Throws Error{Io} when it cannot be written.
void Print(std::string_view text);
/// Sees that all of it has arrived. Throws as Print.
void FinishPrinting();

}  // namespace varnel::admin
