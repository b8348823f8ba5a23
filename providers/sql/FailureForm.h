// How a cell that could not be read passes through SQLite: as a BLOB that begins with a mark no data can hold.
#pragma once

#include <string>
#include <string_view>

#include "providers/sql/ValueStorage.h"

namespace varnel::sql {

/// scratch: must live, unchanged, as long as the form is used.
StoredForm StoreFailure(std::string_view text, std::string& scratch);
/// Makes out the Failure again; false for a BLOB that is data.
bool ReadFailureForm(std::string_view blob, Value& out);

}  // namespace varnel::sql
