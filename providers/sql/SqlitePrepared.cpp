#include "providers/sql/SqlitePrepared.h"

#include <algorithm>

namespace varnel::sql {

SqlitePrepared::SqlitePrepared(std::shared_ptr<SqliteFile> file, SqliteStatement statement)
    : file_(std::move(file)), statement_(std::move(statement)) {}

SqlitePrepared::~SqlitePrepared() {
    file_->TryCommit();
}

void SqlitePrepared::Execute(std::span<const Value> parameters) {
    if (parameters.size() != statement_.markers->size())
        throw Error(ErrorKind::Misuse, "", "No value given for one or more required parameters.");
    std::copy(parameters.begin(), parameters.end(), statement_.markers->begin());
    BindParameters(*file_, statement_, buffers_);
    file_->BeforeWriting(statement_.tracked.tables.writes);
    file_->BeginRows();
    sqlite3_stmt* handle = statement_.tracked.statement.get();
    int code = SQLITE_ROW;
    while (code == SQLITE_ROW) code = sqlite3_step(handle);
    if (code != SQLITE_DONE) {
        const Error refused = file_->RowRefused(code);
        sqlite3_reset(handle);
        throw refused;
    }
    sqlite3_reset(handle);
    file_->RowWritten();
}

}  // namespace varnel::sql
