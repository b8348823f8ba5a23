// The chosen rows of a table as a virtual table of SQLite. It declares only the columns that a statement needs.
#pragma once

#include <sqlite3.h>

#include <memory>
#include <optional>
#include <vector>

#include "platform/Error.h"
#include "providers/sql/ChosenRows.h"
#include "providers/sql/StoreTable.h"

namespace varnel::sql {

/// The virtual table's name.
inline constexpr const char* kScanName = "varnel_rows";

/// What the virtual table stands for.
struct TableScan {
    /// A column of the virtual table.
    struct Column {
        std::size_t position = 0;  ///< in the table
        std::size_t slot = 0;      ///< in the cursor's rows
    };

    std::shared_ptr<StoreTable> table;
    RowChoice choice;
    std::vector<Column> columns;
    std::optional<Error> failure;  ///< why the read ended: SQLite itself keeps only a text
};

/// Makes scan known to a connection as a table of the name above. scan: outlives the connection.
/// Throws Error when SQLite refuses, which it does only without memory.
void RegisterScan(sqlite3* database, TableScan& scan);

}  // namespace varnel::sql
