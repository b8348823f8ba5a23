// Which tables a statement reads and writes, as SQLite finds out while it prepares it.
#pragma once

#include <string>
#include <vector>

#include "providers/sql/SqliteHandle.h"

namespace varnel::sql {

/// Table names in lower case, each once; triggers and views are looked through.
struct TablesTouched {
    std::vector<std::string> reads;
    std::vector<std::string> writes;
};

/// Listens to a connection for as long as that is open.
class TableUse {
public:
    explicit TableUse(sqlite3* database);
    TableUse(const TableUse&) = delete;
    TableUse& operator=(const TableUse&) = delete;

    /// Notes the tables of what is prepared from now on in into; with null nowhere.
    void NoteInto(TablesTouched* into) { into_ = into; }

private:
    static int Note(void* self, int action, const char* first, const char* second, const char* database,
                    const char* trigger);

    TablesTouched* into_ = nullptr;
};

}  // namespace varnel::sql
