// The terminal's one line about the current table.
#pragma once

#include <string>

namespace varnel {

/// What the line tells of.
struct TableProgress {
    std::string counter;  ///< Label2's text: "120 of 5000 Rows Loaded"
    double value = 0;     ///< RowPro's value: rows
    double maximum = 0;   ///< RowPro's maximum; 0 when this table has none
    double seconds = 0;   ///< since the table's rows began to come
};

/// "120 of 5000 Rows Loaded [##........]   2% 1,250 rows/s 0:04 left", at most columns characters long: the bar narrows
/// first, then the end is cut. Without a maximum there is no bar and no time left; in the first instants no rate.
std::string StatusLine(const TableProgress& progress, int columns);

}  // namespace varnel
