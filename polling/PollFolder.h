// A polled folder of text files as table and column entries of the session.
#pragma once

#include <cstdint>
#include <string>

namespace varnel {

/// One table entry per file of the session's folder that matches its pattern.
/// This version does not poll folders yet: throws Error{NotSupported}, which ends the run through the error log.
void PollFolderTables(std::int16_t SessionID);
/// One copy of the session's column entries for a further file. Throws as above.
void PollFolderColumns(std::int16_t SessionID, std::int16_t TabID, const std::string& TableName);

}  // namespace varnel
