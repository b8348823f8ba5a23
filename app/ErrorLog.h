// Varnel.log in the application folder: what ended a run before its end.
#pragma once

#include <cstdint>
#include <string>

namespace varnel {

/// Appends "Error Occurred in Running Session ID:" with the number, an empty line and the description. When the file
/// cannot be written the same lines go to standard error, after the reason.
void AppendToErrorLog(std::int16_t SessionID, const std::string& description);

}  // namespace varnel
