// What preparing and filling a target table would meet.
#pragma once

#include "tools/check/ScratchTarget.h"
#include "tools/check/Side.h"
#include "tools/check/TableFacts.h"

namespace varnel::admin {

/// Looks at the target's table as it is now, tries out or works out what the run would make of it, and fills
/// facts.target, the report's target rows and the statements that a run sends to the target.
void CheckTargetTable(const Side& target, TableFacts& facts);
/// The same for a target that cannot be opened: what its type words alone tell.
void CheckUnseenTarget(TableFacts& facts);
/// Target columns that are missing, that must have a value and get none, that the database fills itself.
void CheckTargetColumns(const TableFacts& facts);
/// Tables of the session that get in each other's way.
void CheckTargetsTogether(const std::vector<TableFacts>& tables);

}  // namespace varnel::admin
