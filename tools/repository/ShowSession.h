// A stored session as a definition, for people to read.
#pragma once

#include <string>
#include <vector>

#include "tools/repository/LastRun.h"
#include "tools/sessionfile/SessionDefinition.h"

namespace varnel::admin {

struct ShownSession {
    SessionDefinition definition;
    LastRun lastRun;
    std::vector<std::string> missing;  ///< required columns that are Null: why a run would fail
};

/// Throws Error{Misuse} when the session does not exist.
ShownSession StoredSession(std::int16_t id, const std::string& repositoryFile);
/// As a session file, passwords as ***, with the last run in a comment.
std::string ShownText(const ShownSession& session);

}  // namespace varnel::admin
