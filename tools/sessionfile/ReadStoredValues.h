// Reads what a session file says in the repository's own words: single values, and sessions given by their rows.
#pragma once

#include <toml++/toml.h>

#include "tools/sessionfile/KeyReader.h"
#include "tools/sessionfile/SessionDefinition.h"

namespace varnel::admin {

/// The keys stored = {Column = value, ...} and stored_null = ["Column", ...].
StoredValues ReadStoredValues(KeyReader& keys, Faults& faults);
/// A [[stored_session]] block: id, sessions = {...}, vrtabs and SrcDCols as lists of tables.
SessionDefinition ReadStoredSession(const toml::table& node, Faults& faults);

}  // namespace varnel::admin
