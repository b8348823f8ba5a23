// Rows of a query on standard output. Rows are streamed; nothing but a first sample is held in memory.
#pragma once

#include <string>

#include "ado/Recordset.h"

namespace varnel::admin {

struct AlignedForm {
    std::string null = "NULL";
    bool countRows = true;  ///< ends with "3 rows"
};

/// Columns as wide as the widest cell of the first rows (1000, or 4 MB of text); a wider cell later on shifts its own
/// row only. Line breaks and other control characters of a cell are shown as \n, \r, \t, \xNN.
/// Throws Error, among others when standard output cannot be written.
void WriteAligned(Recordset& rows, const AlignedForm& form);
/// RFC 4180: a line of column names, CR LF, quotes where needed. Null is nothing at all, an empty text is "".
void WriteCsv(Recordset& rows);

}  // namespace varnel::admin
