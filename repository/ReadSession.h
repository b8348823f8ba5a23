// The three readers that fill the session model from the repository. Each needs RepoConn open and RepoRs closed and
// leaves RepoRs closed. A session that does not exist, or has no tables or columns, only clears RepoOk; everything
// else that is wrong is raised as an Error that names session, table and column.
#pragma once

#include <cstdint>

#include "polling/PollFolder.h"

namespace varnel {

/// Fills SessionDef from the first row of the table sessions with this number.
void ReadSession(std::int16_t SessionID);
/// Fills SourceTables and DestTables from the table vrtabs, and the text-target settings of SessionDef.
/// folder: what is done to a polled one.
void ReadTables(std::int16_t SessionID, PolledFolder folder = PolledFolder::WriteSchemaIni);
/// Fills Columns from the table SrcDCols.
void ReadColumns(std::int16_t SessionID);

}  // namespace varnel
