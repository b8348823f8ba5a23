// The type words of CREATE TABLE as columns.
#pragma once

#include "providers/access/TableDefinition.h"
#include "providers/tablefile/TableFile.h"

namespace varnel::access {

/// The column that definition asks for, without its place in the table. Throws Error{Syntax} for a type word that is
/// none, Error{Constraint} for a length or precision that the type does not have.
Column ColumnFromDefinition(const ColumnDefinition& definition);

/// Bytes of a column's value in the fixed area of its rows; 0 for a Boolean and a variable column.
std::uint16_t FixedAreaBytes(const Column& column);

}  // namespace varnel::access
