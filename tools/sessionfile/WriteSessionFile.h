// Writes a session definition as the session file that reads back as the same definition.
#pragma once

#include <string>

#include "tools/sessionfile/Passwords.h"
#include "tools/sessionfile/SessionDefinition.h"

namespace varnel::admin {

/// The [[session]] block (a session given by its rows: the [[stored_session]] block), one line per column in its
/// shortest form, with the comments of session, tables and columns. Texts end with a line feed; several sessions of one
/// file may simply follow one another.
std::string SessionFileText(const SessionDefinition& session, Passwords passwords);

}  // namespace varnel::admin
