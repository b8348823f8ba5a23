// Between a session definition and its rows in the repository.
#pragma once

#include <cstdint>
#include <string>

#include "tools/repository/StoredRows.h"
#include "tools/sessionfile/SessionDefinition.h"

namespace varnel::admin {

/// The rows that a definition makes. Texts that the program requires are stored as "" when there is nothing to store.
StoredRows RowsOf(const SessionDefinition& session);
/// The definition that rows make; a Null reads as "", 0 or False, whatever the program makes of it.
/// Throws Error{Misuse} when there is no sessions row.
SessionDefinition DefinitionOf(const StoredRows& rows);

/// The names of required columns that are Null in the rows ("sessions.SourceConnStr"): why a run would fail.
std::vector<std::string> MissingValues(const StoredRows& rows);

}  // namespace varnel::admin
