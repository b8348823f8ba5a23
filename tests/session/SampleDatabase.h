// A database of twenty small tables: all types that a kind of source has, Nulls, and names that other kinds cannot
// bear.
#pragma once

#include <string>
#include <vector>

#include "tests/session/MatrixRows.h"

namespace varnel {

struct SampleTable {
    std::string name;
    std::vector<MatrixColumn> columns;  ///< "ID" comes first
    Rows rows;                          ///< all of them fit every kind of target
};

/// kind: of the source ("FOXPRO"). Where the kind names tables and columns in quotes, the names hold blanks, signs and
/// keywords; else keywords as far as the kind takes them.
std::vector<SampleTable> SampleTables(const std::string& kind);

}  // namespace varnel
