// Reads the [[session.table]] blocks of a session.
#pragma once

#include "tools/sessionfile/KeyReader.h"
#include "tools/sessionfile/SessionDefinition.h"

namespace varnel::admin {

/// session: all but its tables has been read. sourceText: the layout for tables that have none of their own.
void ReadTables(KeyReader& keys, SessionDefinition& session, const SourceText& sourceText, Faults& faults);

}  // namespace varnel::admin
