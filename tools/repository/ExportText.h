// One stored session as the session file that makes the same rows again.
#pragma once

#include <string>
#include <vector>

#include "tools/repository/StoredRows.h"
#include "tools/sessionfile/Passwords.h"

namespace varnel::admin {

struct ExportedSession {
    std::string text;
    std::vector<std::string> notes;  ///< what could not be carried; they are comments of the text too
};

/// A [[session]] block, with stored values where its keys do not say all; a session that the keys cannot say at all (a
/// kind of its own, no tables) is a [[stored_session]] block with its rows. The text has been read back and makes the
/// same rows: the order of the columns of one table is kept, that between the tables is not.
/// Throws Error that says why a session cannot be written: two tables with one number, a value that no repository of
/// ours takes, a text with a character that TOML lacks.
ExportedSession ExportText(const StoredRows& stored, Passwords passwords);

}  // namespace varnel::admin
