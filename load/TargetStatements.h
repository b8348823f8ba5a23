// The statements that prepare a target table, as text.
#pragma once

#include <cstdint>
#include <string>

namespace varnel {

/// "drop table …", "delete from …" and "Create Table …" for table i. Names are inserted as stored.
/// Throw Error{Misuse} when there is no table i.
std::string DropStatement(std::int16_t i);
std::string DeleteStatement(std::int16_t i);
/// Lines are separated by a lone carriage return. A table without selected columns gives a statement that every
/// database rejects.
std::string CreateStatement(std::int16_t i);

}  // namespace varnel
