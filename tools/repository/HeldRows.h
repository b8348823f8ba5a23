// Values as a repository made by varnel-admin holds them, whatever types another repository keeps them in.
#pragma once

#include <string>
#include <vector>

#include "tools/repository/RepositoryTables.h"
#include "tools/repository/StoredRows.h"
#include "tools/sessionfile/StoredValues.h"

namespace varnel::admin {

/// A value for a column of ours, in the kind of the column's type. Throws Error{Conversion} that names place, table and
/// column: a text that is no number, a number beyond the type or with a fraction in a column of whole numbers, bytes.
Value HeldValue(const RepositoryTable& table, const RepositoryColumn& column, const StoredValue& stored);

/// The rows with our columns only, each value as above; a missing column is Null. notes: gets a line for every column
/// of others that holds a value, and for every number that loses its fraction, as it does when a session is run.
StoredRows HeldRows(const StoredRows& stored, std::vector<std::string>& notes);

}  // namespace varnel::admin
