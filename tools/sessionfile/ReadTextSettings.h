// The keys of a session file that only text files have: layouts, a polled folder, output files.
#pragma once

#include <toml++/toml.h>

#include "tools/sessionfile/KeyReader.h"
#include "tools/sessionfile/SessionDefinition.h"

namespace varnel::admin {

SourceText ReadSourceText(const toml::table& table, Faults& faults);
TargetText ReadTargetText(const toml::table& table, Faults& faults);
/// Reads the key polling into the session; a fault when it is missing for TEXTPOLL or stands anywhere else.
void ReadPolling(KeyReader& keys, SessionDefinition& session, Faults& faults);
/// Notes source_text and target_text of a session (or a table) that has no text on that side.
void CheckTextKeys(const KeyReader& keys, const SessionDefinition& session, Faults& faults);

/// The target of a table that names none: the source table; for a text target the file that the log names, from
/// folder, source and extension. "" when there is nothing to make it from.
std::string UsualTarget(const SessionDefinition& session, const std::string& source);
/// Gives a column of a text target that has no target type the one whose cells are those of its source type, with
/// the width that they take in the fixed layout.
void GiveOutputType(ColumnMapping& column);

}  // namespace varnel::admin
