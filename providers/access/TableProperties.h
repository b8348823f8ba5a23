// The properties that a table's columns have beside their definition: whether a value is required, whether a text may
// be empty.
//
//   "MR2" 0 (Access 97 "KKD" 0), then blocks: u32 length (these 6 bytes included), u16 kind, body
//   kind 0x80   the names of properties: u16 byte length, text; repeated
//   kind 1      a column: u32 length of the name part, u16 byte length, name; then entries: u16 length of the entry,
//               u8 flag, u8 type, u16 number of the property's name, u16 length, the value
#pragma once

#include <span>
#include <string>

#include "platform/CodePage.h"
#include "providers/access/TableDefinition.h"

namespace varnel::access {

/// Sets required and zeroLengthAllowed of the columns that the blob names. place: for error texts. names: as in
/// ReadTableDefinition. Throws Error{Corrupt}.
void ApplyProperties(std::span<const std::uint8_t> blob, const CodePage* names, const std::string& place,
                     TableDefinition& table);

}  // namespace varnel::access
