// Writes what ReadStoredValues.h reads.
#pragma once

#include <string>

#include "tools/sessionfile/Passwords.h"
#include "tools/sessionfile/SessionDefinition.h"
#include "tools/sessionfile/TomlText.h"

namespace varnel::admin {

/// The keys stored and stored_null as "key = value" parts of a table, none when there is nothing to store.
std::vector<std::string> StoredKeys(const StoredValues& values);
/// A [[stored_session]] block of a session that is given by its rows.
std::string StoredSessionText(const SessionDefinition& session, Passwords passwords);

}  // namespace varnel::admin
