// Sessions with a text target: every source table becomes a text file, in the delimited or the fixed-width layout.
// Start here. Needs the session model filled; writes the session log, the window and the output files.
#pragma once

#include <string>
#include <string_view>

namespace varnel {

/// Exports the session's tables. logFileName: the session's log path; empty means no log. Every failure is logged and
/// counted over the whole run; the 51st ends it.
void ExportToText(const std::string& logFileName);
/// The same for a session whose source is text files too: cells follow the stored output type of each column.
void ExportTextToText(const std::string& logFileName);

/// The export's log writer: as WriteLog, but "VRCLOSE" closes the log, and a failure of the log is ignored.
void WriteExportLog(const std::string& logFile, std::string_view msg);

}  // namespace varnel
