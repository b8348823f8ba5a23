// A polled folder of text files as table and column entries of the session: the session's one stored table is the
// template for every file that matches. Needs RepoConn open and RepoRs closed, and leaves RepoRs closed.
#pragma once

#include <cstdint>
#include <string>

namespace varnel {

/// What is done to the folder itself: a run writes Schema.ini into it, a check leaves it as it is.
enum class PolledFolder { WriteSchemaIni, LeaveAsItIs };

/// Lists the session's folder and makes one entry of SourceTables and DestTables per matching file, the first one in
/// entry 0. Without a match it says so in the window and clears RepoOk.
/// Throws Error: the folder or Schema.ini, a template that is missing or does not convert.
void PollFolderTables(std::int16_t SessionID, PolledFolder folder = PolledFolder::WriteSchemaIni);
/// Appends a copy of all column mappings of the session to Columns, for the file TableName with the number TabID.
void PollFolderColumns(std::int16_t SessionID, std::int16_t TabID, const std::string& TableName);

}  // namespace varnel
