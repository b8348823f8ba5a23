// What a database says about itself: its tables and their columns, as a person choosing what to move wants to see them.
#pragma once

#include <string>
#include <vector>

#include "ado/types/Column.h"

namespace varnel {

/// A table, view or text file that can be read under this name.
struct TableInfo {
    std::string owner;  ///< schema, library or database; "" where there is none
    std::string name;
    bool isView = false;
};

/// A column as its database declares it.
struct TableColumn {
    ColumnInfo info;          ///< as an open record set describes it
    std::string typeName;     ///< the type in the database's own words: "MONEY", "decimal", "Memo"
    bool isKey = false;       ///< part of the primary key
    bool isAssigned = false;  ///< the database gives the value itself: counters, identities, computed columns
};

}  // namespace varnel
