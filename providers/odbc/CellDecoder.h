// A fetched cell's bytes as a value.
#pragma once

#include <sql.h>

#include <cstdint>
#include <span>

#include "ado/types/Value.h"
#include "providers/odbc/OdbcTypes.h"

namespace varnel::odbc {

/// cell: the room that the driver filled. length: the bytes it states, not SQL_NULL_DATA; more than the room, or
/// SQL_NO_TOTAL, for a cell that did not fit. A cell that no value can hold becomes a Failure that says why.
void DecodeCell(const OdbcColumn& column, std::span<const std::uint8_t> cell, SQLLEN length, Value& value);

}  // namespace varnel::odbc
