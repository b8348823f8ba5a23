// Sessions with a text target: every source table becomes a text file.
#pragma once

#include <string>

namespace varnel {

/// Exports the session's tables. logFileName: the session's log path.
/// This version does not write text files yet: throws Error{NotSupported}, which ends the run through the error log.
void ExportToText(const std::string& logFileName);

}  // namespace varnel
