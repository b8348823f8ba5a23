// Owners of SQLite's handles, and the way from its error codes to the texts that users know.
#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>

#include "platform/Error.h"

namespace varnel::sql {

struct CloseDatabase {
    void operator()(sqlite3* database) const noexcept { sqlite3_close_v2(database); }
};
using Database = std::unique_ptr<sqlite3, CloseDatabase>;

struct FinalizeStatement {
    void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

/// The failure that database reports for code, in words. database may be null. storedPath: the file as its user wrote
/// it.
Error SqliteError(sqlite3* database, int code, const std::string& storedPath);

/// Prepares one statement of our own making. Throws the error above.
Statement PrepareStatement(sqlite3* database, const std::string& sql, const std::string& storedPath);

/// name in double quotes, those inside doubled.
std::string QuotedName(const std::string& name);

}  // namespace varnel::sql
