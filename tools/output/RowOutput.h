// Rows of a query on standard output. Rows are streamed; nothing but a first sample is held in memory.
#pragma once

#include <cstdint>
#include <optional>

#include "ado/Recordset.h"
#include "tools/output/Progress.h"

namespace varnel::admin {

/// The count of rows, shown while they go into a file; not while they scroll past themselves.
class RowProgress {
public:
    RowProgress();
    void Next() {
        if (shown_) shown_->Count(++count_);
    }

private:
    std::optional<Progress> shown_;
    std::uint64_t count_ = 0;
};

/// Columns as wide as the widest cell of the first rows (1000, or 4 MB of text); a wider cell later on shifts its own
/// row only. Line breaks and other control characters of a cell are shown as \n, \r, \t, \xNN.
/// Throws Error, among others when standard output cannot be written.
/// Null is NULL; the last line counts the rows.
void WriteAligned(Recordset& rows, RowProgress& progress);
/// RFC 4180: a line of column names, CR LF, quotes where needed. Null is nothing at all, an empty text is "".
void WriteCsv(Recordset& rows, RowProgress& progress);

}  // namespace varnel::admin
