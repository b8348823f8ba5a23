// The session log: one block per run, appended to the file that the session names.
#pragma once

#include <string>
#include <string_view>

namespace varnel {

/// The log path that the load engine passes with every line; the load driver writes it, the load engine reads it.
extern std::string EngineLogFile;

/// LogFile empty: does nothing. Msg "VROPEN" (exactly): opens LogFile for appending as the one log and writes the head
/// of the block. Any other Msg: writes it as one line, ended by CR LF, to the open log.
/// Throws Error{Io}: the file's own failure, "File already open", "Bad file name or number" while none is open.
void WriteLog(const std::string& LogFile, std::string_view Msg);
/// Closes the log; nothing happens when none is open. Throws Error{Io} on a late write failure.
void CloseLog();
/// "Time Elapsed" and other stamps: the current date and time as general date.
std::string NowText();

/// Writes Log with WriteLog(EngineLogFile, …) and, when the window is shown, appends Window as a line of its own.
void LogAndShow(std::string_view Log, std::string_view Window);

}  // namespace varnel
