// Looks at a session of a repository before anything is done: what a run would do, what would fail and what would be
// lost. Changes nothing: no file, no row, no lock that stays. Start here; the rules lie in a file per topic:
//   SessionRules, PollRules      words, folders, log
//   SourceRules, FilterRules     what is read
//   TargetRules, NameRules       what is prepared and written to
//   FitRules, TypeTraits         types of both sides
//   ExportRules                  text files
//   ValueRules, CellTrouble      the values themselves, on request
#pragma once

#include <cstdint>
#include <string>

#include "tools/check/Finding.h"

namespace varnel::admin {

/// values: also reads all rows of the sources. Throws Error when there is no such repository or session.
CheckReport CheckSession(std::int16_t id, const std::string& repositoryFile, bool values);

}  // namespace varnel::admin
