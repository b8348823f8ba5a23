// The two queries that every reader of the repository runs.
#pragma once

#include <cstdint>
#include <string>

namespace varnel {

/// How many rows of a table belong to the session; leaves RepoRs closed.
double CountSessionRows(const std::string& table, std::int16_t SessionID);
/// Opens RepoRs on the session's rows of a table, in the order of its primary key.
void OpenSessionRows(const std::string& table, std::int16_t SessionID);

}  // namespace varnel
