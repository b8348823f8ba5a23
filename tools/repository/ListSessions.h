// The sessions of a repository, each in a few words.
#pragma once

#include <string>
#include <vector>

#include "tools/repository/LastRun.h"

namespace varnel::admin {

struct SessionSummary {
    std::string id, name, sourceKind, targetKind;  ///< "" for Null
    LastRun lastRun;
};

/// In the order of their numbers. Throws Error.
std::vector<SessionSummary> ListSessions(const std::string& repositoryFile);

}  // namespace varnel::admin
