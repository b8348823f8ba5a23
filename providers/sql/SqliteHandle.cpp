#include "providers/sql/SqliteHandle.h"

namespace varnel::sql {
namespace {

/// "NOT NULL constraint failed: orders.ID" gives "ID".
std::string ColumnOfConstraint(const std::string& message) {
    const std::size_t dot = message.rfind('.');
    return dot == std::string::npos ? message : message.substr(dot + 1);
}

std::string ConstraintText(int extended, const std::string& message) {
    switch (extended) {
        case SQLITE_CONSTRAINT_NOTNULL:
            return "The field '" + ColumnOfConstraint(message) + "' cannot contain a Null value.";
        case SQLITE_CONSTRAINT_UNIQUE:
        case SQLITE_CONSTRAINT_PRIMARYKEY:
        case SQLITE_CONSTRAINT_ROWID:
            return "The changes were not successful because they would create duplicate values in the index, primary "
                   "key, or relationship. (" +
                   message + ")";
        default:
            return message;
    }
}

}  // namespace

Error SqliteError(sqlite3* database, int code, const std::string& storedPath) {
    const std::string message = database != nullptr ? sqlite3_errmsg(database) : sqlite3_errstr(code);
    const int extended = database != nullptr ? sqlite3_extended_errcode(database) : code;
    const std::string file = "'" + storedPath + "'";
    switch (code & 0xFF) {
        case SQLITE_CONSTRAINT:
            return Error(ErrorKind::Constraint, storedPath, ConstraintText(extended, message));
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            return Error(ErrorKind::Io, storedPath,
                         "Could not use " + file + "; file already in use. (" + message + ")");
        case SQLITE_READONLY:
            return Error(ErrorKind::Constraint, storedPath, "Cannot update. Database or object is read-only.");
        case SQLITE_CORRUPT:
        case SQLITE_NOTADB:
            return Error(ErrorKind::Corrupt, storedPath, "The database file " + file + " is damaged: " + message + ".");
        case SQLITE_FULL:
            return Error(ErrorKind::Io, storedPath, "Disk full: " + file);
        case SQLITE_IOERR:
            return Error(ErrorKind::Io, storedPath, "Device I/O error: " + file + " (" + message + ")");
        case SQLITE_CANTOPEN:
        case SQLITE_PERM:
        case SQLITE_AUTH:
            return Error(ErrorKind::Io, storedPath, "Permission denied: " + file + " (" + message + ")");
        case SQLITE_MISMATCH:
            return Error(ErrorKind::Conversion, storedPath, "Type mismatch (" + message + ").");
        case SQLITE_NOMEM:
            return Error(ErrorKind::Io, storedPath, "Out of memory");
        default:
            return Error(ErrorKind::Syntax, storedPath, message);
    }
}

Statement PrepareStatement(sqlite3* database, const std::string& sql, const std::string& storedPath) {
    sqlite3_stmt* raw = nullptr;
    const int code = sqlite3_prepare_v2(database, sql.c_str(), static_cast<int>(sql.size()) + 1, &raw, nullptr);
    Statement statement(raw);
    if (code != SQLITE_OK) throw SqliteError(database, code, storedPath);
    return statement;
}

std::string QuotedName(const std::string& name) {
    std::string quoted = "\"";
    for (const char c : name) quoted.append(c == '"' ? 2 : 1, c);
    return quoted + '"';
}

}  // namespace varnel::sql
