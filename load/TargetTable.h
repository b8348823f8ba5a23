// Preparing a target table: drop, empty or create it, in the dialect of the target kind. Each operation works on
// table i of the session, opens its own connection to the target, sends one statement, reports to the session log and
// the window, and returns whether it succeeded; a failure also sets SessionError.
#pragma once

#include <cstdint>

namespace varnel {

bool DropTargetTable(std::int16_t i);
bool DeleteTargetRows(std::int16_t i);
bool CreateTargetTable(std::int16_t i);

}  // namespace varnel
