// What writing tables as text files would meet.
#pragma once

#include "export/CellRules.h"
#include "tools/check/Side.h"
#include "tools/check/TableFacts.h"

namespace varnel::admin {

/// The code page of the output files, once for the session.
void CheckExportCodePage(Findings& found);
/// The output file of a table and the layout of its cells. Needs facts.source for the cells. certainOnly: without what
/// only some values may meet.
void CheckExport(const Side& source, const TableFacts& facts, bool certainOnly);
/// How the cells of selected column k are written.
CellRule RuleOf(const TableFacts& facts, std::size_t k);

}  // namespace varnel::admin
